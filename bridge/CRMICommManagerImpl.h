#pragma once

#include <windows.h>

#include <wrl/client.h>

#include "CCriticalSection.h"
#include "CBridgeLog.h"
#include "ISystemInfo.h"
#include "JavaBridge.h"

/// What stands behind the library's exports: the Java side of the bridge and the host's objects that it needs. One
/// lock, recursive, guards every member and serialises every operation; it is held while the host, COM and Java are
/// called, any of which may call in again on the same thread.
class CRMICommManagerImpl {
public:
    /// Throws CHresultException when the lock cannot be made.
    CRMICommManagerImpl() = default;
    /// Lets go of everything without calling Java.
    ~CRMICommManagerImpl();

    CRMICommManagerImpl(const CRMICommManagerImpl&) = delete;
    CRMICommManagerImpl& operator=(const CRMICommManagerImpl&) = delete;

    /// Fetches the host's logger and system information, and starts the Java side. Once that was tried, successfully or
    /// not, it returns S_OK without doing anything. The calling thread, on which COM is initialised, becomes the
    /// creator thread of the Java machine. Throws when memory is exhausted.
    /// @return S_OK; the HRESULT of the host object that is not to be had; E_FAIL for everything of Java's
    [[nodiscard]] long Initialize();

    /// Has the message client dispose itself and abandons the Java machine. On the thread that ran Initialize.
    void Dispose() noexcept;

private:
    [[nodiscard]] HRESULT FetchLogger();
    [[nodiscard]] HRESULT FetchSystemInfo();

    JavaBridge m_java;
    CCriticalSection m_lock;
    CBridgeLog m_log;
    Microsoft::WRL::ComPtr<ISystemInfo> m_systemInfo;
};
