#include "CHresultException.h"
#include "ItemFixture.h"
#include "RunOnNewThread.h"

namespace {

/// Events of a session's life.
class SessionItemsTest : public CItemFixture {
protected:
    static constexpr unsigned char kEvents[] = {
        eUserSessionStart,     eUserSessionLogon,      eUserSessionLogoff, eUserSessionRefresh,
        eUserSessionReconnect, eUserSessionDisconnect, eUserSessionEnd,
    };

    /// Each event fails at its session: the result is that of the identities, and Java gets no event.
    void ExpectNoEvents(const Calls& calls, const Texts& logged) {
        for (const unsigned char type : kEvents) {
            Forget();

            EXPECT_EQ(Send(type), S_OK) << int{type};

            EXPECT_EQ(ItemCalls(), calls) << int{type};
            EXPECT_EQ(LoggedSinceStart(), logged) << int{type};
            RefuseIdentities(E_ACCESSDENIED);
            EXPECT_EQ(Send(type), E_ACCESSDENIED) << int{type};
            EXPECT_EQ(SentCalls(), Calls{}) << int{type};
        }
    }
};

TEST_F(SessionItemsTest, AnEventNeedsDataThatIsASession) {
    Start();
    const auto data = Make(MakeDataWithoutSession());
    for (const unsigned char type : kEvents) {
        for (IUnknown* const noSession : {data.Get(), static_cast<IUnknown*>(nullptr)}) {
            Forget();
            RefuseIdentities(S_FALSE);

            EXPECT_EQ(Dump(type, noSession), E_FAIL) << int{type};

            EXPECT_EQ(ItemCalls(), Calls{s_makeConnection}) << int{type};
            EXPECT_EQ(LoggedSinceStart(), Texts{}) << int{type};
        }
    }
}

TEST_F(SessionItemsTest, ASessionThatTheHostDoesNotTellIsNotSent) {
    Start();
    for (const char* const operation :
         {"IUserSessionInfo::get_id", "IUserSessionInfo::get_sid", "IUserSessionInfo::get_user",
          "IUserSessionInfo::get_domain", "IUserSessionInfo::get_state"}) {
        SCOPED_TRACE(operation);
        Host().Record().Fail(operation, 1, E_UNEXPECTED, -1);

        ExpectNoEvents({s_makeConnection}, {});

        Host().Record().ClearFaults();
    }
}

TEST_F(SessionItemsTest, ASessionThatJavaDoesNotMakeIsNotSent) {
    Start();
    Fake().MakeMethodThrow(Binding::BaseUserSession::kClass, "<init>", Exception("no session"));

    ExpectNoEvents({s_makeConnection, "BaseUserSession.<init>(5, \"S-1-5\", \"ann\", \"lab\", true)"},
                   {L"error: Failed to create a new Java user session object.  no session"});
}

TEST_F(SessionItemsTest, OnlyALogonAndARefreshDescribeTheMachine) {
    Start();
    for (const unsigned char type : kEvents) {
        Forget();

        EXPECT_EQ(Send(type), S_OK) << int{type};

        const bool takesDesktop = type == eUserSessionLogon || type == eUserSessionRefresh;
        EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::get_networkInterfaces"), takesDesktop ? 1 : 0) << int{type};
    }
}

/// Kinds that describe the machine, where that goes wrong.
class DesktopItemsTest : public CItemFixture {};

TEST_F(DesktopItemsTest, AMachineThatJavaDoesNotDescribeIsNotSent) {
    struct Case {
        const char* method;
        const wchar_t* logged;
    };
    Start();
    for (const Case& c :
         {Case{"putTotalMemory", L"error: Failed to set total memory on the Java desktop object.  no desktop"},
          Case{"<init>", L"error: Failed to create a new Java desktop object.  no desktop"}}) {
        Fake().MakeMethodThrow(Binding::DesktopInformation::kClass, c.method, Exception("no desktop"));
        for (const unsigned char type : kDesktopKinds) {
            Forget();

            EXPECT_EQ(Send(type), S_OK) << int{type} << c.method;

            EXPECT_EQ(LoggedSinceStart(), Texts{c.logged}) << int{type};
            RefuseIdentities(E_ACCESSDENIED);
            EXPECT_EQ(Send(type), E_ACCESSDENIED) << int{type} << c.method;
            EXPECT_EQ(SentCalls(), Calls{}) << int{type} << c.method;
        }
    }
}

TEST_F(DesktopItemsTest, AdaptersThatAreNotToBeHadThrowOutOfTheCallWhichLeavesNothing) {
    Start();
    const std::string held = Host().Record().DescribeLeftovers();
    const long globals = Fake().GetGlobalReferences();
    for (const unsigned char type : kDesktopKinds) {
        Forget();
        Host().Record().Fail("ISystemInfo::get_networkInterfaces", 1, E_ACCESSDENIED);
        HRESULT thrown = S_OK;

        try {
            static_cast<void>(Send(type));
        } catch (const CHresultException& failure) {
            thrown = failure.GetResult();
        }

        EXPECT_EQ(thrown, E_INVALIDARG) << int{type};
        EXPECT_EQ(SentCalls(), Calls{}) << int{type};
        ASSERT_EQ(LoggedSinceStart().size(), 1U) << int{type};
        EXPECT_EQ(LoggedSinceStart()[0].rfind(L"error: Failed to get_networkInterfaces in function ", 0), 0U);
        EXPECT_EQ(Host().Record().DescribeLeftovers(), held) << int{type};
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << int{type};
        EXPECT_EQ(Fake().GetGlobalReferences(), globals) << int{type};
        EXPECT_EQ(Fake().GetOpenFrames(), 0) << int{type};
        EXPECT_FALSE(Fake().IsExceptionPending()) << int{type};
        RunOnNewThread([&] { EXPECT_EQ(Send(type), S_OK) << "the lock is free"; });
        EXPECT_EQ(SentCalls().size(), 1U) << int{type};
    }
}

/// What a logoff brings besides the event.
class LogoffItemTest : public CItemFixture {
protected:
    /// Logs off with these figures; what Java is called with between the session and the event.
    Calls FiguresOf(SampleData sample) {
        DataObjectData data = MakeData();
        data.sample = std::move(sample);
        const auto object = Make(std::move(data));
        Forget();
        EXPECT_EQ(Dump(eUserSessionLogoff, object.Get()), S_OK);
        return CutFigures();
    }

    Calls CutFigures() {
        Calls calls = ItemCalls();
        EXPECT_GE(calls.size(), 4U);
        EXPECT_EQ(calls.back(), s_logoff);
        return calls.size() < 4 ? Calls{} : Calls(calls.begin() + 3, calls.end() - 1);
    }

    static inline const std::string s_logoff =
        "DesktopMessageClient.onUserLogoff(DesktopConnection@instance, 1, BaseUserSession@instance)";
    static inline const Calls s_metric{"BaseMetric.<init>(\"cpu\")", "BaseMetric.putLongValue(7)",
                                       "BaseUserSession.putMetric(BaseMetric@instance)"};
};

TEST_F(LogoffItemTest, DataWithoutFiguresIsSentWithout) {
    Start();
    DataObjectData data = MakeData();
    data.sample.reset();
    const auto object = Make(std::move(data));
    Forget();

    EXPECT_EQ(Dump(eUserSessionLogoff, object.Get()), S_OK);

    EXPECT_EQ(CutFigures(), Calls{});
    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(LogoffItemTest, ApplicationsGoWithAMetricAlone) {
    SampleData withoutMetrics = MakeItemSample();
    withoutMetrics.metrics.clear();
    SampleData withoutGoodMetrics = MakeItemSample();
    withoutGoodMetrics.metrics = {{L"cpu", MakeBool(true)}};
    SampleData withoutApplications = MakeItemSample();
    withoutApplications.instances.clear();
    Start();

    EXPECT_EQ(FiguresOf(withoutMetrics), Calls{});
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_instances"), 0);
    EXPECT_EQ(FiguresOf(withoutGoodMetrics), Calls{"BaseMetric.<init>(\"cpu\")"});
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_instances"), 0);
    EXPECT_EQ(FiguresOf(withoutApplications), s_metric);
    EXPECT_EQ(FiguresOf(MakeItemSample()).size(), 8U);
    EXPECT_EQ(ItemCalls("BaseUserSession.putRemoteApp(").size(), 1U);
}

TEST_F(LogoffItemTest, AMetricThatIsBuiltCountsThoughItIsNotPut) {
    Fake().MakeMethodThrow(Binding::BaseUserSession::kClass, "putMetric", Exception("no room"));
    Start();

    EXPECT_EQ(FiguresOf(MakeItemSample()).size(), 8U);

    EXPECT_EQ(ItemCalls("BaseUserSession.putRemoteApp("),
              Calls{"BaseUserSession.putRemoteApp(BaseRemoteApp@instance)"});
    ASSERT_EQ(LoggedSinceStart().size(), 2U);
    EXPECT_EQ(LoggedSinceStart()[0].rfind(L"error: Failed to add metric 'cpu' to sample '", 0), 0U);
}

TEST_F(LogoffItemTest, FiguresThatAreNotToBeHadAreMissingAlone) {
    struct Case {
        const char* operation;
        std::size_t calls;
        const wchar_t* logged;
    };
    Start();
    for (const Case& c : {Case{"ISampleNode::get_metrics", 0, L"error: Failed to get metrics from sample"},
                          Case{"ISampleNode::get_instances", 3, L"error: Failed to get instances from sample"}}) {
        Host().Record().Fail(c.operation, 1, E_ACCESSDENIED);

        EXPECT_EQ(FiguresOf(MakeItemSample()).size(), c.calls) << c.operation;

        EXPECT_EQ(LoggedSinceStart(), Texts{c.logged + ErrorText(E_ACCESSDENIED)}) << c.operation;
    }
}

TEST_F(LogoffItemTest, AnApplicationThatJavaDoesNotTakeDoesNotHoldUpTheEvent) {
    Fake().MakeMethodThrow(Binding::BaseUserSession::kClass, "putRemoteApp", Exception("no room"));
    Start();

    EXPECT_EQ(FiguresOf(MakeItemSample()).size(), 8U);

    ASSERT_EQ(LoggedSinceStart().size(), 2U);
    EXPECT_EQ(LoggedSinceStart()[0], L"verbose 8: Adding remote app to sample: '5'");
    EXPECT_EQ(LoggedSinceStart()[1].rfind(L"error: Failed to add app '5' to sample '", 0), 0U);
}

}  // namespace
