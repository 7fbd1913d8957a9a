#include <initializer_list>
#include <utility>

#include "ItemFixture.h"

namespace {

/// What the kinds of items have in common: what the host is asked, what Java is called with, what the call returns.
class SentItemsTest : public CItemFixture {
protected:
    static Calls Join(std::initializer_list<Calls> parts) {
        Calls joined;
        for (const Calls& part : parts) {
            joined.insert(joined.end(), part.begin(), part.end());
        }
        return joined;
    }

    static inline const Calls s_connection{s_makeConnection};
    static inline const Calls s_session{"BaseUserSession.<init>(5, \"S-1-5\", \"ann\", \"lab\", true)",
                                        "BaseUserSession.putProperty(\"shell\", \"explorer\")"};
    static inline const Calls s_desktop{"DesktopInformation.<init>(\"desk\", \"desk.lan\")",
                                        "DesktopInformation.putTotalMemory(4096)",
                                        "NetworkInterface.<init>(\"wire\")",
                                        "NetworkInterface.putMacAddress(\"mac\")",
                                        "NetworkInterface.putIpAddress(\"ip\")",
                                        "NetworkInterface.putSubnetMask(\"mask\")",
                                        "NetworkInterface.putSubnet(\"net\")",
                                        "NetworkInterface.putLinkSpeed(100)",
                                        "DesktopInformation.addNetworkInterface(NetworkInterface@instance)"};
    static inline const Calls s_figures{"BaseMetric.<init>(\"cpu\")",
                                        "BaseMetric.putLongValue(7)",
                                        "BaseUserSession.putMetric(BaseMetric@instance)",
                                        "BaseRemoteApp.<init>(\"5\")",
                                        "BaseMetric.<init>(\"load\")",
                                        "BaseMetric.putDoubleValue(0.5)",
                                        "BaseRemoteApp.putMetric(BaseMetric@instance)",
                                        "BaseUserSession.putRemoteApp(BaseRemoteApp@instance)"};
    static inline const Calls s_map{"HashMap.<init>()", "HashMap.put(\"action\", \"trace\")"};
    static inline const Calls s_extendedSample{"BaseSample.<init>(86400000)",
                                               "BaseMetric.<init>(\"disk\")",
                                               "BaseMetric.<init>(\"C:\")",
                                               "BaseMetric.putLongValue(9)",
                                               "BaseMetric.addInstance(BaseMetric@instance)",
                                               "BaseSample.putMetric(BaseMetric@instance)"};
    static inline const Calls s_machineFigures{"BaseSample.<init>(86400000)", "BaseMetric.<init>(\"cpu\")",
                                               "BaseMetric.putLongValue(7)",
                                               "BaseSample.putMetric(BaseMetric@instance)"};
    static inline const Calls s_sessionFigures{"BaseMetric.<init>(\"load\")", "BaseMetric.putDoubleValue(0.5)",
                                               "BaseUserSession.putMetric(BaseMetric@instance)",
                                               "BaseSample.putSession(BaseUserSession@instance)"};
};

TEST_F(SentItemsTest, EachKindCallsItsMethodWithItsArguments) {
    const std::pair<unsigned char, Calls> expected[] = {
        {eUserSessionStart, Join({s_connection, s_session})},
        {eUserSessionLogon,
         Join({s_connection,
               s_session,
               s_desktop,
               {"DesktopMessageClient.onUserLogon(DesktopConnection@instance, DesktopInformation@instance, 1, "
                "BaseUserSession@instance)"}})},
        {eUserSessionLogoff,
         Join({s_connection,
               s_session,
               s_figures,
               {"DesktopMessageClient.onUserLogoff(DesktopConnection@instance, 1, BaseUserSession@instance)"}})},
        {eUserSessionRefresh,
         Join({s_connection,
               s_session,
               s_desktop,
               {"DesktopMessageClient.refreshSession(DesktopConnection@instance, 1, DesktopInformation@instance, "
                "BaseUserSession@instance)"}})},
        {eUserSessionReconnect,
         Join({s_connection,
               s_session,
               {"DesktopMessageClient.onUserReconnect(DesktopConnection@instance, 1, BaseUserSession@instance)"}})},
        {eUserSessionDisconnect,
         Join({s_connection,
               s_session,
               {"DesktopMessageClient.onUserDisconnect(DesktopConnection@instance, 1, BaseUserSession@instance)"}})},
        {eUserSessionEnd, Join({s_connection, s_session})},
        {eExtendedData,
         Join({s_connection,
               s_map,
               s_extendedSample,
               {"DesktopMessageClient.onExtendedDataCollected(DesktopConnection@instance, HashMap@instance, "
                "BaseSample@instance)"}})},
        {eStartup,
         Join({s_connection,
               {"DesktopMessageClient.onStartup(\"<client><type>DesktopAgent</type><name>desk</name><id>machine 7</id>"
                "<version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>\", DesktopConnection@instance)"}})},
        {eSample, Join({s_connection,
                        s_machineFigures,
                        s_session,
                        s_sessionFigures,
                        {"DesktopMessageClient.onDataCollected(DesktopConnection@instance, BaseSample@instance)"}})},
        {eTraceRoute, Join({s_connection,
                            s_map,
                            {"DesktopMessageClient.onActionPerformed(DesktopConnection@instance, HashMap@instance, "
                             "\"hop 1; hop 2\")"}})},
        {kDesktopPoll,
         Join({s_connection, s_desktop, {"DesktopMessageClient.onDesktopPoll(DesktopConnection@instance, 1, \"\")"}})},
    };
    Start();
    for (const auto& [type, calls] : expected) {
        Forget();

        EXPECT_EQ(Send(type), S_OK) << int{type};

        EXPECT_EQ(ItemCalls(), calls) << int{type};
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << int{type};
    }
}

TEST_F(SentItemsTest, TheIdGoesToJavaBitForBit) {
    struct Case {
        unsigned __int64 id;
        const char* javaId;
    };
    Start();
    for (const Case& c : {Case{0, "0"}, Case{42, "42"}, Case{0x7FFFFFFFFFFFFFFF, "9223372036854775807"},
                          Case{0x8000000000000000, "-9223372036854775808"}, Case{0xFFFFFFFFFFFFFFFF, "-1"}}) {
        Forget();
        const std::string id = c.javaId;
        for (const unsigned char type : {eUserSessionLogon, eUserSessionLogoff, eUserSessionRefresh,
                                         eUserSessionReconnect, eUserSessionDisconnect}) {
            EXPECT_EQ(Dump(type, m_data.Get(), c.id), S_OK) << int{type};
        }

        EXPECT_EQ(Dump(kDesktopPoll, m_data.Get(), c.id), S_OK);

        EXPECT_EQ(SentCalls(),
                  (Calls{"DesktopMessageClient.onUserLogon(DesktopConnection@instance, DesktopInformation@instance, " +
                             id + ", BaseUserSession@instance)",
                         "DesktopMessageClient.onUserLogoff(DesktopConnection@instance, " + id +
                             ", BaseUserSession@instance)",
                         "DesktopMessageClient.refreshSession(DesktopConnection@instance, " + id +
                             ", DesktopInformation@instance, BaseUserSession@instance)",
                         "DesktopMessageClient.onUserReconnect(DesktopConnection@instance, " + id +
                             ", BaseUserSession@instance)",
                         "DesktopMessageClient.onUserDisconnect(DesktopConnection@instance, " + id +
                             ", BaseUserSession@instance)",
                         "DesktopMessageClient.onDesktopPoll(DesktopConnection@instance, " + id + ", \"\")"}));
    }
}

TEST_F(SentItemsTest, TheDataIsAskedForNoMoreThanItsKindNeeds) {
    const std::string session = "Data: QueryInterface(IUserSessionInfo)";
    const std::string node = "Data: QueryInterface(ISampleNode)";
    const std::string box = "Data: QueryInterface(IPropertyBox)";
    Start();
    Host().Record().SetRecordsQueries(true);
    for (int type = 0; type <= 255; ++type) {
        Calls expected{session};
        if (type == eTraceRoute || type == eExtendedData) {
            expected.push_back(box);
        }
        if (type == eUserSessionLogoff || type == eSample || type == eExtendedData) {
            expected.push_back(node);
        }
        Host().Record().ClearCalls();

        EXPECT_EQ(Send(static_cast<unsigned char>(type)), S_OK) << type;

        Calls asked;
        for (const std::string& call : Host().Record().GetCallTexts()) {
            if (call.rfind("Data: QueryInterface(", 0) == 0) {
                asked.push_back(call);
            }
        }
        EXPECT_EQ(asked, expected) << type;
    }
}

TEST_F(SentItemsTest, AKindWithoutANameGivesTheResultOfTheIdentitiesAndNothingElseHappens) {
    Start();
    for (int number = 11; number <= 254; ++number) {
        const auto type = static_cast<unsigned char>(number);
        Host().Record().ClearCalls();
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(type), S_FALSE) << number;

        EXPECT_EQ(Host().Record().GetCallTexts(),
                  (Calls{"System: Refresh", "System: get_machineId", "System: get_virtualMachineId",
                         "System: get_machineUniqueId", "System: get_componentsIdentities"}))
            << number;
        RefuseIdentities(E_ACCESSDENIED);
        EXPECT_EQ(Send(type), E_ACCESSDENIED) << number;
        EXPECT_EQ(Dump(type), S_OK) << number << ", without data";
    }
    EXPECT_EQ(ItemCalls(), Calls{});
}

TEST_F(SentItemsTest, EveryItemThatIsSentGivesTheResultOfTheIdentities) {
    Start();
    for (const HRESULT identities : {S_FALSE, E_ACCESSDENIED, E_FAIL}) {
        for (const ItemKind& kind : kItemKinds) {
            Forget();
            RefuseIdentities(identities);

            EXPECT_EQ(Send(kind), identities) << kind.name;

            EXPECT_EQ(SentCalls().size(), kind.method ? 1U : 0U) << kind.name;
        }
    }
}

TEST_F(SentItemsTest, WithoutAConnectionNothingIsConvertedOrSent) {
    Start();
    Fake().MakeMethodThrow(Binding::DesktopConnection::kClass, "<init>", Exception("no connection"));
    for (const ItemKind& kind : kItemKinds) {
        Forget();
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(kind), E_FAIL) << kind.name;

        EXPECT_EQ(ItemCalls(), Calls{s_makeConnection}) << kind.name;
        EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to create a new Java connection object.  no connection"})
            << kind.name;
    }
}

TEST_F(SentItemsTest, DataThatIsNothingFailsWhereItIsNeeded) {
    Start();
    const auto nothing = Make(DataObjectData{});
    for (const ItemKind& kind : kItemKinds) {
        const bool needsNone = kind.type == eStartup || kind.type == kDesktopPoll;
        for (IUnknown* const data : {static_cast<IUnknown*>(nullptr), nothing.Get()}) {
            Forget();
            const HRESULT failure =
                data && (kind.type == eExtendedData || kind.type == eTraceRoute) ? E_NOINTERFACE : E_FAIL;

            EXPECT_EQ(Dump(kind.type, data), needsNone ? S_OK : failure) << kind.name;

            EXPECT_EQ(SentCalls().size(), needsNone ? 1U : 0U) << kind.name;
            EXPECT_EQ(LoggedSinceStart().size(), kind.type == eTraceRoute ? 1U : 0U) << kind.name;
        }
    }
}

}  // namespace
