#pragma once

#include <windows.h>

#include <atomic>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <utility>

#include "CDeliveries.h"
#include "CHost.h"
#include "CMessageServer.h"
#include "CRMICommManagerImpl.h"
#include "CRecordingCallback.h"

/// A lock that many hold together or one alone; of the system's own, which the tests' accounts do not count. With the
/// names that std::shared_lock and std::unique_lock call.
class CSharedLock {
public:
    CSharedLock() = default;

    CSharedLock(const CSharedLock&) = delete;
    CSharedLock& operator=(const CSharedLock&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&m_lock); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&m_lock); }
    void lock_shared() noexcept { AcquireSRWLockShared(&m_lock); }    // NOLINT(readability-identifier-naming)
    void unlock_shared() noexcept { ReleaseSRWLockShared(&m_lock); }  // NOLINT(readability-identifier-naming)

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
};

/// A message server of the soak's, what was sent to it, and who hears its answers.
struct SoakedServer {
    explicit SoakedServer(std::string serverName);

    /// What it answers to a method, as the host hears it.
    [[nodiscard]] std::string Answer(const std::string& method) const { return name + " " + method; }

    const std::string name;
    const CMessageServer::Words options;
    CMessageServer server;
    const std::wstring url{server.Url()};  // a copy: a restart writes the original anew
    CDeliveries deliveries;
    CRecordingCallback callback;
    std::atomic<long> heard{0};    // calls that succeeded
    std::atomic<long> refused{0};  // calls that did not
    std::atomic<long> logons{0};   // of those that succeeded: under the common token, and so answered to `callback`
};

/// What the soak's threads share.
///
/// The weather: while it is calm, all calls go to the first server, which is there, and Java starts no threads; so this
/// is when threads that Java knows may end (under Wine, one that ends while Java starts one may lock up with it). In a
/// storm servers go and come back, callers switch between them, and nobody ends.
struct Soak {
    Soak(CRMICommManagerImpl& theManager, CHost& theHost) : manager(theManager), host(theHost) {}

    static constexpr wchar_t kToken[] = L"the token";

    CRMICommManagerImpl& manager;
    CHost& host;
    SoakedServer first{"first"};
    SoakedServer second{"second"};
    std::atomic<unsigned __int64> nextNumber{1};
    std::atomic<bool> isOver{false};
    std::atomic<long> endedThreads{0};
    std::atomic<long> listeners{0};

    CSharedLock calls;       // held together: each by a call; alone: by whoever changes the weather to calm
    bool isStormy = true;    // guarded by `calls`
    CSharedLock threadEnds;  // held together: while a thread ends; alone: in a storm

    /// How often which action is due on which thread.
    std::mutex actionsLock;
    std::map<std::pair<DWORD, std::string>, long> actions;
};
