#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <atomic>
#include <cstdint>

#include "CBridgeLog.h"
#include "CCallbackRegistry.h"
#include "CCriticalSection.h"
#include "ISystemInfo.h"
#include "JavaBridge.h"
#include "ServerConfig.h"

class CThreadSlots;
struct DataItem;

/// How far the manager has come. It goes forward only: a start that failed and a manager that was disposed stay so.
enum class ManagerState : std::uint16_t {
    eNotInitialised = 0,
    eInitialised = 1,
    eInitFailed = 2,
    eUninitialised = 3,
};

/// What stands behind the library's exports: the Java side of the bridge, the host's objects that it needs, the host's
/// callbacks, and the message server that Java's client is pointed at. One lock, recursive, guards every member and
/// serialises every operation; it is held while the host, COM and Java are called, any of which may call in again on
/// the same thread. Any thread may call. Texts may be null, which counts as empty.
class CRMICommManagerImpl {
public:
    /// `slots` outlive it. Throws CHresultException when the lock cannot be made.
    explicit CRMICommManagerImpl(CThreadSlots& slots) : m_slots(slots) {}
    /// Lets go of everything without calling Java.
    ~CRMICommManagerImpl();

    CRMICommManagerImpl(const CRMICommManagerImpl&) = delete;
    CRMICommManagerImpl& operator=(const CRMICommManagerImpl&) = delete;

    /// Sends one data item; see CRMICommManager::DumpData.
    template <typename Data>
    [[nodiscard]] long DumpData(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                unsigned __int64 id, unsigned char type, Data* data);

    // See CRMICommManager. Whatever the manager's state.
    [[nodiscard]] long RegisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                const wchar_t* certificate, IDataDumpCallback* callback);
    [[nodiscard]] long UnregisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                  const wchar_t* certificate, IDataDumpCallback* callback);

    /// Starts the bridge if that was not tried yet, and points the message client at the server unless it is pointed
    /// there. A switch that fails is tried again with the next call.
    /// @return S_OK after a switch, S_FALSE when there was nothing to do; E_FAIL or the failing operation's result
    [[nodiscard]] long SetCurrentServerConfig(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate);

    /// Fetches the host's logger and system information, and starts the Java side. Once that was tried, successfully or
    /// not, it returns S_OK without doing anything. The calling thread, on which COM is initialised, becomes the
    /// creator thread of the Java machine. Throws when memory is exhausted.
    /// @return S_OK; the HRESULT of the host object that is not to be had; E_FAIL for everything of Java's
    [[nodiscard]] long Initialize();

    /// Has the message client dispose itself and abandons the Java machine. On the thread that ran Initialize.
    void Dispose() noexcept;

    [[nodiscard]] ManagerState GetState() const noexcept { return m_state; }

private:
    /// SetCurrentServerConfig for an item, its failure logged.
    [[nodiscard]] HRESULT PointClient(const DataItem& item);
    [[nodiscard]] HRESULT FetchLogger();
    [[nodiscard]] HRESULT FetchSystemInfo();
    [[nodiscard]] HRESULT EnsureInitialized();
    [[nodiscard]] HRESULT InitializeOnce();
    [[nodiscard]] HRESULT SwitchIfChanged(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate);

    CThreadSlots& m_slots;
    JavaBridge m_java;
    CCriticalSection m_lock{LockRank::eOutermost};
    CBridgeLog m_log;
    Microsoft::WRL::ComPtr<ISystemInfo> m_systemInfo;
    std::atomic<ManagerState> m_state{ManagerState::eNotInitialised};
    bool m_isSwitching = false;  // a start or a switch is under way, on the thread that holds the lock
    CCallbackRegistry m_callbacks;
    ServerConfig m_server;
};

template <>
long CRMICommManagerImpl::DumpData<IUnknown>(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                             unsigned __int64 id, unsigned char type, IUnknown* data);
