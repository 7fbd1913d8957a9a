#include "CRMICommManagerImpl.h"

#include "HostInterface.h"
#include "IHostLogger.h"

using Microsoft::WRL::ComPtr;

namespace {

// The signature is part of the text, the same whichever compiler builds the library.
constexpr wchar_t kNoSystemInfo[] = L"Failed to get system info in long __cdecl CRMICommManagerImpl::Initialize(void)";

}  // namespace

CRMICommManagerImpl::~CRMICommManagerImpl() {
    AbandonJavaBridge(m_java);
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
    const HRESULT fetched = GetHostInterface(m_systemInfo);
    // Unlike the logger it cannot be done without.
    return SUCCEEDED(fetched) && !m_systemInfo ? E_POINTER : fetched;
}
