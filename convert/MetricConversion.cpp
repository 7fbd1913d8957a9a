#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "HostTime.h"
#include "HostWalk.h"

namespace {

namespace Metric = Binding::BaseMetric;

/// Which metrics of a node are wanted is the host's business; it knows this one selection.
constexpr LONG kMetricsFlag = 1;

constexpr wchar_t kNoMetric[] = L"Failed to create a new Java metric object.  %s";
constexpr wchar_t kInvalidType[] = L"Invalid type for metric '%s'.";
constexpr wchar_t kValueNotSet[] = L"Failed to set the value for metric '%s'.  %s";
constexpr wchar_t kNoMetrics[] = L"Failed to get metrics from sample";
constexpr wchar_t kMetricNotAdded[] = L"Failed to add metric '%s' to sample '%s'.  %s";

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetMetric(const std::shared_ptr<CJavaVM>& vm, std::wstring_view name,
                                                      const VARIANT* value) const {
    const std::shared_ptr<CJavaClass> metricClass = vm->GetClass(Metric::kClass);
    if (!metricClass || !value) {
        return {};
    }
    return GetMetric(vm, *metricClass, name, *value);
}

/// With the class that a walk over many metrics has looked up once.
std::shared_ptr<CJavaObject> CJNIConvertor::GetMetric(const std::shared_ptr<CJavaVM>& vm, CJavaClass& metricClass,
                                                      std::wstring_view name, const VARIANT& value) const {
    std::shared_ptr<CJavaObject> metric = MakeMetric(vm, metricClass, name);
    if (!metric) {
        return {};
    }
    if (!PutValue(vm, *metric, value)) {
        m_log.Error(kInvalidType, std::wstring(name).c_str());
        return {};
    }
    if (LogIfThrown(*vm,
                    [&](const wchar_t* thrown) { m_log.Error(kValueNotSet, std::wstring(name).c_str(), thrown); })) {
        return {};
    }
    return metric;
}

bool CJNIConvertor::AddMetrics(const std::shared_ptr<CJavaVM>& vm, const std::shared_ptr<CJavaObject>& target,
                               ISampleNode* node) const {
    if (!target || !node) {
        return false;
    }
    Microsoft::WRL::ComPtr<INameValueEnumerator> metrics;
    const HRESULT got =
        AskForObject(metrics, [&](INameValueEnumerator** given) { return node->get_metrics(given, kMetricsFlag); });
    if (FAILED(got)) {
        m_log.ErrorWithResult(got, kNoMetrics);
        return false;
    }
    const std::shared_ptr<CJavaClass> metricClass = vm->GetClass(Metric::kClass);
    bool isAnyBuilt = false;
    WalkValues(*vm, metrics.Get(), [&](std::wstring_view name, const CVariant& value) {
        const std::shared_ptr<CJavaObject> metric =
            metricClass ? GetMetric(vm, *metricClass, name, value) : std::shared_ptr<CJavaObject>();
        if (metric) {
            isAnyBuilt = true;
            PutMetric(*vm, *target, metric, name, *node);
        }
    });
    return isAnyBuilt;
}

std::shared_ptr<CJavaObject> CJNIConvertor::MakeMetric(const std::shared_ptr<CJavaVM>& vm, CJavaClass& metricClass,
                                                       std::wstring_view name) const {
    const JavaText nameString = NewJavaString(vm, name, false);
    if (!nameString) {
        return {};
    }
    std::shared_ptr<CJavaObject> metric = metricClass.NewObject(Metric::kCtorName, nameString);
    if (!metric) {
        m_log.Error(kNoMetric, vm->TakeExceptionText().c_str());
    }
    return metric;
}

/// Whether there is a setter for the value's type, which is taken whole: no reference, no array. What it throws is
/// pending afterwards.
bool CJNIConvertor::PutValue(const std::shared_ptr<CJavaVM>& vm, CJavaObject& metric, const VARIANT& value) const {
    switch (value.vt) {
        case VT_I2:
            metric.CallVoidMethod(Metric::kPutLongValue, jlong{value.iVal});
            return true;
        case VT_I4:
            metric.CallVoidMethod(Metric::kPutLongValue, jlong{value.lVal});
            return true;
        case VT_I8:
            metric.CallVoidMethod(Metric::kPutLongValue, jlong{value.llVal});
            return true;
        case VT_UI2:
            metric.CallVoidMethod(Metric::kPutLongValue, jlong{value.uiVal});
            return true;
        case VT_UI4:
            metric.CallVoidMethod(Metric::kPutLongValue, jlong{value.ulVal});
            return true;
        case VT_UI8:  // Java has no such type: the same 64 bits, the upper half of the values being negative there
            metric.CallVoidMethod(Metric::kPutLongValue, static_cast<jlong>(value.ullVal));
            return true;
        case VT_R4:
            metric.CallVoidMethod(Metric::kPutDoubleValue, jdouble{value.fltVal});
            return true;
        case VT_R8:
            metric.CallVoidMethod(Metric::kPutDoubleValue, jdouble{value.dblVal});
            return true;
        case VT_BSTR:
            if (const JavaText text = NewJavaString(vm, value.bstrVal)) {
                metric.CallVoidMethod(Metric::kPutStringValue, text);
            }
            return true;
        default:
            return false;
    }
}

void CJNIConvertor::PutMetric(CJavaVM& vm, CJavaObject& target, const std::shared_ptr<CJavaObject>& metric,
                              std::wstring_view name, ISampleNode& node) const {
    // Samples, sessions and remote applications all have it, under this one alias and with this one signature.
    target.CallVoidMethod(Binding::BaseSample::kPutMetric, metric);
    LogIfThrown(vm, [&](const wchar_t* thrown) {
        m_log.Error(kMetricNotAdded, std::wstring(name).c_str(), NameSample(node).GetText(), thrown);
    });
}
