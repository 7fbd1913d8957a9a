#include "MachineIdentity.h"

#include <wrl/client.h>

#include "CBstr.h"
#include "CVariant.h"
#include "HostObject.h"
#include "IPropertyBox.h"
#include "InterfaceMarshalling.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kNoMachineId[] = L"Failed to get machine id";
constexpr wchar_t kNoVirtualMachineId[] = L"Failed to get virtual machine id";
constexpr wchar_t kNoMachineUniqueId[] = L"Failed to get machine unique id";
constexpr wchar_t kNoComponents[] = L"Failed to get_componentsIdentities";
/// The component whose identity, where it is installed, stands for the machine's.
constexpr wchar_t kComponent[] = L"Calderin";

using IdGetter = HRESULT (STDMETHODCALLTYPE ISystemInfo::*)(BSTR*);

HRESULT ReadId(const CBridgeLog& log, ISystemInfo& systemInfo, IdGetter getter, const wchar_t* failure, CBstr& id) {
    const HRESULT read = (systemInfo.*getter)(id.Receive());
    if (FAILED(read)) {
        log.ErrorWithResult(read, failure);
    }
    return read;
}

HRESULT AskForComponents(ISystemInfo& systemInfo, ComPtr<IPropertyBox>& components) {
    return AskForObject(components, [&](IPropertyBox** given) { return systemInfo.get_componentsIdentities(given); });
}

/// COM says E_UNEXPECTED where it has no marshaller for the property box: it is registered then, and asked once more.
HRESULT GetComponents(ISystemInfo& systemInfo, ComPtr<IPropertyBox>& components) {
    const HRESULT got = AskForComponents(systemInfo, components);
    if (got != E_UNEXPECTED || FAILED(RegisterInterfaceMarshalling(IPropertyBox::kId))) {
        return got;
    }
    return AskForComponents(systemInfo, components);
}

/// Puts the component's identity in the machine's place, if there is one that is a text or can become one.
void ReplaceByComponent(IPropertyBox& components, std::wstring& id) {
    CVariant identity;
    if (FAILED(components.GetProperty(CBstr::Make(kComponent).Get(), identity.Receive())) || !identity.ChangeToText()) {
        return;
    }
    id = ViewBstr(identity.bstrVal);
}

}  // namespace

HRESULT ReadMachineIdentity(const CBridgeLog& log, ISystemInfo& systemInfo, MachineIdentity& identity) {
    CBstr machineId;
    const HRESULT machine = ReadId(log, systemInfo, &ISystemInfo::get_machineId, kNoMachineId, machineId);
    if (FAILED(machine)) {
        return machine;
    }
    CBstr virtualMachineId;
    const HRESULT virtualMachine =
        ReadId(log, systemInfo, &ISystemInfo::get_virtualMachineId, kNoVirtualMachineId, virtualMachineId);
    if (FAILED(virtualMachine)) {
        return virtualMachine;
    }
    // Kept: it has to be there, and nothing is done with it.
    CBstr machineUniqueId;
    const HRESULT unique =
        ReadId(log, systemInfo, &ISystemInfo::get_machineUniqueId, kNoMachineUniqueId, machineUniqueId);
    if (FAILED(unique)) {
        return unique;
    }
    identity.id = machineId.GetView();
    identity.virtualMachineId = virtualMachineId.GetView();

    ComPtr<IPropertyBox> components;
    identity.componentsResult = GetComponents(systemInfo, components);
    if (FAILED(identity.componentsResult)) {
        log.ErrorWithResult(identity.componentsResult, kNoComponents);
    } else if (components) {
        ReplaceByComponent(*components.Get(), identity.id);
    }
    return S_OK;
}
