#pragma once

// What the library asks this host for: its services, its log, and what it knows of the machine.

#include <windows.h>

#include <oleauto.h>

#include "CCountedObject.h"
#include "IHostLogger.h"
#include "IHostServiceProvider.h"
#include "IPropertyBox.h"
#include "ISystemInfo.h"
#include "NoRuntime.h"

/// Prints errors and warnings and counts them; counts milestones and keeps the last one.
class CLogger final : public CCountedObject<IHostLogger, IHostLogger::kId> {
public:
    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved7() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved8() override { return E_UNEXPECTED; }

    HRESULT STDMETHODCALLTYPE LogError(BSTR component, BSTR message) override {
        printf("error: %ls: %ls\n", component, message);
        ++m_complaints;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LogWarning(BSTR component, BSTR message) override {
        printf("warning: %ls: %ls\n", component, message);
        ++m_complaints;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LogInfo(BSTR, BSTR message) override {
        ++m_infos;
        lstrcpynW(m_lastInfo, message, ARRAYSIZE(m_lastInfo));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LogVerbose(BSTR, LONG, BSTR) override { return S_OK; }

    [[nodiscard]] int CountComplaints() const { return m_complaints; }
    [[nodiscard]] int CountInfos() const { return m_infos; }
    [[nodiscard]] const wchar_t* GetLastInfo() const { return m_lastInfo; }

private:
    int m_complaints = 0;
    int m_infos = 0;
    wchar_t m_lastInfo[256] = {};
};

/// Holds nothing.
class CPropertyBox final : public CCountedObject<IPropertyBox, IPropertyBox::kId> {
public:
    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR, VARIANT*) override { return E_FAIL; }
};

class CSystemInfo final : public CCountedObject<ISystemInfo, ISystemInfo::kId> {
public:
    constexpr explicit CSystemInfo(CPropertyBox& identities) : m_identities(identities) {}

    HRESULT STDMETHODCALLTYPE Refresh() override {
        ++m_refreshes;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_networkInterfaces(SAFEARRAY**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_machineName(BSTR* name) override { return Give(L"desk", name); }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE get_isDesktop(VARIANT_BOOL* isDesktop) override {
        *isDesktop = VARIANT_TRUE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FQDN(BSTR* name) override { return Give(L"desk.example", name); }
    HRESULT STDMETHODCALLTYPE get_totalMemory(LONG* memory) override {
        *memory = 4096;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_virtualMachineId(BSTR* id) override { return Give(L"vm-7", id); }
    HRESULT STDMETHODCALLTYPE get_machineId(BSTR* id) override { return Give(L"machine-7", id); }
    HRESULT STDMETHODCALLTYPE get_machineUniqueId(BSTR* id) override { return Give(L"unique-7", id); }
    HRESULT STDMETHODCALLTYPE get_componentsIdentities(IPropertyBox** identities) override {
        m_identities.AddRef();
        *identities = &m_identities;
        return S_OK;
    }

    [[nodiscard]] int CountRefreshes() const { return m_refreshes; }

private:
    static HRESULT Give(const wchar_t* text, BSTR* given) {
        *given = SysAllocString(text);
        return *given ? S_OK : E_OUTOFMEMORY;
    }

    CPropertyBox& m_identities;
    int m_refreshes = 0;
};

class CServiceProvider final : public CCountedObject<IHostServiceProvider, IHostServiceProvider::kId> {
public:
    constexpr CServiceProvider(CLogger& logger, CSystemInfo& systemInfo) : m_logger(logger), m_systemInfo(systemInfo) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE GetHostObject(REFIID interfaceId, IUnknown** object) override {
        if (interfaceId == IHostLogger::kId) {
            return Give(m_logger, object);
        }
        return interfaceId == ISystemInfo::kId ? Give(m_systemInfo, object) : E_NOINTERFACE;
    }

private:
    static HRESULT Give(IUnknown& object, IUnknown** given) {
        object.AddRef();
        *given = &object;
        return S_OK;
    }

    CLogger& m_logger;
    CSystemInfo& m_systemInfo;
};

/// Gives everybody the same object.
class CClassObject final : public CCountedObject<IClassFactory, IID_IClassFactory> {
public:
    constexpr explicit CClassObject(CServiceProvider& services) : m_services(services) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
        return outer ? CLASS_E_NOAGGREGATION : m_services.QueryInterface(interfaceId, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    CServiceProvider& m_services;
};
