#pragma once

#include <initializer_list>
#include <memory>
#include <utility>

#include "CCallRecord.h"
#include "CLeanObject.h"
#include "CLeanValues.h"
#include "HostData.h"
#include "IHostLogger.h"
#include "IHostServiceProvider.h"
#include "ISessionCollection.h"
#include "ISystemInfo.h"
#include "NetworkInterfaceArray.h"

// The objects that the library fetches and keeps, and those that lead to them.

/// The machine, a server with adapters. Its array of adapters is made anew each time, as the caller destroys it.
class CLeanSystem final : public CLeanObject<ISystemInfo> {
public:
    explicit CLeanSystem(SystemData data) : m_data(std::move(data)) {}

    HRESULT STDMETHODCALLTYPE Refresh() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_networkInterfaces(SAFEARRAY** interfaces) override {
        *interfaces = MakeNetworkInterfaceArray(m_record, m_data.networkInterfaces, {});
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_machineName(BSTR* name) override { return GiveText(name, m_data.machineName); }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_isDesktop(VARIANT_BOOL* isDesktop) override {
        *isDesktop = m_data.isDesktop;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FQDN(BSTR* name) override { return GiveText(name, m_data.fqdn); }
    HRESULT STDMETHODCALLTYPE get_totalMemory(LONG* memory) override {
        *memory = m_data.totalMemory;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_virtualMachineId(BSTR* id) override { return GiveText(id, m_data.virtualMachineId); }
    HRESULT STDMETHODCALLTYPE get_machineId(BSTR* id) override { return GiveText(id, m_data.machineId); }
    HRESULT STDMETHODCALLTYPE get_machineUniqueId(BSTR* id) override { return GiveText(id, m_data.machineUniqueId); }
    HRESULT STDMETHODCALLTYPE get_componentsIdentities(IPropertyBox** identities) override {
        return GiveObject<IPropertyBox>(identities, &m_components);
    }

private:
    const SystemData m_data;
    const std::shared_ptr<CCallRecord> m_record = std::make_shared<CCallRecord>();
    CLeanBox m_components{{}};
};

/// Drops what it is told, at once: what is left is the price that the library pays for telling it. Keeps the
/// last failure: a measured run has none.
class CLeanLogger final : public CLeanObject<IHostLogger> {
public:
    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved7() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved8() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LogError(BSTR, BSTR message) override {
        m_lastError.assign(message, SysStringLen(message));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LogWarning(BSTR, BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LogInfo(BSTR, BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LogVerbose(BSTR, LONG, BSTR) override { return S_OK; }

    /// Empty when there was none.
    [[nodiscard]] const std::wstring& GetLastError() const noexcept { return m_lastError; }
    void ForgetError() noexcept { m_lastError.clear(); }

private:
    std::wstring m_lastError;
};

/// Leads from an interface's ID to the object that has it; the objects are somebody else's. It is asked for their
/// interfaces itself first: a host whose service object has them is the quick kind, one that leads to other objects the
/// slow one.
class CLeanServices final : public CLeanObject<IHostServiceProvider> {
public:
    CLeanServices(ISystemInfo& system, IHostLogger& logger, ISessionCollection& sessions) noexcept
        : m_system(system), m_logger(logger), m_sessions(&sessions) {}

    void SetSessions(ISessionCollection* sessions) noexcept { m_sessions = sessions; }

    /// Which kind of host it is from now on.
    void SetLeading(bool isLeading) noexcept { m_isLeading = isLeading; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        const HRESULT own = CLeanObject::QueryInterface(interfaceId, object);
        if (SUCCEEDED(own) || m_isLeading) {
            return own;
        }
        return GetHostObject(interfaceId, reinterpret_cast<IUnknown**>(object));
    }
    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHostObject(REFIID interfaceId, IUnknown** object) override {
        for (IUnknown* const candidate : std::initializer_list<IUnknown*>{&m_system, &m_logger, m_sessions}) {
            if (SUCCEEDED(candidate->QueryInterface(interfaceId, reinterpret_cast<void**>(object)))) {
                return S_OK;
            }
        }
        return E_NOINTERFACE;
    }

private:
    ISystemInfo& m_system;
    IHostLogger& m_logger;
    ISessionCollection* m_sessions;
    bool m_isLeading = false;
};

/// Gives the one service object to everybody who asks COM for a new one. No CLeanObject: COM's interfaces do not know
/// their IDs.
class CLeanServiceClass final : public IClassFactory {
public:
    explicit CLeanServiceClass(IHostServiceProvider& services) : m_services(services) {}
    virtual ~CLeanServiceClass() = default;

    CLeanServiceClass(const CLeanServiceClass&) = delete;
    CLeanServiceClass& operator=(const CLeanServiceClass&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        const bool isKnown = interfaceId == IID_IUnknown || interfaceId == IID_IClassFactory;
        *object = isKnown ? this : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
        return outer ? CLASS_E_NOAGGREGATION : m_services.QueryInterface(interfaceId, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    IHostServiceProvider& m_services;
};
