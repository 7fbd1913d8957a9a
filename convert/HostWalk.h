#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <string_view>

#include "CBstr.h"
#include "CElementFrames.h"
#include "CJavaVM.h"
#include "CVariant.h"
#include "HostObject.h"
#include "IInstanceEnumerator.h"
#include "INameValueEnumerator.h"
#include "ISampleNode.h"

// How the host's enumerators are walked: pair after pair while Next returns S_OK. Whatever it returns instead ends the
// walk and is the result; a null enumerator has no pairs. What a pair holds is released before the next one is asked
// for. A pair without a name is not shown: it could not be told from others.

/// Shows each pair to `visit(std::wstring_view name, CVariant& value)`, which may change the value.
template <typename Visit>
HRESULT WalkValues(const CJavaVM& vm, INameValueEnumerator* values, const Visit& visit) {
    CElementFrames frames(vm.GetEnv());
    while (values) {
        frames.BeginElement();
        CBstr name;
        CVariant value;  // zeroed whole: what the host leaves unwritten reads as nothing
        const HRESULT next = values->Next(name.Receive(), value.Receive());
        if (next != S_OK) {
            return next;
        }
        if (name) {
            visit(name.GetView(), value);
        }
    }
    return S_FALSE;
}

/// Shows each pair to `visit(std::wstring_view key, ISampleNode& instance)`. A pair without an instance is not shown
/// either.
template <typename Visit>
HRESULT WalkInstances(const CJavaVM& vm, IInstanceEnumerator* instances, const Visit& visit) {
    CElementFrames frames(vm.GetEnv());
    while (instances) {
        frames.BeginElement();
        CBstr key;
        Microsoft::WRL::ComPtr<ISampleNode> instance;
        const HRESULT next =
            AskForObject(instance, [&](ISampleNode** given) { return instances->Next(key.Receive(), given); });
        if (next != S_OK) {
            return next;
        }
        if (key && instance) {
            visit(key.GetView(), *instance.Get());
        }
    }
    return S_FALSE;
}
