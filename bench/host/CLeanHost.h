#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CInProcessClassObject.h"
#include "CLeanSessions.h"
#include "LeanServices.h"
#include "MeasuredContent.h"

/// A host in front of the library, whose objects cost as little as objects with these interfaces can. Found by COM on
/// every thread of the process, as long as it lives; COM is initialised on the thread that makes it. What it makes
/// lives as long as it does.
class CLeanHost {
public:
    CLeanHost();

    CLeanHost(const CLeanHost&) = delete;
    CLeanHost& operator=(const CLeanHost&) = delete;

    /// A sample; its sessions are added to the machine's.
    [[nodiscard]] IUnknown& MakeSample(const SampleSize& size);
    /// One of the machine's sessions, with the figures that a logoff has; other events do not look at these.
    [[nodiscard]] IUnknown& MakeSession(const SampleSize& size);
    /// Extended metrics, each with so many instances.
    [[nodiscard]] IUnknown& MakeExtendedData(int metrics, int instances);

    /// The machine's sessions from now on: null for its own, as at first; else somebody else's object.
    void UseSessions(ISessionCollection* sessions) noexcept {
        m_services.SetSessions(sessions ? sessions : &m_sessions);
    }
    /// Whether the service object leads to the other objects from now on, or has their interfaces itself, as at first.
    void SetLeading(bool isLeading) noexcept { m_services.SetLeading(isLeading); }

    [[nodiscard]] ISystemInfo& System() noexcept { return m_system; }
    /// The last failure that the library has told; empty when there was none.
    [[nodiscard]] const std::wstring& GetLastError() const noexcept { return m_logger.GetLastError(); }
    void ForgetError() noexcept { m_logger.ForgetError(); }

private:
    CLeanSystem m_system;
    CLeanLogger m_logger;
    CLeanSessions m_sessions;
    CLeanServices m_services{m_system, m_logger, m_sessions};
    CLeanServiceClass m_class{m_services};
    CInProcessClassObject m_registration{&m_class};

    std::vector<std::unique_ptr<CLeanNode>> m_samples;
    // Of extended data; each holds references to what stands before it.
    std::vector<std::unique_ptr<CLeanValues>> m_instances;
    std::vector<std::unique_ptr<CLeanValues>> m_extendedMetrics;
    std::vector<std::unique_ptr<CLeanBox>> m_metaData;
    std::vector<std::unique_ptr<CLeanExtendedData>> m_extendedData;
};
