#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <string>

#include "CSampleReader.h"
#include "DataType.h"
#include "IHostServiceProvider.h"
#include "ISystemInfo.h"
#include "NetworkInterfaceRecord.h"
#include "ServiceClass.h"

/// A data item from the host's object to the message client, as code written by hand would send it. The host is asked
/// what the library asks it.
template <typename Java>
class CItemReader {
public:
    CItemReader(const Java& java, const JavaIds& ids, ISystemInfo& system, std::wstring authToken)
        : m_java(java), m_ids(ids), m_samples(m_java, m_ids), m_system(system), m_authToken(std::move(authToken)) {}

    CItemReader(const CItemReader&) = delete;
    CItemReader& operator=(const CItemReader&) = delete;

    void Send(unsigned char type, jlong id, IUnknown* data) const {
        m_java.BeginItem();
        m_system.Refresh();
        const Identity identity = ReadIdentity();
        auto* const session = Queried<IUserSessionInfo>(data);
        SendKind(type, id, data, session, identity);
        if (session) {
            session->Release();
        }
        SysFreeString(identity.machine);
        SysFreeString(identity.virtualMachine);
        SysFreeString(identity.unique);
        m_java.EndItem();
    }

private:
    static constexpr unsigned char kDesktopPoll = 255;

    struct Identity {
        BSTR machine = nullptr;
        BSTR virtualMachine = nullptr;
        BSTR unique = nullptr;
    };

    [[nodiscard]] Identity ReadIdentity() const {
        Identity identity;
        m_system.get_machineId(&identity.machine);
        m_system.get_virtualMachineId(&identity.virtualMachine);
        m_system.get_machineUniqueId(&identity.unique);
        auto* const components =
            Given<IPropertyBox>([&](IPropertyBox** given) { m_system.get_componentsIdentities(given); });
        BSTR name = SysAllocString(L"Calderin");
        VARIANT component;
        VariantInit(&component);
        components->GetProperty(name, &component);  // the measured host has none
        VariantClear(&component);
        SysFreeString(name);
        components->Release();
        return identity;
    }

    void SendKind(unsigned char type, jlong id, IUnknown* data, IUserSessionInfo* info,
                  const Identity& identity) const {
        if (type > eTraceRoute && type != kDesktopPoll) {
            return;
        }
        const jobject connection = MakeConnection(identity);
        if (info) {
            SendSessionEvent(type, connection, id, data, m_samples.ReadSession(*info));
            return;
        }
        switch (type) {
            case eStartup:
                return m_java.Ask(m_ids.client, m_ids.onStartup, MakeDescriptor(identity), connection);
            case eSample:
                return SendSample(connection, data);
            case eExtendedData:
                return SendExtendedData(connection, data);
            default:
                static_cast<void>(ReadDesktop());
                return m_java.Ask(m_ids.client, m_ids.onDesktopPoll, connection, id, m_java.MakeText({}));
        }
    }

    void SendSessionEvent(unsigned char type, jobject connection, jlong id, IUnknown* data, jobject session) const {
        switch (type) {
            case eUserSessionLogon:
                return m_java.Ask(m_ids.client, m_ids.onUserLogon, connection, ReadDesktop(), id, session);
            case eUserSessionRefresh:
                return m_java.Call(m_ids.client, m_ids.refreshSession, connection, id, ReadDesktop(), session);
            case eUserSessionReconnect:
                return m_java.Call(m_ids.client, m_ids.onUserReconnect, connection, id, session);
            case eUserSessionDisconnect:
                return m_java.Call(m_ids.client, m_ids.onUserDisconnect, connection, id, session);
            case eUserSessionLogoff: {
                auto* const figures = Queried<ISampleNode>(data);
                m_samples.AddFigures(session, *figures);
                figures->Release();
                return m_java.Call(m_ids.client, m_ids.onUserLogoff, connection, id, session);
            }
            default:
                return;  // the beginning and the end of a session are told to nobody
        }
    }

    void SendSample(jobject connection, IUnknown* data) const {
        auto* const sessions = FetchSessions();
        auto* const node = Queried<ISampleNode>(data);
        const jobject sample = m_samples.ReadSample(*node, *sessions);
        node->Release();
        sessions->Release();
        m_java.Ask(m_ids.client, m_ids.onDataCollected, connection, sample);
    }

    void SendExtendedData(jobject connection, IUnknown* data) const {
        auto* const box = Queried<IPropertyBox>(data);
        auto* const metaData = ReadObject<IPropertyBox>(*box, L"meta-data");
        auto* const metrics = ReadObject<INameValueEnumerator>(*box, L"metrics");
        box->Release();

        const jobject map = m_java.Make(m_ids.map);
        m_samples.WalkTexts(*metaData,
                            [&](jstring name, jstring value) { m_java.Ask(map, m_ids.mapPut, name, value); });
        metaData->Release();
        auto* const node = Queried<ISampleNode>(data);
        const jobject sample = m_samples.ReadExtendedSample(*node, metrics);
        node->Release();
        m_java.Ask(m_ids.client, m_ids.onExtendedDataCollected, connection, map, sample);
    }

    template <typename Interface>
    [[nodiscard]] static Interface* ReadObject(IPropertyBox& box, const wchar_t* propertyName) {
        BSTR name = SysAllocString(propertyName);
        VARIANT value;
        VariantInit(&value);
        box.GetProperty(name, &value);
        auto* const found = Queried<Interface>(value.punkVal);
        VariantClear(&value);
        SysFreeString(name);
        return found;
    }

    /// Through COM, as there is no other way to the host's objects.
    [[nodiscard]] static ISessionCollection* FetchSessions() {
        IHostServiceProvider* services = nullptr;
        CoCreateInstance(kServiceClassId, nullptr, CLSCTX_ALL, IHostServiceProvider::kId,
                         reinterpret_cast<void**>(&services));
        ISessionCollection* sessions = nullptr;
        if (FAILED(services->QueryInterface(ISessionCollection::kId, reinterpret_cast<void**>(&sessions)))) {
            auto* const object =
                Given<IUnknown>([&](IUnknown** given) { services->GetHostObject(ISessionCollection::kId, given); });
            sessions = Queried<ISessionCollection>(object);
            object->Release();
        }
        services->Release();
        return sessions;
    }

    [[nodiscard]] jobject MakeConnection(const Identity& identity) const {
        const jstring id = m_java.MakeText(View(identity.machine));
        const jstring authToken = m_java.MakeText(m_authToken);
        const jstring uniqueId = m_java.MakeText(View(identity.virtualMachine));
        VARIANT_BOOL isDesktop = VARIANT_FALSE;
        m_system.get_isDesktop(&isDesktop);
        const jstring deviceType = m_java.MakeText(isDesktop == VARIANT_TRUE ? L"DESKTOP" : L"SERVER");
        return m_java.Make(m_ids.connection, id, authToken, uniqueId, jint{0x60200}, deviceType);
    }

    [[nodiscard]] jstring MakeDescriptor(const Identity& identity) const {
        std::wstring text = L"<client><type>DesktopAgent</type><name>";
        BSTR name = nullptr;
        m_system.get_machineName(&name);
        text.append(View(name)).append(L"</name><id>").append(View(identity.machine));
        text.append(L"</id><version>6.2.0.3274634</version><uniqueid>");
        text.append(View(identity.virtualMachine)).append(L"</uniqueid></client>");
        SysFreeString(name);
        return m_java.MakeText(text);
    }

    [[nodiscard]] jobject ReadDesktop() const {
        SAFEARRAY* adapters = nullptr;
        m_system.get_networkInterfaces(&adapters);
        const jstring name = m_samples.ReadText([&](BSTR* text) { m_system.get_machineName(text); });
        const jstring fqdn = m_samples.ReadText([&](BSTR* text) { m_system.get_FQDN(text); });
        const jobject desktop = m_java.Make(m_ids.desktop, name, fqdn);
        LONG memory = 0;
        m_system.get_totalMemory(&memory);
        m_java.Call(desktop, m_ids.desktopPutMemory, jint{memory});

        void* records = nullptr;
        SafeArrayAccessData(adapters, &records);
        for (ULONG i = 0; i < adapters->rgsabound[0].cElements; ++i) {
            AddAdapter(desktop, static_cast<const NetworkInterfaceRecord*>(records)[i]);
        }
        SafeArrayUnaccessData(adapters);
        SafeArrayDestroy(adapters);
        return desktop;
    }

    void AddAdapter(jobject desktop, const NetworkInterfaceRecord& record) const {
        const jobject adapter = m_java.Make(m_ids.adapter, m_java.MakeText(View(record.description)));
        m_java.Call(adapter, m_ids.adapterPutMac, m_java.MakeText(View(record.macAddress)));
        m_java.Call(adapter, m_ids.adapterPutIp, m_java.MakeText(View(record.ipAddress)));
        m_java.Call(adapter, m_ids.adapterPutMask, m_java.MakeText(View(record.subnetMask)));
        m_java.Call(adapter, m_ids.adapterPutSubnet, m_java.MakeText(View(record.subnet)));
        m_java.Call(adapter, m_ids.adapterPutSpeed, jint{record.linkSpeed});
        m_java.Call(desktop, m_ids.desktopAddAdapter, adapter);
    }

    const Java m_java;
    const JavaIds& m_ids;
    const CSampleReader<Java> m_samples;
    ISystemInfo& m_system;
    const std::wstring m_authToken;
};
