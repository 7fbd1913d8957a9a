#include "CRMICommManagerFacade.h"

#include <memory>

#include "CConversionBuffer.h"
#include "CRMICommManagerImpl.h"
#include "CThreadSlots.h"
#include "ProcessEnd.h"

CRMICommManagerFacade::~CRMICommManagerFacade() {
    // More than once where a callback's last release calls in, and so makes another manager.
    do {
        m_slots.RunCleaner();
        const std::unique_ptr<CRMICommManagerImpl> impl(m_impl.exchange(nullptr));
    } while (m_impl);
}

CRMICommManagerImpl& CRMICommManagerFacade::GetImpl() {
    if (CRMICommManagerImpl* const impl = m_impl) {
        return *impl;
    }
    const CCriticalSectionLock lock(m_creationLock);
    if (CRMICommManagerImpl* const impl = m_impl) {
        return *impl;
    }
    auto made = std::make_unique<CRMICommManagerImpl>(m_slots);
    CRMICommManagerImpl& impl = *made;
    const std::unique_ptr<CRMICommManagerImpl> earlier(m_impl.exchange(made.release()));
    return impl;
}

// When the process is ending, a call (from another DLL's end, say) must not wait for the manager's lock, which a thread
// may have held that is gone, and there is nobody left to be told.

template <>
long CRMICommManager::DumpData<IUnknown>(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                         unsigned __int64 id, unsigned char type, IUnknown* data) {
    if (IsProcessEnding()) {
        return E_FAIL;
    }
    CRMICommManagerImpl& impl = static_cast<CRMICommManagerFacade*>(this)->GetImpl();
    return impl.DumpData<IUnknown>(url, authToken, certificate, id, type, data);
}

namespace {

using Registration = long (CRMICommManagerImpl::*)(const wchar_t*, const wchar_t*, const wchar_t*, IDataDumpCallback*);

/// The texts are copied before anything else: the call may wait for a long one on another thread.
long Register(CRMICommManager& manager, Registration operation, const wchar_t* url, const wchar_t* authToken,
              const wchar_t* certificate, IDataDumpCallback* callback) {
    if (IsProcessEnding()) {
        return S_OK;
    }
    const CWideCopy urlCopy(url);
    const CWideCopy authTokenCopy(authToken);
    const CWideCopy certificateCopy(certificate);
    CRMICommManagerImpl& impl = static_cast<CRMICommManagerFacade&>(manager).GetImpl();
    return (impl.*operation)(urlCopy.Get(), authTokenCopy.Get(), certificateCopy.Get(), callback);
}

}  // namespace

long CRMICommManager::RegisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                               IDataDumpCallback* callback) {
    return Register(*this, &CRMICommManagerImpl::RegisterDataDumpCallback, url, authToken, certificate, callback);
}

long CRMICommManager::UnregisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                 const wchar_t* certificate, IDataDumpCallback* callback) {
    return Register(*this, &CRMICommManagerImpl::UnregisterDataDumpCallback, url, authToken, certificate, callback);
}
