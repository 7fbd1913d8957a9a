#include "CKitItems.h"

#include <string>
#include <utility>

namespace {

/// A session's figures, those of its applications included.
SampleData MakeFigures(const SampleSize& size, int first) {
    SampleData node;
    node.time = kMeasuredTime;
    node.metrics = MakeMetrics(size.sessionMetrics, first);
    for (int i = 0; i < size.applications; ++i) {
        InstanceData application;
        application.key = NameApplication(i);
        application.sample.metrics = MakeMetrics(size.applicationMetrics, i);
        node.instances.push_back(std::move(application));
    }
    return node;
}

}  // namespace

CKitItems::CKitItems() {
    m_record->SetKeepsHistory(false);
}

IUnknown& CKitItems::MakeSample(const SampleSize& size) {
    SampleData sample;
    sample.time = kMeasuredTime;
    sample.metrics = MakeMetrics(size.metrics, 0);
    for (int i = 0; i < size.sessions; ++i) {
        const auto id = static_cast<LONG>(m_sessions.size() + 1);
        m_sessions.push_back(MakeMeasuredSession(id, size.properties));
        sample.instances.push_back({std::to_wstring(id), MakeFigures(size, i)});
    }
    DataObjectData data;
    data.sample = std::move(sample);
    return Keep(std::move(data));
}

IUnknown& CKitItems::MakeSession(const SampleSize& size) {
    DataObjectData data;
    data.session = MakeMeasuredSession(1, size.properties);
    data.sample = MakeFigures(size, 0);
    return Keep(std::move(data));
}

IUnknown& CKitItems::MakeExtendedData(int metrics, int instances) {
    std::vector<MetricData> extended;
    extended.reserve(static_cast<std::size_t>(metrics));
    for (int i = 0; i < metrics; ++i) {
        extended.push_back(MakeExtendedMetric(NameExtendedMetric(i), MakeMetrics(instances, i)));
    }
    const auto metaData = MakePropertyBox(m_record, {"Meta-data", MakeMetaData()});
    DataObjectData data;
    data.sample.emplace().time = kMeasuredTime;
    data.properties.emplace().properties = {{L"meta-data", MakeInterface(metaData.Get())},
                                            MakeExtendedMetric(L"metrics", std::move(extended))};
    return Keep(std::move(data));
}

CHostReference<ISessionCollection> CKitItems::MakeSessions() const {
    return MakeSessionCollection(m_record, m_sessions);
}

IUnknown& CKitItems::Keep(DataObjectData data) {
    m_items.push_back(MakeDataObject(m_record, std::move(data)));
    return *m_items.back().Get();
}
