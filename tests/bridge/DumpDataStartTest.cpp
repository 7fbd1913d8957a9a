// Items on the real runtime, with the recording client, which says what arrived in Java. Each test has a process of its
// own.

#include <boost/thread/detail/tss_hooks.hpp>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CRMICommManagerImpl.h"
#include "CRecordingCallback.h"
#include "CThreadSlots.h"
#include "JavaWitness.h"
#include "RunOnNewThread.h"
#include "TestPaths.h"

namespace {

using Texts = std::vector<std::wstring>;
using Calls = std::vector<std::string>;
using Reports = CRecordingCallback::Reports;

constexpr unsigned char kNamelessKind = 11;
constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

class DumpDataStartTest : public CHostedTest {
protected:
    void SetUp() override {
        CHostedTest::SetUp();
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kRealRuntime);
        m_registry->SetAgentText(L"ClassPath", TestPaths::kRecordingClientFolder);
        m_registry->SetAgentText(L"LogDirectory", L"C:\\Logs");
        m_registry->SetAgentText(L"ConfigDirectory", L"C:\\Config \u00e9");
        SystemData system;
        system.machineName = L"desk";
        system.machineId = L"machine 7";
        system.virtualMachineId = L"vm 7";
        system.isDesktop = VARIANT_TRUE;
        SetSystem(system);
        m_manager = std::make_unique<CRMICommManagerImpl>(m_slots);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
    }

    void TearDown() override {
        m_slots.RunCleaner();
        m_manager.reset();
        boost::on_thread_exit();  // gives back what Boost keeps for this thread to its end
        m_registry.reset();
        CHostedTest::TearDown();
    }

    long Dump(const wchar_t* url, unsigned char type) {
        return m_manager->DumpData<IUnknown>(url, L"token", L"certificate", 1, type, nullptr);
    }

    /// What Java noted behind the calls that were noted before.
    Calls NewCalls() {
        const Calls all = TellJavaCalls();
        Calls fresh(all.begin() + static_cast<std::ptrdiff_t>(m_seen), all.end());
        m_seen = all.size();
        return fresh;
    }

    Texts NewLogged() {
        const Texts all = Logged();
        Texts fresh(all.begin() + static_cast<std::ptrdiff_t>(m_read), all.end());
        m_read = all.size();
        return fresh;
    }

    void Start() {
        ASSERT_EQ(Dump(L"rmi://first", kNamelessKind), S_OK);
        NewCalls();
        NewLogged();
    }

    CThreadSlots m_slots;
    std::unique_ptr<CRMICommManagerImpl> m_manager;
    CRecordingCallback m_callback;
    std::unique_ptr<CAgentRegistry> m_registry;

private:
    std::size_t m_seen = 0;
    std::size_t m_read = 0;
};

const std::string kReport =
    "DesktopMessageClient.onStartup(\"<client><type>DesktopAgent</type><name>desk</name><id>machine 7</id>"
    "<version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>\", DesktopConnection(id=\"machine 7\", "
    "authToken=\"token\", uniqueId=\"vm 7\", version=393728, deviceType=\"DESKTOP\"))";
const std::string kInitialize = "DesktopMessageClient.initialize(\"C:\\\\Config \\u00e9\", \"certificate\")";

TEST_F(DumpDataStartTest, AStartUpIsReportedAndItsAnswerHeard) {
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);

    EXPECT_EQ(Dump(L"rmi://first?onStartup=welcome", eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
    const Calls calls = NewCalls();
    EXPECT_EQ(calls,
              (Calls{"DesktopMessageClient()", "DesktopMessageClient.setProviderUrl(\"rmi://first?onStartup=welcome\")",
                     kInitialize, kReport}));
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
}

TEST_F(DumpDataStartTest, AnotherThreadReportsLikeTheFirst) {
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
    Start();
    const int threads = CountJavaThreads();

    RunOnNewThread([&] {
        EXPECT_EQ(Dump(L"rmi://second?onStartup=welcome", eStartup), S_OK);
        EXPECT_EQ(Dump(L"rmi://second?onStartup=welcome", eStartup), S_OK);
        EXPECT_EQ(CountJavaThreads(), threads + 1) << "attached once";
    });

    EXPECT_EQ(CountJavaThreads(), threads) << "detached at the thread's end";
    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}, {eStartup, L"welcome"}}));
    EXPECT_EQ(NewCalls(), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://second?onStartup=welcome\")", kInitialize,
                                 kReport, kReport}));
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
}

TEST_F(DumpDataStartTest, AnUnchangedServerIsNotSwitchedTo) {
    Start();

    EXPECT_EQ(Dump(L"RMI://First", kNamelessKind), S_OK);
    EXPECT_EQ(NewCalls(), Calls{});

    EXPECT_EQ(m_manager->DumpData<IUnknown>(L"rmi://first", L"other token", L"certificate", 1, kNamelessKind, nullptr),
              S_OK);
    EXPECT_EQ(NewCalls(), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://first\")", kInitialize}));
}

TEST_F(DumpDataStartTest, ASwitchThatJavaRefusesIsTriedAgain) {
    Start();

    EXPECT_EQ(Dump(L"rmi://second?fail=initialize", kNamelessKind), E_FAIL);
    EXPECT_EQ(Dump(L"rmi://second?fail=initialize", kNamelessKind), E_FAIL);

    EXPECT_EQ(NewCalls().size(), 4U);
    const Texts logged = NewLogged();
    ASSERT_EQ(logged.size(), 6U);
    EXPECT_EQ(logged[1].rfind(L"error: Failed to initialize RMI in the Java client.  java.lang.IllegalStateException: "
                              L"ordered: initialize\r\n\tcom.orvane.",
                              0),
              0U)
        << "the exception with its frames";
    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), S_OK) << "which is still the stored one";
    EXPECT_EQ(NewCalls(), Calls{});
}

TEST_F(DumpDataStartTest, AReportThatFailsIsClassified) {
    Start();

    EXPECT_EQ(Dump(L"rmi://second?unreachable=onStartup", eStartup), kServerNotReached);
    EXPECT_EQ(NewLogged().back().rfind(L"error: Failed to send data with type eStartup to the message server.  "
                                       L"java.rmi.ConnectException: ordered: onStartup\r\n\t",
                                       0),
              0U);
    EXPECT_EQ(Dump(L"rmi://second?fail=onStartup", eStartup), E_FAIL);
    EXPECT_EQ(Dump(L"rmi://second?fail=onStartup&saying=rmiURLContext", eStartup), kServerNotReached);
    EXPECT_EQ(Dump(L"rmi://second?fail=onStartup&saying=java.security.cert.Anything", eStartup), kServerNotReached);
}

TEST_F(DumpDataStartTest, AStartThatFailsIsNotTriedAgain) {
    m_registry->SetAgentText(L"ClassPath", L"C:\\no such folder");
    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), E_FAIL);
    m_registry->SetAgentText(L"ClassPath", TestPaths::kRecordingClientFolder);
    NewLogged();

    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), E_FAIL);

    const Texts logged = NewLogged();
    ASSERT_EQ(logged.size(), 2U);
    EXPECT_EQ(
        logged[0],
        L"error: Failed to SetCurrentServerConfig in long __cdecl "
        L"CRMICommManagerImpl::SetCurrentServerConfig(const wchar_t *,const wchar_t *,const wchar_t *) because of "
        L"previous RMI manager initialization failure");
    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitFailed);
}

TEST_F(DumpDataStartTest, AKindWithoutANameGivesTheResultOfTheIdentities) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), E_ACCESSDENIED);
    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), S_OK);

    EXPECT_EQ(NewCalls(), Calls{});
}

TEST_F(DumpDataStartTest, AnAnswerThatNobodyHearsIsLoggedWithTheServer) {
    Start();

    EXPECT_EQ(m_manager->DumpData<IUnknown>(L"rmi://second?onStartup=welcome", L"token", nullptr, 1, eStartup, nullptr),
              E_FAIL);

    EXPECT_EQ(NewLogged().back(),
              L"error: Failed to CallCallback for eStartup:(rmi://second?onStartup=welcome, token, null)");
}

TEST_F(DumpDataStartTest, ACallOutOfTheMiddleOfTheStartIsRefused) {
    std::vector<long> nested;
    bool isNested = false;
    Host().Record().SetBeforeCall([&](const std::string& call) {
        if (call.find("Logger: Log") == 0 && !isNested) {
            isNested = true;
            nested.push_back(Dump(L"rmi://first", eStartup));
            isNested = false;
        }
    });

    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), S_OK);

    Host().Record().SetBeforeCall({});
    EXPECT_EQ(nested, std::vector<long>(14, E_FAIL)) << "at each entry of the start's and of the switch's";
    EXPECT_EQ(CountJavaCalls("DesktopMessageClient()"), 1);
    EXPECT_EQ(CountJavaCalls("DesktopMessageClient.setProviderUrl"), 1);
    EXPECT_EQ(CountJavaCalls("DesktopMessageClient.onStartup"), 0);
}

TEST_F(DumpDataStartTest, ACallbackMayReportToAnotherServer) {
    bool isNested = false;
    m_callback.SetHook([&] {
        if (!isNested) {
            isNested = true;
            EXPECT_EQ(Dump(L"rmi://second?onStartup=inner", eStartup), S_OK);
        }
    });
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);

    EXPECT_EQ(Dump(L"rmi://first?onStartup=outer", eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"outer"}, {eStartup, L"inner"}}));
    EXPECT_EQ(CountJavaCalls("DesktopMessageClient.setProviderUrl"), 2);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
}

TEST_F(DumpDataStartTest, TheEndOfTheStartingThreadDisposesTheClient) {
    RunOnNewThread([&] { EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), S_OK); });

    EXPECT_EQ(TellJavaCalls().back(), "DesktopMessageClient.dispose()");
    EXPECT_EQ(Dump(L"rmi://first", kNamelessKind), E_FAIL);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eUninitialised);
}

TEST_F(DumpDataStartTest, AnAnswerOfAnyLengthAndScriptIsHeardWhole) {
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
    const std::wstring answer = L"\u4e2d\u00e9 " + std::wstring(100'000, L'x');

    EXPECT_EQ(Dump((L"rmi://first?onStartup=" + answer).c_str(), eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, answer}}));
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
}

}  // namespace
