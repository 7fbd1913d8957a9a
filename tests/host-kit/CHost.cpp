#include "CHost.h"

#include <utility>

CHost::CHost(HostData data) {
    m_services->Set(IHostLogger::kId, MakeLogger(m_record, m_log).Get());
    m_services->Set(ISystemInfo::kId, MakeSystemInfo(m_record, std::move(data.system)).Get());
    m_services->Set(ISessionCollection::kId, MakeSessionCollection(m_record, std::move(data.sessions)).Get());
    m_services->Set(IActionExecutor::kId, MakeActionExecutor(m_record, m_actions).Get());
}

// Whoever still holds a provider finds nothing in it any more: the services would otherwise keep objects, these their
// record, for as long as that provider is kept.
CHost::~CHost() {
    m_services->Clear();
}

CHostReference<IHostServiceProvider> CHost::MakeProvider() const {
    return MakeServiceProvider(m_record, m_services);
}

CHostReference<IClassFactory> CHost::MakeClassObject() const {
    return MakeServiceClassObject(m_record, m_services);
}

std::string CHost::Close() {
    m_services->Clear();
    return m_record->DescribeLeftovers();
}
