#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "HostWalk.h"
#include "TextWalk.h"

using Microsoft::WRL::ComPtr;

namespace {

namespace HashMap = Binding::HashMap;

constexpr wchar_t kNoHashMap[] = L"Failed to create a new Java hash map object.  %s";
constexpr wchar_t kNoExtendedMetrics[] = L"Failed to get extended metrics.";
constexpr wchar_t kInstanceNotAdded[] = L"Failed to add instance '%s' to metric '%s'.  %s";

/// The interface in a value whose type nobody looks at, except where something else than an interface would be read as
/// one: a number, a text, or the address of a record, an array or a referenced value.
IUnknown* GetInterface(const VARIANT& value) noexcept {
    switch (value.vt) {
        case VT_EMPTY:
        case VT_NULL:
        case VT_UNKNOWN:
        case VT_DISPATCH:
            return value.punkVal;
        default:
            return nullptr;
    }
}

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetHashMap(const std::shared_ptr<CJavaVM>& vm, IPropertyBox* box) const {
    if (!box) {
        return {};
    }
    const std::shared_ptr<CJavaClass> mapClass = vm->GetClass(HashMap::kClass);
    if (!mapClass) {
        return {};
    }
    std::shared_ptr<CJavaObject> map = mapClass->NewObject(HashMap::kCtor);
    if (!map) {
        m_log.Error(kNoHashMap, vm->TakeExceptionText().c_str());
        return {};
    }
    // A box that gives no enumerator is an empty one.
    ComPtr<INameValueEnumerator> values;
    static_cast<void>(AskForObject(values, [&](INameValueEnumerator** given) { return box->get_enumerator(given); }));
    WalkTexts(*this, vm, values.Get(), [&](std::wstring_view, const JavaText& key, const JavaText& value) {
        // Through the call that owns what is returned: the value that the key had before.
        static_cast<void>(map->CallStringMethod(HashMap::kPut, key->GetReference(), value->GetReference()));
        vm->DropJavaException();
    });
    return map;
}

std::shared_ptr<CJavaObject> CJNIConvertor::GetExtendedSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode* node,
                                                              INameValueEnumerator* metrics) const {
    if (!node) {
        return {};
    }
    DATE time = 0;
    std::shared_ptr<CJavaObject> sample = MakeSample(vm, *node, time);
    if (sample && FAILED(AddExtendedMetrics(vm, sample, node, metrics))) {
        m_log.Error(kNoExtendedMetrics);
    }
    return sample;
}

HRESULT CJNIConvertor::AddExtendedMetrics(const std::shared_ptr<CJavaVM>& vm,
                                          const std::shared_ptr<CJavaObject>& sample, ISampleNode* node,
                                          INameValueEnumerator* metrics) const {
    if (!sample || !node || !metrics) {
        return E_POINTER;
    }
    return WalkValues(*vm, metrics, [&](std::wstring_view name, const CVariant& value) {
        const auto instances = QueryHostObject<INameValueEnumerator>(GetInterface(value));
        if (const std::shared_ptr<CJavaObject> metric = GetExtendedMetric(vm, name, instances.Get())) {
            PutMetric(*vm, *sample, metric, name, *node);
        }
    });
}

std::shared_ptr<CJavaObject> CJNIConvertor::GetExtendedMetric(const std::shared_ptr<CJavaVM>& vm,
                                                              std::wstring_view name,
                                                              INameValueEnumerator* instances) const {
    const std::shared_ptr<CJavaClass> metricClass = vm->GetClass(Binding::BaseMetric::kClass);
    if (!metricClass) {
        return {};
    }
    std::shared_ptr<CJavaObject> metric = MakeMetric(vm, *metricClass, name);
    if (!metric) {
        return {};
    }
    WalkValues(*vm, instances, [&](std::wstring_view instanceName, const CVariant& value) {
        if (const std::shared_ptr<CJavaObject> instance = GetMetric(vm, *metricClass, instanceName, value)) {
            metric->CallVoidMethod(Binding::BaseMetric::kAddInstance, instance);
            LogIfThrown(*vm, [&](const wchar_t* thrown) {
                m_log.Error(kInstanceNotAdded, std::wstring(instanceName).c_str(), std::wstring(name).c_str(), thrown);
            });
        }
    });
    return metric;
}
