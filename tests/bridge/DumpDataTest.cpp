#include "BindingTable.h"
#include "CAllocationFault.h"
#include "CFakeBridgeTest.h"
#include "CRecordingCallback.h"
#include "InterfaceMarshalling.h"
#include "RunOnNewThread.h"

namespace {

using Calls = std::vector<std::string>;

constexpr char kClient[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/DesktopMessageClient";
constexpr char kConnection[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection";
constexpr wchar_t kUrl[] = L"rmi://one";
constexpr wchar_t kToken[] = L"token";
constexpr wchar_t kCertificate[] = L"certificate";
constexpr unsigned char kNamelessKind = 11;
constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

const std::wstring kInDumpData =
    L" in function long __cdecl CRMICommManagerImpl::DumpData<struct IUnknown>(const wchar_t *,const wchar_t *,const "
    L"wchar_t *,unsigned __int64,unsigned char,struct IUnknown *)";
const std::wstring kInSetCurrentServerConfig =
    L" in long __cdecl CRMICommManagerImpl::SetCurrentServerConfig(const wchar_t *,const wchar_t *,const wchar_t *)";

/// The sending of items that need no conversion, between a host and the fake runtime.
class DumpDataTest : public CFakeBridgeTest {
protected:
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

TEST_F(DumpDataTest, TheFirstItemStartsTheBridgeAndPointsTheClientAtTheServer) {
    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(MethodCalls(), (Calls{"DesktopMessageClient.<init>()", "DesktopMessageClient.setProviderUrl(\"rmi://one\")",
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
    EXPECT_EQ(logged[1], L"error: Failed to initialize CRMICommManagerImpl" + kInSetCurrentServerConfig +
                             ErrorText(E_ACCESSDENIED));
    EXPECT_EQ(logged[2], notConfigured + ErrorText(E_ACCESSDENIED));
    EXPECT_EQ(Texts(logged.begin() + 3, logged.end()),
              (Texts{failedEarlier, notConfigured + ErrorText(E_FAIL), failedEarlier, notConfigured + ErrorText(E_FAIL)}));
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

TEST_F(DumpDataTest, WithoutALoggerTheResultsAreTheSame) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);

    EXPECT_EQ(Dump(kNamelessKind), E_ACCESSDENIED);
    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);

    EXPECT_EQ(Logged(), Texts{});
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
    EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, L"Interface\\{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}\\ProxyStubClsid32", 0,
                            KEY_READ, &key),
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

TEST_F(DumpDataTest, AStartUpTellsWhoTheClientIs) {
    Start();

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(CallsSinceStart(),
              (Calls{"DesktopConnection.<init>(\"machine 7\", \"token\", \"vm 7\", 393728, \"DESKTOP\")",
                     "DesktopMessageClient.onStartup(\"<client><type>DesktopAgent</type><name>desk</name>"
                     "<id>machine 7</id><version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>\", "
                     "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection@instance)"}));
}

TEST_F(DumpDataTest, AMachineNameThatIsNotToBeHadIsEmpty) {
    Start();
    Host().Record().Fail("ISystemInfo::get_machineName", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_NE(CallsSinceStart().back().find("<name></name>"), std::string::npos);
}

/// The answer to a start-up, and who hears it.
class StartupAnswerTest : public DumpDataTest {
protected:
    void SetUp() override {
        DumpDataTest::SetUp();
        Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");
    }

    void TearDown() override {
        for (const wchar_t* const url : {kUrl, kOtherUrl}) {
            EXPECT_EQ(m_manager->UnregisterDataDumpCallback(url, kToken, kCertificate, &m_callback), S_OK);
        }
        DumpDataTest::TearDown();
    }

    void Register(const wchar_t* url) {
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(url, kToken, kCertificate, &m_callback), S_OK);
    }

    static constexpr wchar_t kOtherUrl[] = L"rmi://two";
    CRecordingCallback m_callback;
};

TEST_F(StartupAnswerTest, TheCallbacksOfTheServerHearIt) {
    Register(kUrl);
    Register(kOtherUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (CRecordingCallback::Reports{{eStartup, L"welcome"}}));
}

TEST_F(StartupAnswerTest, TheCallbacksOfTheOnlyServerHearIt) {
    Register(kOtherUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (CRecordingCallback::Reports{{eStartup, L"welcome"}}));
}

TEST_F(StartupAnswerTest, NoAnswerIsNotToldToAnyone) {
    Fake().MakeMethodReturnNull(kClient, "onStartup");
    Register(kUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), CRecordingCallback::Reports{});
}

TEST_F(StartupAnswerTest, AnAnswerThatNobodyHearsFailsTheCall) {
    Start();

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to CallCallback for eStartup:(rmi://one, token, certificate)"});
}

TEST_F(StartupAnswerTest, NullTextsAreCalledNullThere) {
    Register(kOtherUrl);
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"rmi://three", kToken, kCertificate, &m_callback), S_OK);
    Start();

    EXPECT_EQ(m_manager->DumpData<IUnknown>(kUrl, kToken, nullptr, 1, eStartup, nullptr), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(), L"error: Failed to CallCallback for eStartup:(rmi://one, token, null)");
    EXPECT_EQ(m_manager->DumpData<IUnknown>(nullptr, nullptr, nullptr, 1, eStartup, nullptr), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(), L"error: Failed to CallCallback for eStartup:(null, null, null)");

    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"rmi://three", kToken, kCertificate, &m_callback), S_OK);
}

TEST_F(StartupAnswerTest, TheResultOfTheIdentitiesIsThatOfAnAnsweredCallToo) {
    Register(kUrl);
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), E_ACCESSDENIED);

    EXPECT_EQ(m_callback.Told().size(), 1U);
}

TEST_F(DumpDataTest, AStartUpThatJavaRefusesIsLoggedWithItsException) {
    Start();
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to send data with type eStartup to the message server.  no answer"});
}

TEST_F(DumpDataTest, AServerThatCannotBeReachedHasAResultOfItsOwn) {
    Start();
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("java.rmi.ConnectException: refused"));

    EXPECT_EQ(Dump(eStartup), kServerNotReached);

    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send data with type eStartup to the message server.  java.rmi.ConnectException: refused");
}

TEST_F(DumpDataTest, DataThatIsASessionIsLoggedWithItsUser) {
    Start();
    SessionData session;
    session.label = L"user 5";
    const auto data = MakeUserSession(Host().ShareRecord(), session);
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(Dump(eStartup, data.Get()), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send user event eStartup for user user 5 to the message server.  no answer");

    Host().Record().Fail("IUserSessionInfo::get_userLabel", 1, E_ACCESSDENIED);
    EXPECT_EQ(Dump(eStartup, data.Get()), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send user event eStartup for user  to the message server.  no answer");
}

TEST_F(DumpDataTest, DataThatIsNoSessionIsLoggedAsData) {
    Start();
    const auto data = MakePropertyBox(Host().ShareRecord(), {});
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(m_manager->DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, eStartup, data.Get()), E_FAIL);

    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send data with type eStartup to the message server.  no answer");
}

TEST_F(DumpDataTest, WithoutAConnectionObjectNothingIsSent) {
    Start();
    Fake().MakeMethodThrow(kConnection, "<init>", Exception("no connection"));

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to create a new Java connection object.  no connection"});
    EXPECT_EQ(CallsSinceStart().size(), 1U);
}

TEST_F(DumpDataTest, ADescriptorWithoutAStringIsNotSentAndNotShown) {
    Start();
    Fake().Fail("NewString", 5);

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to create a new Java string.  java.lang.OutOfMemoryError: injected"});
    EXPECT_EQ(CallsSinceStart().size(), 1U) << "the connection alone";
}

TEST_F(DumpDataTest, AKindThatIsNotSentYetIsRefused) {
    Start();
    for (const int type : {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 255}) {
        EXPECT_EQ(Dump(static_cast<unsigned char>(type)), E_NOTIMPL) << type;
    }
    EXPECT_EQ(CallsSinceStart(), Calls{});
}

TEST_F(DumpDataTest, EachCallOfTheHostsMayFail) {
    Start();
    long fired = 1;
    for (long nth = 1; fired != 0; ++nth) {
        const long before = Host().Record().CountFiredFaults();
        Host().Record().Fail("*", nth, E_ACCESSDENIED);

        const long sent = Dump(eStartup);

        fired = Host().Record().CountFiredFaults() - before;
        Host().Record().ClearFaults();
        EXPECT_TRUE(sent == S_OK || sent == E_ACCESSDENIED) << nth;
        EXPECT_EQ(Dump(eStartup), S_OK) << nth;
    }
}

TEST_F(DumpDataTest, EachCallOfJnisMayFail) {
    Start();
    long fired = 1;
    for (long nth = 1; fired != 0; ++nth) {
        Fake().Fail("*", nth);

        const long sent = Dump(eStartup);

        fired = Fake().GetFaultsFired();
        Fake().ClearFaults();
        EXPECT_TRUE(sent == S_OK || sent == E_FAIL) << nth;
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
        EXPECT_EQ(Dump(eStartup), S_OK) << nth;
    }
}

TEST_F(DumpDataTest, EachAllocationOfASentItemMayFail) {
    Start();
    const long globals = Fake().GetGlobalReferences();
    bool fired = true;
    for (long nth = 1; fired; ++nth) {
        {
            const CAllocationFault fault(nth);
            try {
                const long sent = Dump(eStartup);
                EXPECT_TRUE(sent == S_OK || sent == E_OUTOFMEMORY) << nth;  // the host's own allocations fail as well
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(fault.HasFired()) << nth;
            }
            fired = fault.HasFired();
        }
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
        EXPECT_EQ(Fake().GetGlobalReferences(), globals) << nth;
        EXPECT_EQ(Dump(eStartup), S_OK) << nth;
    }
}

TEST_F(DumpDataTest, EachAllocationOfAStartMayFail) {
    bool fired = true;
    for (long nth = 1; fired; ++nth) {
        Fake().Reset();
        CRMICommManagerImpl manager(Slots());
        long result = E_PENDING;
        {
            const CAllocationFault fault(nth);
            try {
                result = manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, kNamelessKind, nullptr);
            } catch (const std::bad_alloc&) {
            }
            fired = fault.HasFired();
        }
        // A start that was broken off is final; a switch that was, is tried again.
        const long next = manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, kNamelessKind, nullptr);
        EXPECT_EQ(next, manager.GetState() == ManagerState::eInitialised ? S_OK : E_FAIL) << nth;
        EXPECT_NE(manager.GetState(), ManagerState::eNotInitialised) << nth;
        EXPECT_TRUE(result == E_PENDING || result == S_OK || result == E_FAIL || result == E_OUTOFMEMORY)
            << nth << ' ' << result;  // the last is the host's own, whose allocations fail as well
        Slots().RunCleaner();
        boost::on_thread_exit();
        manager.Dispose();
        EXPECT_EQ(Fake().GetGlobalReferences(), 0) << nth;
    }
}

/// Calls that the host makes on the same thread in the middle of another one of its calls.
class NestedCallTest : public DumpDataTest {
protected:
    /// Calls `call` once, from inside the host's next call of this kind.
    void CallIn(const std::string& operation, std::function<void()> call) {
        Host().Record().SetBeforeCall([this, operation, call = std::move(call)](const std::string& text) {
            if (text.find(operation) != std::string::npos && !m_wasCalledIn) {
                m_wasCalledIn = true;
                call();
            }
        });
    }

    void TearDown() override {
        EXPECT_TRUE(m_wasCalledIn);
        Host().Record().SetBeforeCall({});
        DumpDataTest::TearDown();
    }

private:
    bool m_wasCalledIn = false;
};

TEST_F(NestedCallTest, InTheMiddleOfTheStartTheyAreRefused) {
    long nested = S_OK;
    CallIn("Logger: LogInfo", [&] { nested = Dump(eStartup); });

    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(nested, E_FAIL);
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitialised);
}

TEST_F(NestedCallTest, InTheMiddleOfASwitchTheyAreRefused) {
    Start();
    long nested = S_OK;
    CallIn("Updated the message server URL", [&] { nested = Dump(kNamelessKind); });

    EXPECT_EQ(m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, kNamelessKind, nullptr), S_OK);

    EXPECT_EQ(nested, E_FAIL);
    EXPECT_EQ(CallsSinceStart(), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://two\")",
                                        "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"certificate\")"}));
    EXPECT_EQ(LoggedSinceStart().front(), L"error: Failed to SetCurrentServerConfig" + kInDumpData + ErrorText(E_FAIL));
}

TEST_F(NestedCallTest, FromAnyOtherPlaceTheyAreWholeCalls) {
    Start();
    long nested = E_PENDING;
    CallIn("System: Refresh", [&] {
        nested = m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, eStartup, nullptr);
    });

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(nested, S_OK);
    EXPECT_EQ(CallsSinceStart().size(), 6U) << "a switch, and two reports with their connections";
}

TEST_F(NestedCallTest, RegistrationIsOpenAtAnyTime) {
    CRecordingCallback callback;
    CallIn("Logger: LogInfo",
           [&] { EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK); });
    Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(callback.Told().size(), 1U);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

TEST_F(DumpDataTest, ACallbackMayReportInItsTurn) {
    Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");
    Start();
    long nested = E_PENDING;
    CRecordingCallback callback;
    callback.SetHook([&] {
        if (nested == E_PENDING) {
            nested = S_FALSE;
            nested = m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, eStartup, nullptr);
        }
    });
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(nested, S_OK);
    EXPECT_EQ(callback.Told().size(), 2U);
    EXPECT_EQ(CallsSinceStart().size(), 6U);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

TEST_F(DumpDataTest, CallbacksAreRegisteredBeforeTheStartAndAfterTheEnd) {
    CRecordingCallback callback;
    EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eNotInitialised);
    Start();
    Slots().RunCleaner();

    EXPECT_EQ(m_manager->RegisterDataDumpCallback(L"rmi://two", kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"rmi://two", kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

}  // namespace
