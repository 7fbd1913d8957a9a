// Items of every kind on the real runtime, with the recording client, which tells each value that arrived. Each test
// has a process of its own.

#include "CRealManagedTest.h"
#include "ItemData.h"
#include "JavaWitness.h"
#include "RunOnNewThread.h"

namespace {

using Calls = std::vector<std::string>;

constexpr unsigned char kUnsentKind = 11;
constexpr unsigned char kDesktopPoll = 255;

class ItemsStartTest : public CRealManagedTest {
protected:
    ItemsStartTest() : CRealManagedTest(TestPaths::kRecordingClientFolder) {}

    void SetUp() override {
        CRealManagedTest::SetUp();
        SetSystem(MakeItemSystem());
        Host().Services().Set(ISessionCollection::kId,
                              MakeSessionCollection(Host().ShareRecord(), {MakeItemSession()}).Get());
        m_data = MakeDataObject(Host().ShareRecord(), MakeItemData(Host().ShareRecord()));
        ASSERT_EQ(Dump(L"rmi://first", L"", kUnsentKind), S_OK);
        m_seen = TellJavaCalls().size();
    }
    void TearDown() override {
        m_data.Reset();
        EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
        CRealManagedTest::TearDown();
    }

    long Send(unsigned char type, unsigned __int64 id, const std::wstring& url = L"rmi://first") {
        return Dump(url, L"", type, m_data.Get(), id);
    }

    /// What arrived in Java behind the start, the change of servers apart.
    Calls Arrived() const {
        const Calls calls = TellJavaCalls();
        Calls arrived;
        for (std::size_t i = m_seen; i < calls.size(); ++i) {
            if (calls[i].rfind(s_client + "setProviderUrl(", 0) != 0 &&
                calls[i].rfind(s_client + "initialize(", 0) != 0) {
                arrived.push_back(calls[i]);
            }
        }
        return arrived;
    }

    Calls Actions() {
        Calls actions;
        for (const HostAction& action : Host().Actions().GetEntries()) {
            actions.push_back(action.text);
        }
        return actions;
    }

    static std::string Session(const std::string& figures) {
        return "UserSession(id=5, sid=\"S-1-5\", user=\"ann\", domain=\"lab\", connected=true, "
               "properties={\"shell\"=\"explorer\"}, " +
               figures + ")";
    }

    static inline const std::string s_client = "DesktopMessageClient.";
    static inline const std::string s_connection =
        "DesktopConnection(id=\"machine 7\", authToken=\"the token\", uniqueId=\"vm 7\", version=393728, "
        "deviceType=\"DESKTOP\")";
    static inline const std::string s_desktop =
        "DesktopInformation(name=\"desk\", fqdn=\"desk.lan\", totalMemory=4096, networkInterfaces=["
        "NetworkInterface(description=\"wire\", macAddress=\"mac\", ipAddress=\"ip\", subnetMask=\"mask\", "
        "subnet=\"net\", linkSpeed=100)])";
    static inline const std::string s_noFigures = "metrics=[], remoteApps=[]";

    CHostReference<IUnknown> m_data;

private:
    std::size_t m_seen = 0;
};

TEST_F(ItemsStartTest, SessionEventsArriveWithEachValue) {
    for (unsigned char type = eUserSessionStart; type <= eUserSessionEnd; ++type) {
        EXPECT_EQ(Send(type, 0x8000000000000000 + type), S_OK) << int{type};
    }

    const std::string session = Session(s_noFigures);
    EXPECT_EQ(Arrived(),
              (Calls{s_client + "onUserLogon(" + s_connection + ", " + s_desktop + ", -9223372036854775807L, " +
                         session + ")",
                     s_client + "onUserLogoff(" + s_connection + ", -9223372036854775806L, " +
                         Session("metrics=[\"cpu\"=7L], remoteApps=[RemoteApp(id=\"5\", properties={}, "
                                 "metrics=[\"load\"=0.5])]") +
                         ")",
                     s_client + "refreshSession(" + s_connection + ", -9223372036854775805L, " + s_desktop + ", " +
                         session + ")",
                     s_client + "onUserReconnect(" + s_connection + ", -9223372036854775804L, " + session + ")",
                     s_client + "onUserDisconnect(" + s_connection + ", -9223372036854775803L, " + session + ")"}));
}

TEST_F(ItemsStartTest, DataArrivesWithEachValue) {
    for (const unsigned char type : {static_cast<unsigned char>(eExtendedData), static_cast<unsigned char>(eSample),
                                     static_cast<unsigned char>(eTraceRoute), kDesktopPoll}) {
        EXPECT_EQ(Send(type, 0xFFFFFFFFFFFFFFFF), S_OK) << int{type};
    }

    EXPECT_EQ(Arrived(),
              (Calls{s_client + "onExtendedDataCollected(" + s_connection +
                         ", {\"action\"=\"trace\"}, Sample(time=86400000L, metrics=[\"disk\"=[\"C:\"=9L]], "
                         "sessions=[]))",
                     s_client + "onDataCollected(" + s_connection +
                         ", Sample(time=86400000L, metrics=[\"cpu\"=7L], sessions=[" +
                         Session("metrics=[\"load\"=0.5], remoteApps=[]") + "]))",
                     s_client + "onActionPerformed(" + s_connection + ", {\"action\"=\"trace\"}, \"hop 1; hop 2\")",
                     s_client + "onDesktopPoll(" + s_connection + ", -1L, \"\")"}));
    EXPECT_EQ(Actions(), Calls{}) << "there was no answer";
}

TEST_F(ItemsStartTest, AnswersReachTheCallbacksAndTheExecutor) {
    const std::wstring url =
        L"rmi://second?onUserLogon=welcome&onExtendedDataCollected=extended&onDataCollected=sampled&"
        L"onActionPerformed=ignored&onDesktopPoll=\u00e9";
    Host().Actions().SetResult(S_FALSE);

    EXPECT_EQ(Send(eUserSessionLogon, 1, url), S_OK);
    EXPECT_EQ(Send(eExtendedData, 1, url), S_FALSE);
    EXPECT_EQ(Send(eSample, 1, url), S_FALSE);
    EXPECT_EQ(Send(eTraceRoute, 1, url), S_OK);
    EXPECT_EQ(Send(kDesktopPoll, 1, url), S_FALSE);

    EXPECT_EQ(m_callback.Told(), (Reports{{eUserSessionLogon, L"welcome"}}));
    EXPECT_EQ(Actions(), (Calls{"BSTR extended", "BSTR sampled", "BSTR \xC3\xA9"}));
    EXPECT_EQ(LoggedErrors(), Texts{});
}

TEST_F(ItemsStartTest, RefusedItemsAreLoggedWithTheirUserAndClassified) {
    struct Case {
        unsigned char type;
        std::wstring name;
        std::wstring method;
    };
    for (const Case& c :
         {Case{eUserSessionLogon, L"eUserSessionLogon", L"onUserLogon"},
          Case{eUserSessionLogoff, L"eUserSessionLogoff", L"onUserLogoff"},
          Case{eUserSessionRefresh, L"eUserSessionRefresh", L"refreshSession"},
          Case{eUserSessionReconnect, L"eUserSessionReconnect", L"onUserReconnect"},
          Case{eUserSessionDisconnect, L"eUserSessionDisconnect", L"onUserDisconnect"},
          Case{eExtendedData, L"eExtendedData", L"onExtendedDataCollected"}, Case{eStartup, L"eStartup", L"onStartup"},
          Case{eSample, L"eSample", L"onDataCollected"}, Case{eTraceRoute, L"eTraceRoute", L"onActionPerformed"},
          Case{kDesktopPoll, L"0xff", L"onDesktopPoll"}}) {
        const std::wstring message =
            L"Failed to send user event " + c.name + L" for user lab\\ann to the message server.  ";

        EXPECT_EQ(Send(c.type, 1, L"rmi://second?fail=" + c.method), E_FAIL) << c.method;
        ExpectLastError(message + L"java.lang.IllegalStateException: ordered: " + c.method + L"\r\n\tcom.orvane.");

        EXPECT_EQ(Send(c.type, 1, L"rmi://second?unreachable=" + c.method), kServerNotReached) << c.method;
        ExpectLastError(message + L"java.rmi.ConnectException: ordered: " + c.method + L"\r\n\tcom.orvane.");
    }
}

TEST_F(ItemsStartTest, ItemsFromAnotherThreadAndFromInsideAnActionArrive) {
    Host().Actions().SetOnExecute([&](const VARIANT&) { return Send(eUserSessionReconnect, 2, L"rmi://third"); });

    RunOnNewThread([&] { EXPECT_EQ(Send(kDesktopPoll, 1, L"rmi://second?onDesktopPoll=reconnect"), S_OK); });

    EXPECT_EQ(Actions(), Calls{"BSTR reconnect"});
    EXPECT_EQ(Arrived(), (Calls{s_client + "onDesktopPoll(" + s_connection + ", 1L, \"\")",
                                s_client + "onUserReconnect(" + s_connection + ", 2L, " + Session(s_noFigures) + ")"}));
}

}  // namespace
