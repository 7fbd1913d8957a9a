#pragma once

#include <memory>
#include <string>
#include <vector>

#include "HostObjects.h"

struct HostData {
    SystemData system{};
    std::vector<SessionData> sessions{};
};

/// A whole host: a logger, a system, its sessions and an executor, found through a service provider, all in one record.
/// Put it in front of a library with CInProcessClassObject or CRegisteredServer.
class CHost {
public:
    explicit CHost(HostData data = {});
    ~CHost();

    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

    [[nodiscard]] CCallRecord& Record() noexcept { return *m_record; }
    [[nodiscard]] CHostLog& Log() noexcept { return *m_log; }
    [[nodiscard]] CHostActions& Actions() noexcept { return *m_actions; }
    [[nodiscard]] CHostServices& Services() noexcept { return *m_services; }
    /// To make further objects in this host's record.
    [[nodiscard]] const CRecordPointer& ShareRecord() const noexcept { return m_record; }

    [[nodiscard]] CHostReference<IHostServiceProvider> MakeProvider() const;
    [[nodiscard]] CHostReference<IClassFactory> MakeClassObject() const;

    /// Gives up the host's own references and says what others still hold: empty when nothing. Registrations of the
    /// class object count as others.
    [[nodiscard]] std::string Close();

private:
    CRecordPointer m_record = std::make_shared<CCallRecord>();
    std::shared_ptr<CHostLog> m_log = std::make_shared<CHostLog>();
    std::shared_ptr<CHostActions> m_actions = std::make_shared<CHostActions>();
    std::shared_ptr<CHostServices> m_services = std::make_shared<CHostServices>();
};
