#include "CLeanHost.h"

#include <string>

namespace {

SystemData MakeSystem() {
    SystemData system;
    system.machineName = L"SERVER-17";
    system.fqdn = L"server-17.example.com";
    system.totalMemory = 65536;
    system.virtualMachineId = L"4f1c5a0e-6a53-4a8e-9d39-0e61d1f6b8a2";
    system.machineId = L"b0e8c1f4-23b7-4a55-8f21-7f4d2c9e6d10";
    system.machineUniqueId = L"0d3c6b52-9f0a-4d6c-a8c7-51e0b7a2f394";
    system.networkInterfaces = {
        {L"Ethernet adapter 1", L"00-15-5D-01-02-03", L"192.0.2.17", L"255.255.255.0", L"192.0.2.0", 1000},
        {L"Ethernet adapter 2", L"00-15-5D-01-02-04", L"198.51.100.17", L"255.255.255.0", L"198.51.100.0", 10000},
    };
    return system;
}

std::vector<CLeanInstances::Instance> MakeApplications(const SampleSize& size) {
    std::vector<CLeanInstances::Instance> applications;
    applications.reserve(static_cast<std::size_t>(size.applications));
    for (int i = 0; i < size.applications; ++i) {
        applications.emplace_back(NameApplication(i),
                                  std::make_unique<CLeanNode>(MakeMetrics(size.applicationMetrics, i)));
    }
    return applications;
}

/// The object as the library is handed it.
template <typename Object>
IUnknown& Keep(std::vector<std::unique_ptr<Object>>& objects, std::unique_ptr<Object> object) {
    objects.push_back(std::move(object));
    IUnknown* identity = nullptr;
    static_cast<void>(objects.back()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity)));
    identity->Release();
    return *identity;
}

}  // namespace

CLeanHost::CLeanHost() : m_system(MakeSystem()) {}

IUnknown& CLeanHost::MakeSample(const SampleSize& size) {
    std::vector<CLeanInstances::Instance> sessions;
    for (int i = 0; i < size.sessions; ++i) {
        const CLeanSession& session = m_sessions.Add(size.properties, {}, {});
        sessions.emplace_back(std::to_wstring(session.GetId()),
                              std::make_unique<CLeanNode>(MakeMetrics(size.sessionMetrics, i), MakeApplications(size)));
    }
    return Keep(m_samples, std::make_unique<CLeanNode>(MakeMetrics(size.metrics, 0), std::move(sessions)));
}

IUnknown& CLeanHost::MakeSession(const SampleSize& size) {
    CLeanSession& session =
        m_sessions.Add(size.properties, MakeMetrics(size.sessionMetrics, 0), MakeApplications(size));
    return static_cast<IUserSessionInfo&>(session);
}

IUnknown& CLeanHost::MakeExtendedData(int metrics, int instances) {
    std::vector<MetricData> extended;
    for (int i = 0; i < metrics; ++i) {
        m_instances.push_back(std::make_unique<CLeanValues>(MakeMetrics(instances, i)));
        extended.push_back({NameExtendedMetric(i), MakeInterface(m_instances.back().get())});
    }
    m_extendedMetrics.push_back(std::make_unique<CLeanValues>(std::move(extended)));
    m_metaData.push_back(std::make_unique<CLeanBox>(MakeMetaData()));
    return Keep(m_extendedData,
                std::make_unique<CLeanExtendedData>(m_metaData.back().get(), m_extendedMetrics.back().get()));
}
