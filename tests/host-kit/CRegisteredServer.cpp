#include "CRegisteredServer.h"

#include <objbase.h>

#include <iterator>
#include <string>
#include <string_view>

#include "ThrowResult.h"
#include "HostKitPaths.h"
#include "ServiceClass.h"
#include "server/HostKitServer.h"

namespace {

constexpr wchar_t kLockName[] = L"host_kit_server registration";
constexpr wchar_t kClassesPath[] = L"SOFTWARE\\Classes\\CLSID\\";
constexpr wchar_t kServerKey[] = L"\\InprocServer32";

std::wstring ClassPath() {
    wchar_t id[39] = {};
    StringFromGUID2(kServiceClassId, id, static_cast<int>(std::size(id)));
    return std::wstring(kClassesPath) + id;
}

void WriteText(const wchar_t* name, std::wstring_view text) {
    const LSTATUS written = RegSetKeyValueW(HKEY_LOCAL_MACHINE, (ClassPath() + kServerKey).c_str(), name, REG_SZ,
                                            text.data(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (written != ERROR_SUCCESS) {
        ThrowResult(HRESULT_FROM_WIN32(written));
    }
}

void RemoveRegistration() noexcept {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, ClassPath().c_str());
}

void HandClassObject(const CModule& server, IUnknown* classObject) noexcept {
    const auto set = reinterpret_cast<SetHostKitClassObjectFunction>(
        reinterpret_cast<void*>(GetProcAddress(server.Get(), kSetHostKitClassObject)));
    set(classObject);
}

}  // namespace

CServerRegistrationLock::CServerRegistrationLock() {
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, kLockName);
    if (!mutex) {
        ThrowLastError();
    }
    // An abandoned mutex comes of a test that crashed; what it left in the registry is written over.
    WaitForSingleObject(mutex, INFINITE);
    m_mutex.Reset(mutex);
}

CRegisteredServer::CRegisteredServer(IUnknown* classObject) : m_server(LoadLibraryW(HostKitPaths::kServer)) {
    if (!m_server) {
        ThrowLastError();
    }
    HandClassObject(m_server, classObject);
    try {
        WriteText(nullptr, HostKitPaths::kServer);
        WriteText(L"ThreadingModel", L"Both");
    } catch (...) {
        RemoveRegistration();
        HandClassObject(m_server, nullptr);
        throw;
    }
}

CRegisteredServer::~CRegisteredServer() {
    RemoveRegistration();
    HandClassObject(m_server, nullptr);
}
