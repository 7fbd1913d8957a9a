#include "CSampleNodeFacet.h"

#include "HostObjects.h"

HRESULT CSampleNodeFacet::get_instances(IInstanceEnumerator** instances) noexcept {
    return GiveObject(
        "get_instances", kNoInputs,
        [&] {
            return MakeInstanceEnumerator(m_object.GetRecord(), m_object.GetName(), m_data.instances,
                                          m_data.instancesWalk);
        },
        instances);
}

HRESULT CSampleNodeFacet::get_metrics(INameValueEnumerator** metrics, LONG flag) noexcept {
    return GiveObject(
        "get_metrics", [&] { return std::to_string(flag); },
        [&] {
            return MakeNameValueEnumerator(m_object.GetRecord(), m_object.GetName() + " metrics", m_data.metrics,
                                           m_data.metricsWalk);
        },
        metrics);
}

CHostReference<ISampleNode> MakeSampleNode(CRecordPointer record, SampleData data) {
    const std::string name = data.name;
    return CHostObject::MakeWith<ISampleNode, CSampleNodeFacet>(std::move(record), name, std::move(data));
}
