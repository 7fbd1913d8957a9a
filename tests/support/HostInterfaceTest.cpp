#include "HostInterface.h"

#include "CHostedTest.h"
#include "CImportHook.h"
#include "CRegisteredServer.h"
#include "RunOnNewThread.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

LSTATUS WINAPI RefuseToOpen(HKEY, const wchar_t*, DWORD, REGSAM, HKEY*) {
    return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI RefuseToCreate(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, SECURITY_ATTRIBUTES*, HKEY*,
                              DWORD*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return ERROR_ACCESS_DENIED;
}

class HostInterfaceTest : public CHostedTest {
protected:
    HostInterfaceTest() { RemoveRegistrations(); }
    ~HostInterfaceTest() override { RemoveRegistrations(); }

    static std::wstring KeyOf(REFIID interfaceId) {
        wchar_t text[64] = L"";
        StringFromGUID2(interfaceId, text, 64);
        return std::wstring(L"Interface\\") + text;
    }

    static void RemoveRegistrations() {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, KeyOf(IHostServiceProvider::kId).c_str());
        RegDeleteTreeW(HKEY_CLASSES_ROOT, KeyOf(ISystemInfo::kId).c_str());
    }

    static bool IsRegistered(REFIID interfaceId) {
        wchar_t text[64] = L"";
        DWORD bytes = sizeof(text);
        RegGetValueW(HKEY_CLASSES_ROOT, (KeyOf(interfaceId) + L"\\ProxyStubClsid32").c_str(), nullptr, RRF_RT_REG_SZ,
                     nullptr, text, &bytes);
        return std::wstring(text) == kMarshaller;
    }

    ComPtr<ISystemInfo> m_system;
};

TEST_F(HostInterfaceTest, AnObjectIsFetchedThroughGetHostObject) {
    EXPECT_EQ(GetHostInterface(m_system), S_OK);

    ASSERT_NE(m_system, nullptr);
    EXPECT_EQ(m_system->Refresh(), S_OK);
    EXPECT_EQ(Host().Record().CountCalls("IHostServiceProvider::GetHostObject"), 1);
    m_system.Reset();
}

TEST_F(HostInterfaceTest, AServiceObjectThatHasTheInterfaceIsNotAskedForAnother) {
    Host().Services().AnswerDirectly(ISystemInfo::kId);

    EXPECT_EQ(GetHostInterface(m_system), S_OK);

    EXPECT_NE(m_system, nullptr);
    EXPECT_EQ(Host().Record().CountCalls("IHostServiceProvider::GetHostObject"), 0);
    m_system.Reset();
}

TEST_F(HostInterfaceTest, WithoutTheServiceClassTheErrorIsComs) {
    const CServerRegistrationLock nobodyRegisters;
    Unregister();

    EXPECT_EQ(GetHostInterface(m_system), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(m_system, nullptr);
}

TEST_F(HostInterfaceTest, WithoutComTheErrorIsComs) {
    Unregister();
    CoUninitialize();

    EXPECT_EQ(GetHostInterface(m_system), CO_E_NOTINITIALIZED);
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
}

TEST_F(HostInterfaceTest, AServiceObjectWithoutItsInterfaceIsRegisteredForMarshallingAndCreatedOnceMore) {
    Host().Record().RefuseQuery("Services", IHostServiceProvider::kId, 1);

    EXPECT_EQ(GetHostInterface(m_system), S_OK);

    EXPECT_TRUE(IsRegistered(IHostServiceProvider::kId));
    m_system.Reset();
}

TEST_F(HostInterfaceTest, AServiceObjectIsCreatedOnceMoreAndNotTwice) {
    Host().Record().RefuseQuery("Services", IHostServiceProvider::kId, 2);

    EXPECT_EQ(GetHostInterface(m_system), E_NOINTERFACE);
    EXPECT_EQ(m_system, nullptr);
    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
}

TEST_F(HostInterfaceTest, AnObjectThatDeniesTheInterfaceIsAskedOnceMoreAfterTheRegistration) {
    Host().Record().RefuseQuery("System", ISystemInfo::kId, 1);

    EXPECT_EQ(GetHostInterface(m_system), S_OK);

    EXPECT_NE(m_system, nullptr);
    EXPECT_TRUE(IsRegistered(ISystemInfo::kId));
    m_system.Reset();
}

TEST_F(HostInterfaceTest, AnObjectThatGoesOnDenyingGivesNoInterface) {
    Host().Record().RefuseQuery("System", ISystemInfo::kId, -1);

    EXPECT_EQ(GetHostInterface(m_system), E_NOINTERFACE);
    EXPECT_EQ(m_system, nullptr);
    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
}

TEST_F(HostInterfaceTest, ARegistrationThatFailsLeavesOutTheSecondTry) {
    Host().Record().RefuseQuery("Services", IHostServiceProvider::kId, 1);
    const CImportHook open(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&RefuseToOpen));
    const CImportHook create(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(&RefuseToCreate));

    EXPECT_EQ(GetHostInterface(m_system), E_NOINTERFACE);
    EXPECT_EQ(Host().Record().CountFiredFaults(), 1);
}

TEST_F(HostInterfaceTest, AServiceThatFailsGivesItsOwnResult) {
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);

    EXPECT_EQ(GetHostInterface(m_system), E_ACCESSDENIED);
    EXPECT_EQ(m_system, nullptr);
}

TEST_F(HostInterfaceTest, AServiceThatSucceedsWithNothingGivesNothing) {
    Host().Services().Set(ISystemInfo::kId, nullptr);

    EXPECT_EQ(GetHostInterface(m_system), S_OK);
    EXPECT_EQ(m_system, nullptr);
}

TEST_F(HostInterfaceTest, AThreadOfAnyApartmentFetchesFromARegisteredServer) {
    Unregister();
    const CRegisteredServer server(Host().MakeClassObject().Get());

    for (const DWORD model : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
        RunOnNewThread([&] {
            ASSERT_EQ(CoInitializeEx(nullptr, model), S_OK);
            {
                ComPtr<ISystemInfo> system;
                EXPECT_EQ(GetHostInterface(system), S_OK) << model;
                EXPECT_EQ(system ? system->Refresh() : E_POINTER, S_OK) << model;
            }
            CoUninitialize();
        });
    }
}

}  // namespace
