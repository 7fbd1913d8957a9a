#include "CRMICommManagerImpl.h"

#include "CDataDispatch.h"
#include "CJavaLocalFrame.h"
#include "CThreadSlots.h"
#include "HostInterface.h"
#include "IHostLogger.h"
#include "MachineIdentity.h"
#include "ServerSwitch.h"

using Microsoft::WRL::ComPtr;

namespace {

// The signatures are part of the texts, the same whichever compiler builds the library.
constexpr wchar_t kNoSystemInfo[] = L"Failed to get system info in long __cdecl CRMICommManagerImpl::Initialize(void)";
constexpr wchar_t kSetCurrentServerConfig[] =
    L"long __cdecl CRMICommManagerImpl::SetCurrentServerConfig(const wchar_t *,const wchar_t *,const wchar_t *)";
constexpr wchar_t kDumpData[] =
    L"long __cdecl CRMICommManagerImpl::DumpData<struct IUnknown>(const wchar_t *,const wchar_t *,const wchar_t *,"
    L"unsigned __int64,unsigned char,struct IUnknown *)";

constexpr wchar_t kStartFailed[] = L"Failed to initialize CRMICommManagerImpl in %s";
constexpr wchar_t kStartHadFailed[] =
    L"Failed to SetCurrentServerConfig in %s because of previous RMI manager initialization failure";
constexpr wchar_t kDisposed[] = L"Failed to SetCurrentServerConfig in %s because RMI manager has been uninitialized";
constexpr wchar_t kNotConfigured[] = L"Failed to SetCurrentServerConfig in function %s";
constexpr wchar_t kNotRefreshed[] = L"Failed to refresh system info in function %s";

/// Sets a flag for the length of a scope.
class CFlagged {
public:
    explicit CFlagged(bool& flag) noexcept : m_flag(flag) { m_flag = true; }
    ~CFlagged() { m_flag = false; }

    CFlagged(const CFlagged&) = delete;
    CFlagged& operator=(const CFlagged&) = delete;

private:
    bool& m_flag;
};

void DisposeManager(CRMICommManagerImpl& manager) noexcept {
    manager.Dispose();
}

}  // namespace

CRMICommManagerImpl::~CRMICommManagerImpl() {
    AbandonJavaBridge(m_java);
}

template <>
long CRMICommManagerImpl::DumpData<IUnknown>(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                             unsigned __int64 id, unsigned char type, IUnknown* data) {
    const CCriticalSectionLock lock(m_lock);
    const DataItem item{url, authToken, certificate, id, type, data};
    const HRESULT configured = PointClient(item);
    if (FAILED(configured)) {
        return configured;
    }
    const HRESULT refreshed = m_systemInfo->Refresh();
    if (FAILED(refreshed)) {
        m_log.ErrorWithResult(refreshed, kNotRefreshed, kDumpData);
    }
    MachineIdentity identity;
    const HRESULT identified = ReadMachineIdentity(m_log, *m_systemInfo.Get(), identity);
    if (FAILED(identified)) {
        return identified;
    }

    m_slots.AttachThread(m_java.vm);
    const CJavaLocalFrame frame(m_java.vm->GetEnv());
    // Asked for again right before the item goes out: a call that came in meanwhile may have switched to another
    // server.
    const auto pointClient = [this, &item] { return PointClient(item); };
    CDataDispatch dispatch(m_log, m_java, *m_systemInfo.Get(), m_callbacks, pointClient, identity, item);
    return dispatch.Send();
}

HRESULT CRMICommManagerImpl::PointClient(const DataItem& item) {
    const HRESULT configured = SetCurrentServerConfig(item.url, item.authToken, item.certificate);
    if (FAILED(configured)) {
        m_log.ErrorWithResult(configured, kNotConfigured, kDumpData);
    }
    return configured;
}

long CRMICommManagerImpl::RegisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                   const wchar_t* certificate, IDataDumpCallback* callback) {
    const CCriticalSectionLock lock(m_lock);
    m_callbacks.Register(MakeServerConfig(url, authToken, certificate), callback);
    return S_OK;
}

long CRMICommManagerImpl::UnregisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                     const wchar_t* certificate, IDataDumpCallback* callback) {
    const CCriticalSectionLock lock(m_lock);
    m_callbacks.Unregister(MakeServerConfig(url, authToken, certificate), callback);
    return S_OK;
}

long CRMICommManagerImpl::SetCurrentServerConfig(const wchar_t* url, const wchar_t* authToken,
                                                 const wchar_t* certificate) {
    const CCriticalSectionLock lock(m_lock);
    if (m_isSwitching) {
        // A call that COM, the host or Java brought in, on this thread, in the middle of a start or a switch.
        return E_FAIL;
    }
    const CFlagged switching(m_isSwitching);
    const HRESULT initialized = EnsureInitialized();
    return FAILED(initialized) ? initialized : SwitchIfChanged(url, authToken, certificate);
}

/// There is no second try, and no start after the end.
HRESULT CRMICommManagerImpl::EnsureInitialized() {
    switch (m_state) {
        case ManagerState::eInitFailed:
            m_log.Error(kStartHadFailed, kSetCurrentServerConfig);
            return E_FAIL;
        case ManagerState::eUninitialised:
            m_log.Error(kDisposed, kSetCurrentServerConfig);
            return E_FAIL;
        case ManagerState::eInitialised:
            return S_OK;
        case ManagerState::eNotInitialised:
            break;
    }
    const HRESULT initialized = InitializeOnce();
    if (FAILED(initialized)) {
        m_log.ErrorWithResult(initialized, kStartFailed, kSetCurrentServerConfig);
    }
    return initialized;
}

/// Leaves the state that the attempt comes to, whatever its way out: a start that an exception broke off would, tried
/// again, find its half-made machine and take it for a whole one.
HRESULT CRMICommManagerImpl::InitializeOnce() {
    try {
        m_slots.WatchThread();
        const HRESULT initialized = Initialize();
        if (SUCCEEDED(initialized)) {
            m_slots.SetCleaner(*this, &DisposeManager);
        }
        m_state = SUCCEEDED(initialized) ? ManagerState::eInitialised : ManagerState::eInitFailed;
        return initialized;
    } catch (...) {
        StopJavaBridge(m_java);
        m_state = ManagerState::eInitFailed;
        throw;
    }
}

HRESULT CRMICommManagerImpl::SwitchIfChanged(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate) {
    if (IsSameServer(m_server, url, authToken, certificate)) {
        return S_FALSE;
    }
    ServerConfig server = MakeServerConfig(url, authToken, certificate);
    const HRESULT switched = SwitchMessageServer(m_log, m_java, m_slots, server);
    if (SUCCEEDED(switched)) {
        m_server = std::move(server);
    }
    return switched;
}

long CRMICommManagerImpl::Initialize() {
    const CCriticalSectionLock lock(m_lock);
    const HRESULT logger = FetchLogger();
    if (FAILED(logger)) {
        return logger;
    }
    const HRESULT systemInfo = FetchSystemInfo();
    if (FAILED(systemInfo)) {
        m_log.ErrorWithResult(systemInfo, kNoSystemInfo);
        return systemInfo;
    }
    if (m_java.vm) {
        return S_OK;
    }
    return StartJavaBridge(m_log, m_java);
}

void CRMICommManagerImpl::Dispose() noexcept {
    const CCriticalSectionLock lock(m_lock);
    StopJavaBridge(m_java);
    m_state = ManagerState::eUninitialised;
}

/// A host that answers with success and no logger has none, and nothing is logged.
HRESULT CRMICommManagerImpl::FetchLogger() {
    if (m_log) {
        return S_OK;
    }
    ComPtr<IHostLogger> logger;
    const HRESULT fetched = GetHostInterface(logger);
    if (SUCCEEDED(fetched)) {
        m_log = CBridgeLog(std::move(logger));
    }
    return fetched;
}

HRESULT CRMICommManagerImpl::FetchSystemInfo() {
    if (m_systemInfo) {
        return S_OK;
    }
    return RequireHostInterface(m_systemInfo);
}
