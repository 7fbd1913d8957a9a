#include "HostileSampleWalk.h"

bool CSampleModel::AddMetrics(const std::string& owner, const HostileNode& node) {
    if (FAILED(node.metricsAnswer.result)) {
        m_java.Error(L"Failed to get metrics from sample" + ModelErrorText(node.metricsAnswer.result, L"  "));
        return false;
    }
    bool isAnyBuilt = false;
    if (node.metricsAnswer.HasObject()) {
        Walk(node.metrics, [&](const HostilePair& pair) {
            if (Metric(*pair.name, ValueOf(pair))) {
                isAnyBuilt = true;
                PutMetric(owner, *pair.name, node);
            }
        });
    }
    return isAnyBuilt;
}

bool CSampleModel::MakeMetric(const std::wstring& name) {
    if (!Text(name)) {
        return false;
    }
    if (!m_java.MakeObject("BaseMetric.<init>(" + QuoteForEvent(name) + ")")) {
        m_java.Error(L"Failed to create a new Java metric object.  " + m_java.Thrown());
        return false;
    }
    return true;
}

bool CSampleModel::Metric(const std::wstring& name, const VARIANT& value) {
    if (!MakeMetric(name)) {
        return false;
    }
    const ModelMetricValue modelled = ModelMetric(value);
    if (modelled.kind == ModelMetricValue::Kind::eInvalid) {
        m_java.Error(L"Invalid type for metric '" + InMessage(name) + L"'.");
        return false;
    }
    if (!SetMetric(modelled)) {
        m_java.Error(L"Failed to set the value for metric '" + InMessage(name) + L"'.  " + m_java.Thrown());
        return false;
    }
    return true;
}

bool CSampleModel::SetMetric(const ModelMetricValue& value) {
    switch (value.kind) {
        case ModelMetricValue::Kind::eLong:
            return m_java.Call("BaseMetric.putLongValue(" + value.number + ")");
        case ModelMetricValue::Kind::eDouble:
            return m_java.Call("BaseMetric.putDoubleValue(" + value.number + ")");
        default:  // without a text the metric stays without a value
            return !Text(value.text) || m_java.Call("BaseMetric.putStringValue(" + QuoteForEvent(value.text) + ")");
    }
}

void CSampleModel::PutMetric(const std::string& owner, const std::wstring& name, const HostileNode& node) {
    if (!m_java.Call(owner + ".putMetric(BaseMetric@instance)")) {
        m_java.Error(L"Failed to add metric '" + InMessage(name) + L"' to sample '" + NameOf(node) + L"'.  " +
                     m_java.Thrown());
    }
}

bool CSampleModel::ExtendedSample(bool hasMetrics) {
    if (!MakeSample()) {
        return false;
    }
    HRESULT walked = E_POINTER;
    if (hasMetrics) {
        walked = Walk(m_tree.extendedMetrics, [&](const HostilePair& pair) { ExtendedMetric(pair); });
    }
    if (FAILED(walked)) {
        m_java.Error(L"Failed to get extended metrics.");
    }
    return true;
}

void CSampleModel::ExtendedMetric(const HostilePair& pair) {
    if (!MakeMetric(*pair.name)) {
        return;
    }
    const VARTYPE type = pair.instancesType;
    const bool isObject = type == VT_UNKNOWN || type == VT_DISPATCH || type == VT_EMPTY || type == VT_NULL;
    if (pair.instances && isObject && pair.instancesQuery.HasObject()) {
        Walk(*pair.instances, [&](const HostilePair& instance) {
            if (Metric(*instance.name, ValueOf(instance)) &&
                !m_java.Call("BaseMetric.addInstance(BaseMetric@instance)")) {
                m_java.Error(L"Failed to add instance '" + InMessage(*instance.name) + L"' to metric '" +
                             InMessage(*pair.name) + L"'.  " + m_java.Thrown());
            }
        });
    }
    PutMetric("BaseSample", *pair.name, m_tree.nodes[0]);
}

bool CSampleModel::Map(const HostileBox& box) {
    if (!m_java.MakeObject("HashMap.<init>()")) {
        m_java.Error(L"Failed to create a new Java hash map object.  " + m_java.Thrown());
        return false;
    }
    if (box.enumeratorAnswer.HasObject()) {
        Walk(box.properties, [&](const HostilePair& pair) {
            const std::wstring text = ModelText(ValueOf(pair)).value_or(L"");
            const bool hasName = Text(*pair.name);
            const bool hasText = Text(text);
            if (hasName && hasText) {
                m_java.events.push_back("HashMap.put(" + QuoteForEvent(*pair.name) + ", " + QuoteForEvent(text) + ")");
            }
        });
    }
    return true;
}
