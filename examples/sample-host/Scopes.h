#pragma once

// What a host takes from COM and from the library, each for a scope: the scopes' order in main.cpp is the order in
// which it is given up.

#include <windows.h>

#include <objbase.h>

#include <comdef.h>

#include <string>

#include "CItemSender.h"
#include "CRMICommManager.h"
#include "FindServer.h"
#include "ServiceObjects.h"
#include "Text.h"

inline void CheckResult(HRESULT result, const char* what) {
    if (FAILED(result)) {
        throw CannotGoOnException(std::string(what) + ": " + ToUtf8(_com_error(result).ErrorMessage()));
    }
}

/// COM on a thread, for a scope. The multithreaded apartment: its objects are called on whichever thread calls the
/// library, which is what the library does in any case, and no message loop is needed.
class CComApartment {
public:
    CComApartment() { CheckResult(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "COM cannot be initialised"); }
    ~CComApartment() { CoUninitialize(); }
    CComApartment(const CComApartment&) = delete;
    CComApartment& operator=(const CComApartment&) = delete;
};

/// The service object's class, known to COM in this process for a scope.
class CServiceRegistration {
public:
    explicit CServiceRegistration(const Microsoft::WRL::ComPtr<CServiceClass>& serviceClass) {
        CheckResult(CoRegisterClassObject(kServiceClassId, serviceClass.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                          &m_cookie),
                    "the service class cannot be registered");
    }
    ~CServiceRegistration() { CoRevokeClassObject(m_cookie); }
    CServiceRegistration(const CServiceRegistration&) = delete;
    CServiceRegistration& operator=(const CServiceRegistration&) = delete;

private:
    DWORD m_cookie = 0;
};

/// The callback, registered under the texts that the items are sent with, for a scope.
class CCallbackRegistration {
public:
    CCallbackRegistration(const MessageServer& server, const Microsoft::WRL::ComPtr<CAnswerCallback>& callback)
        : m_server(server), m_callback(callback) {
        CRMICommManager::GetInstance().RegisterDataDumpCallback(m_server.url.c_str(), m_server.authToken.c_str(),
                                                                m_server.certificate.c_str(), m_callback.Get());
    }
    ~CCallbackRegistration() {
        CRMICommManager::GetInstance().UnregisterDataDumpCallback(m_server.url.c_str(), m_server.authToken.c_str(),
                                                                  m_server.certificate.c_str(), m_callback.Get());
    }
    CCallbackRegistration(const CCallbackRegistration&) = delete;
    CCallbackRegistration& operator=(const CCallbackRegistration&) = delete;

private:
    const MessageServer& m_server;
    const Microsoft::WRL::ComPtr<CAnswerCallback> m_callback;
};
