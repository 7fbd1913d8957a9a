#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CFakeBridgeTest.h"

inline constexpr char kClient[] =
    "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/DesktopMessageClient";
inline constexpr char kConnection[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection";
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

/// The sending of items that need no conversion, between a host and the fake runtime.
class CDumpDataFixture : public CFakeBridgeTest {
protected:
    using Calls = std::vector<std::string>;

    void SetUp() override {
        CFakeBridgeTest::SetUp();
        Registry().SetAgentText(L"ConfigDirectory", L"C:\\Config");
        SetSystem(MakeSystem());
        Fake().MakeMethodReturnNull(kClient, "onStartup");
        m_manager = std::make_unique<CRMICommManagerImpl>(Slots());
    }

    void TearDown() override {
        EXPECT_FALSE(Fake().IsExceptionPending());
        Slots().RunCleaner();
        EXPECT_EQ(Fake().GetGlobalReferences(), 0);
        m_manager.reset();
        CFakeBridgeTest::TearDown();
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

    long Dump(unsigned char type, IUnknown* data = nullptr) {
        return m_manager->DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, type, data);
    }

    /// Brings the bridge up and forgets how that went.
    void Start() {
        ASSERT_EQ(Dump(kNamelessKind), S_OK);
        m_firstCall = Fake().GetMethodLogSize();
        m_firstEntry = Logged().size();
        Host().Record().ClearCalls();
    }

    Calls CallsSinceStart() { return MethodCalls(m_firstCall); }
    Texts LoggedSinceStart() {
        Texts logged = Logged();
        logged.erase(logged.begin(), logged.begin() + static_cast<std::ptrdiff_t>(m_firstEntry));
        return logged;
    }

    static FakeException Exception(const char* description) {
        FakeException exception;
        exception.description = description;
        return exception;
    }

    std::unique_ptr<CRMICommManagerImpl> m_manager;

private:
    long m_firstCall = 0;
    std::size_t m_firstEntry = 0;
};
