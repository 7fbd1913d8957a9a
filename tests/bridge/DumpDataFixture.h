#pragma once

#include <string>
#include <utility>

#include "CManagedTest.h"

inline constexpr wchar_t kUrl[] = L"rmi://one";
inline constexpr wchar_t kToken[] = L"token";
inline constexpr wchar_t kCertificate[] = L"certificate";
inline constexpr unsigned char kNamelessKind = 11;
inline constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

inline const std::wstring kInDumpData =
    L" in function long __cdecl CRMICommManagerImpl::DumpData<struct IUnknown>(const wchar_t *,const wchar_t *,const "
    L"wchar_t *,unsigned __int64,unsigned char,struct IUnknown *)";
inline const std::wstring kInSetCurrentServerConfig =
    L" in long __cdecl CRMICommManagerImpl::SetCurrentServerConfig(const wchar_t *,const wchar_t *,const wchar_t *)";

/// The sending of items, between a host and the fake runtime.
class CDumpDataFixture : public CManagedTest {
protected:
    void SetUp() override {
        CManagedTest::SetUp();
        SetSystem(MakeSystem());
        Fake().MakeMethodReturnNull(kClient, "onStartup");
    }

    static SystemData MakeSystem() {
        SystemData system;
        system.machineName = L"desk";
        system.machineId = L"machine 7";
        system.virtualMachineId = L"vm 7";
        system.machineUniqueId = L"unique 7";
        system.isDesktop = VARIANT_TRUE;
        return system;
    }

    static SystemData MakeSystemWithComponent(CVariantValue identity) {
        SystemData system = MakeSystem();
        system.componentsIdentities.properties.push_back({L"Calderin", std::move(identity)});
        return system;
    }

    long Dump(unsigned char type, IUnknown* data = nullptr, unsigned __int64 id = 1) {
        return m_manager->DumpData<IUnknown>(kUrl, kToken, kCertificate, id, type, data);
    }

    /// Brings the bridge up and forgets how that went.
    void Start() {
        ASSERT_EQ(Dump(kNamelessKind), S_OK);
        ForgetStart();
        Host().Record().ClearCalls();
    }
};
