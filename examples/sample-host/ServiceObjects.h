#pragma once

// The objects that the library finds, or is given, and keeps: the log, the action executor, the sessions, the callback,
// and the service object that leads to them.

#include <vector>

#include "CComObject.h"
#include "Report.h"
#include "DataObjects.h"
#include "IActionExecutor.h"
#include "IDataDumpCallback.h"
#include "IHostLogger.h"
#include "IHostServiceProvider.h"
#include "ISessionCollection.h"

/// Where the host registers its service object, and the library looks for it.
constexpr CLSID kServiceClassId = {0x2D6D321D, 0x3A1D, 0x4BB9, {0x91, 0x61, 0x21, 0x91, 0xD7, 0x01, 0x01, 0x1D}};

/// Prints the library's log. It may be called on any thread that calls the library.
class CLogger final : public CComObject<IHostLogger> {
public:
    explicit CLogger(bool isVerbose) noexcept : m_isVerbose(isVerbose) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved7() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved8() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LogError(BSTR, BSTR message) override { return ReportLog("error", message); }
    HRESULT STDMETHODCALLTYPE LogWarning(BSTR, BSTR message) override { return ReportLog("warning", message); }
    HRESULT STDMETHODCALLTYPE LogInfo(BSTR, BSTR message) override { return ReportLog("info", message); }
    HRESULT STDMETHODCALLTYPE LogVerbose(BSTR, LONG, BSTR message) override {
        return m_isVerbose ? ReportLog("verbose", message) : S_OK;
    }

private:
    const bool m_isVerbose;
};

/// Takes the actions that the message server asks for. A real host would do something; its result becomes DumpData's.
class CActionExecutor final : public CComObject<IActionExecutor> {
public:
    HRESULT STDMETHODCALLTYPE Execute(VARIANT action) override {
        return V_VT(&action) == VT_BSTR ? ReportAction(V_BSTR(&action)) : E_INVALIDARG;
    }
};

/// The interface has no ID: the library is handed the object and asks it for no other one.
template <>
inline constexpr const IID& kIdOf<IDataDumpCallback> = IID_IUnknown;

/// Hears the message server's answers to start-ups and logons.
class CAnswerCallback final : public CComObject<IDataDumpCallback> {
public:
    HRESULT STDMETHODCALLTYPE OnDataDump(ULONG type, const wchar_t* text) override { return ReportAnswer(type, text); }
};

/// The sessions that samples speak of: here the host's own one alone.
class CSessionCollection final : public CComObject<ISessionCollection> {
public:
    /// On the thread that hands items over, between two of them.
    void SetSession(LONG id, Microsoft::WRL::ComPtr<IUserSessionInfo> session) noexcept {
        m_id = id;
        m_session = std::move(session);
    }

    HRESULT STDMETHODCALLTYPE GetSession(LONG id, IUserSessionInfo** session) override {
        return m_session && id == m_id ? m_session.CopyTo(session) : E_INVALIDARG;
    }

private:
    LONG m_id = 0;
    Microsoft::WRL::ComPtr<IUserSessionInfo> m_session;
};

/// Leads from an interface's ID to the host's object that has it.
class CServiceProvider final : public CComObject<IHostServiceProvider> {
public:
    explicit CServiceProvider(std::vector<Microsoft::WRL::ComPtr<IUnknown>> objects) : m_objects(std::move(objects)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHostObject(REFIID interfaceId, IUnknown** object) override {
        for (const auto& candidate : m_objects) {
            if (SUCCEEDED(candidate->QueryInterface(interfaceId, reinterpret_cast<void**>(object)))) {
                return S_OK;
            }
        }
        return E_NOINTERFACE;
    }

private:
    const std::vector<Microsoft::WRL::ComPtr<IUnknown>> m_objects;
};

/// Gives the one service object to everybody who asks COM for a new one.
class CServiceClass final : public CComObject<IClassFactory> {
public:
    explicit CServiceClass(Microsoft::WRL::ComPtr<IHostServiceProvider> services) noexcept
        : m_services(std::move(services)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
        return outer ? CLASS_E_NOAGGREGATION : m_services->QueryInterface(interfaceId, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    const Microsoft::WRL::ComPtr<IHostServiceProvider> m_services;
};
