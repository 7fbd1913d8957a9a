#pragma once

#include <windows.h>

#include <unknwn.h>

#include "CUniqueHandle.h"
#include "SystemHandles.h"

struct RegistrationMutexTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle mutex) noexcept {
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }
};

/// One process at a time has the service class in the registry, which tests running side by side share. A test that
/// needs the class *not* to be registered holds this as well. Waits; destroy it on the thread that made it.
class CServerRegistrationLock {
public:
    /// Throws CHresultException.
    CServerRegistrationLock();

private:
    CUniqueHandle<RegistrationMutexTraits> m_mutex;
};

/// While it lives, the service class is registered with the machine as an in-process server of the threading model
/// "Both", so that CoCreateInstance on any thread finds it, and every apartment gets the objects themselves.
/// Make and destroy it on one thread, with COM initialised there or not.
class CRegisteredServer {
public:
    /// References `classObject`, which the server hands out from now on. Throws CHresultException.
    explicit CRegisteredServer(IUnknown* classObject);
    ~CRegisteredServer();

    CRegisteredServer(const CRegisteredServer&) = delete;
    CRegisteredServer& operator=(const CRegisteredServer&) = delete;

private:
    CServerRegistrationLock m_lock;
    CModule m_server;
};
