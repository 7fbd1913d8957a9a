#include <atomic>
#include <thread>

#include "CImportHook.h"
#include "DumpDataFixture.h"
#include "RunOnNewThread.h"

namespace {

/// Every item's way up to its kind, between a host and the fake runtime.
class DumpDataTest : public CDumpDataFixture {};

TEST_F(DumpDataTest, TheFirstItemStartsTheBridgeAndPointsTheClientAtTheServer) {
    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(MethodCalls(),
              (Calls{"DesktopMessageClient.<init>()", "DesktopMessageClient.setProviderUrl(\"rmi://one\")",
                     "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"certificate\")"}));
    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitialised);
}

TEST_F(DumpDataTest, TheHostIsAskedInAFixedOrder) {
    Start();

    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(Host().Record().GetCallTexts(),
              (Calls{"System: Refresh", "System: get_machineId", "System: get_virtualMachineId",
                     "System: get_machineUniqueId", "System: get_componentsIdentities",
                     "PropertyBox: GetProperty(Calderin)"}));
}

TEST_F(DumpDataTest, TheDataIsAskedWhetherItIsASessionAfterTheHost) {
    Start();
    const auto data = MakeUserSession(Host().ShareRecord(), {});
    Host().Record().SetRecordsQueries(true);
    for (const unsigned char type : {kNamelessKind, static_cast<unsigned char>(eStartup)}) {
        Host().Record().ClearCalls();

        EXPECT_EQ(Dump(type, data.Get()), S_OK);

        const Calls asked = Host().Record().GetCallTexts();
        ASSERT_GE(asked.size(), 7U);
        EXPECT_EQ(asked[5], "PropertyBox: GetProperty(Calderin)");
        EXPECT_EQ(asked[6].rfind("Session 0: QueryInterface", 0), 0U) << asked[6];
    }
}

TEST_F(DumpDataTest, AKindWithoutANameCallsNoJava) {
    Start();
    for (int type = 11; type <= 254; ++type) {
        EXPECT_EQ(Dump(static_cast<unsigned char>(type)), S_OK) << type;
    }

    EXPECT_EQ(CallsSinceStart(), Calls{});
    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(DumpDataTest, AStartThatFailsGivesItsResultAndIsNotTriedAgain) {
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);

    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    Host().Services().SetResult(ISystemInfo::kId, S_OK);
    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);
    RunOnNewThread([&] { EXPECT_EQ(Dump(kNamelessKind), E_FAIL); });

    const std::wstring failedEarlier = L"error: Failed to SetCurrentServerConfig" + kInSetCurrentServerConfig +
                                       L" because of previous RMI manager initialization failure";
    const std::wstring notConfigured = L"error: Failed to SetCurrentServerConfig" + kInDumpData;
    const Texts logged = Logged();
    ASSERT_EQ(logged.size(), 7U);
    EXPECT_EQ(logged[0], L"error: Failed to get system info in long __cdecl CRMICommManagerImpl::Initialize(void)" +
                             ErrorText(E_ACCESSDENIED));
    EXPECT_EQ(logged[1], L"error: Failed to initialize CRMICommManagerImpl" + kInSetCurrentServerConfig +
                             ErrorText(E_ACCESSDENIED));
    EXPECT_EQ(logged[2], notConfigured + ErrorText(E_ACCESSDENIED));
    EXPECT_EQ(Texts(logged.begin() + 3, logged.end()), (Texts{failedEarlier, notConfigured + ErrorText(E_FAIL),
                                                              failedEarlier, notConfigured + ErrorText(E_FAIL)}));
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 0);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitFailed);
}

TEST_F(DumpDataTest, AMachineThatDoesNotStartIsNotTriedAgain) {
    Fake().SetCreateResult(JNI_ENOMEM);
    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);
    Fake().SetCreateResult(JNI_OK);

    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);

    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
}

TEST_F(DumpDataTest, WithoutALoggerAFailedStartGivesTheSameResults) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);

    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);

    EXPECT_EQ(Logged(), Texts{});
}

TEST_F(DumpDataTest, WithoutALoggerAFailedItemGivesTheSameResults) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    Start();
    const auto session = MakeUserSession(Host().ShareRecord(), {});

    Host().Record().Fail("ISystemInfo::Refresh", 1, E_ACCESSDENIED);
    EXPECT_EQ(Dump(kNamelessKind), S_OK);
    Host().Record().Fail("ISystemInfo::get_machineId", 1, E_ACCESSDENIED);
    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED);
    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    Fake().MakeMethodReturnText(kClient, "onStartup", "for nobody");
    EXPECT_EQ(Dump(eStartup), E_FAIL);
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("java.rmi.ConnectException: refused"));
    EXPECT_EQ(Dump(eStartup, session.Get()), kServerNotReached);
    Slots().RunCleaner();
    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);

    EXPECT_EQ(Logged(), Texts{});
    EXPECT_EQ(Host().Record().CountCalls("IUserSessionInfo::get_userLabel"), 0) << "there is no line to put it in";
}

TEST_F(DumpDataTest, AfterTheEndEveryThreadIsRefused) {
    Start();
    Slots().RunCleaner();

    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);
    RunOnNewThread([&] { EXPECT_EQ(Dump(eStartup), E_FAIL); });

    const std::wstring disposed = L"error: Failed to SetCurrentServerConfig" + kInSetCurrentServerConfig +
                                  L" because RMI manager has been uninitialized";
    const std::wstring notConfigured = L"error: Failed to SetCurrentServerConfig" + kInDumpData + ErrorText(E_FAIL);
    EXPECT_EQ(LoggedSinceStart(), (Texts{disposed, notConfigured, disposed, notConfigured}));
    EXPECT_EQ(CallsSinceStart(), Calls{"DesktopMessageClient.dispose()"});
    EXPECT_EQ(m_manager->GetState(), ManagerState::eUninitialised);
}

TEST_F(DumpDataTest, TheEndOfTheThreadThatStartedTheBridgeDisposesIt) {
    RunOnNewThread([&] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        EXPECT_EQ(Dump(kNamelessKind), S_OK);
        CoUninitialize();
    });

    EXPECT_EQ(MethodCalls().back(), "DesktopMessageClient.dispose()");
    EXPECT_EQ(m_manager->GetState(), ManagerState::eUninitialised);
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
}

TEST_F(DumpDataTest, AWorkersEndDisposesNothing) {
    Start();

    RunOnNewThread([&] { EXPECT_EQ(Dump(kNamelessKind), S_OK); });

    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitialised);
    EXPECT_EQ(CallsSinceStart(), Calls{});
}

TEST_F(DumpDataTest, AWorkerIsAttachedOnceAndDetachedWhenItEnds) {
    Start();

    RunOnNewThread([&] {
        EXPECT_EQ(Dump(kNamelessKind), S_OK);
        EXPECT_EQ(Dump(eStartup), S_OK);
        EXPECT_TRUE(Fake().IsThreadAttached());
        EXPECT_EQ(Fake().GetCallCount("DetachCurrentThread"), 0);
    });

    EXPECT_EQ(Fake().GetCallCount("AttachCurrentThread"), 1);
    EXPECT_EQ(Fake().GetCallCount("DetachCurrentThread"), 1);
    EXPECT_EQ(Fake().GetAttachedThreads(), 0);
}

TEST_F(DumpDataTest, AWorkerThatEndsAfterTheBridgeTouchesNothing) {
    Start();

    RunOnNewThread([&] {
        EXPECT_EQ(Dump(kNamelessKind), S_OK);
        m_manager->Dispose();
    });

    EXPECT_EQ(Fake().GetCallCount("DetachCurrentThread"), 0);
}

TEST_F(DumpDataTest, AWorkerThatCannotBeAttachedFailsAtItsFirstString) {
    Start();
    Fake().Fail("AttachCurrentThread", 1);

    RunOnNewThread([&] { EXPECT_EQ(Dump(eStartup), E_FAIL); });

    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to create a new Java string for machine 7.  "});
    EXPECT_EQ(CallsSinceStart(), Calls{});
}

TEST_F(DumpDataTest, OtherThreadsWaitForARunningItem) {
    Start();
    std::atomic<bool> isCalling{false};
    std::atomic<bool> isDone{false};
    std::thread other;
    Host().Record().SetBeforeCall([&](const std::string&) {
        if (other.joinable()) {
            return;
        }
        other = std::thread([&] {
            isCalling = true;
            EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, nullptr), S_OK);
            isDone = true;
        });
        while (!isCalling) {
            Sleep(0);
        }
        Sleep(50);  // room for a registration that does not wait
        EXPECT_FALSE(isDone);
    });

    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    Host().Record().SetBeforeCall({});
    other.join();
    EXPECT_TRUE(isDone);
}

TEST_F(DumpDataTest, ARefreshThatFailsIsLoggedAndTheItemSent) {
    Start();
    Host().Record().Fail("ISystemInfo::Refresh", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to refresh system info" + kInDumpData + ErrorText(E_ACCESSDENIED)});
    EXPECT_EQ(CallsSinceStart().size(), 2U) << "the connection and the report";
}

TEST_F(DumpDataTest, AnIdThatIsNotToBeHadEndsTheCall) {
    struct Case {
        const char* operation;
        const wchar_t* message;
        long calls;
    };
    Start();
    for (const Case& c : {Case{"ISystemInfo::get_machineId", L"error: Failed to get machine id", 2},
                          Case{"ISystemInfo::get_virtualMachineId", L"error: Failed to get virtual machine id", 3},
                          Case{"ISystemInfo::get_machineUniqueId", L"error: Failed to get machine unique id", 4}}) {
        Host().Record().ClearCalls();
        Host().Record().Fail(c.operation, 1, E_ACCESSDENIED);

        EXPECT_EQ(Dump(eStartup), E_ACCESSDENIED) << c.operation;

        EXPECT_EQ(LoggedSinceStart().back(), c.message + ErrorText(E_ACCESSDENIED));
        EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::*"), c.calls) << "what comes behind it is not asked";
    }
    EXPECT_EQ(CallsSinceStart(), Calls{});

    Host().Record().Fail("ISystemInfo::get_machineId", 1, E_ACCESSDENIED);
    RunOnNewThread([&] { EXPECT_EQ(Dump(eStartup), E_ACCESSDENIED); });
    EXPECT_EQ(Fake().GetCallCount("AttachCurrentThread"), 0) << "Java comes behind the host";
}

TEST_F(DumpDataTest, ASuccessOfTheIdentitiesIsReturnedAsItIs) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, S_FALSE);

    EXPECT_EQ(Dump(kNamelessKind), S_FALSE);

    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(DumpDataTest, IdentitiesThatAreNotToBeHadAreTheResultOfACallThatElseSucceeds) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED, -1);

    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    EXPECT_EQ(Dump(eStartup), E_ACCESSDENIED);

    EXPECT_EQ(LoggedSinceStart(), Texts(2, L"error: Failed to get_componentsIdentities" + ErrorText(E_ACCESSDENIED)));
    EXPECT_EQ(CallsSinceStart().front(),
              "DesktopConnection.<init>(\"machine 7\", \"token\", \"vm 7\", 393728, \"DESKTOP\")");
    Host().Record().ClearFaults();
}

TEST_F(DumpDataTest, IdentitiesWithoutAMarshallerAreAskedForOnceMore) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_UNEXPECTED);

    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::get_componentsIdentities"), 2);
    EXPECT_EQ(LoggedSinceStart(), Texts{});
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, L"Interface\\{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}\\ProxyStubClsid32",
                            0, KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Interface\\{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}");
}

TEST_F(DumpDataTest, IdentitiesThatStayAwayAreAskedForTwiceAtMost) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_UNEXPECTED, -1);

    EXPECT_EQ(Dump(kNamelessKind), E_UNEXPECTED);

    EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::get_componentsIdentities"), 2);
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to get_componentsIdentities  Error code 0x8000ffff."});
    Host().Record().ClearFaults();
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Interface\\{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}");
}

TEST_F(DumpDataTest, TheSecondFailureOfTheIdentitiesIsTheOneThatCounts) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_UNEXPECTED);
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 2, E_ACCESSDENIED);

    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);

    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to get_componentsIdentities" + ErrorText(E_ACCESSDENIED)});
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Interface\\{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}");
}

LSTATUS WINAPI RefuseKey(HKEY, const wchar_t*, DWORD, REGSAM, HKEY*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI RefuseNewKey(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, SECURITY_ATTRIBUTES*, HKEY*, DWORD*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return ERROR_ACCESS_DENIED;
}

TEST_F(DumpDataTest, IdentitiesAreNotAskedForAgainWhereTheMarshallerCannotBeRegistered) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_UNEXPECTED);
    const CImportHook noKey(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&RefuseKey));
    const CImportHook noNewKey(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(&RefuseNewKey));

    EXPECT_EQ(Dump(kNamelessKind), E_UNEXPECTED);

    EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::get_componentsIdentities"), 1);
}

TEST_F(DumpDataTest, AHostWithoutAPropertyBoxHasNoComponents) {
    Start();
    Host().Record().GiveNull("ISystemInfo::get_componentsIdentities");

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(CallsSinceStart().front(),
              "DesktopConnection.<init>(\"machine 7\", \"token\", \"vm 7\", 393728, \"DESKTOP\")");
}

class ComponentIdentityTest : public DumpDataTest {
protected:
    /// Who sends, where the component's identity is this.
    std::string SenderWith(CVariantValue identity) {
        SetSystem(MakeSystemWithComponent(std::move(identity)));
        Start();
        EXPECT_EQ(Dump(eStartup), S_OK);
        const std::string connection = CallsSinceStart().front();
        const std::size_t begin = connection.find('"') + 1;
        return connection.substr(begin, connection.find('"', begin) - begin);
    }
};

TEST_F(ComponentIdentityTest, ATextTakesTheMachinesPlace) {
    EXPECT_EQ(SenderWith(MakeText(L"component 3")), "component 3");
}

TEST_F(ComponentIdentityTest, AnEmptyTextDoesToo) {
    EXPECT_EQ(SenderWith(MakeText(L"")), "");
}

TEST_F(ComponentIdentityTest, ANumberBecomesAText) {
    EXPECT_EQ(SenderWith(MakeInt(42)), "42");
}

TEST_F(ComponentIdentityTest, WhatCannotBecomeATextIsPassedOver) {
    EXPECT_EQ(SenderWith(MakeNull()), "machine 7");
}

}  // namespace
