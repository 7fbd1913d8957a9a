#include "ItemFixture.h"

namespace {

/// The machine's measurements, and the sessions they are of.
class SampleItemTest : public CItemFixture {
protected:
    long CountFetches() { return Host().Record().CountCalls("Services: GetHostObject(ISessionCollection)"); }

    static inline const std::string s_sample =
        "DesktopMessageClient.onDataCollected(DesktopConnection@instance, BaseSample@instance)";
};

TEST_F(SampleItemTest, TheSessionsAreFetchedAnewForEachSample) {
    Start();
    for (long sample = 1; sample <= 3; ++sample) {
        EXPECT_EQ(Send(eSample), S_OK);

        EXPECT_EQ(CountFetches(), sample);
    }
    SessionData other = MakeItemSession();
    other.user = L"bob";
    Host().Services().Set(ISessionCollection::kId, MakeSessions({other}).Get());
    Forget();

    EXPECT_EQ(Send(eSample), S_OK);

    EXPECT_EQ(CountFetches(), 1);
    EXPECT_EQ(ItemCalls("BaseUserSession.<init>("),
              Calls{"BaseUserSession.<init>(5, \"S-1-5\", \"bob\", \"lab\", true)"});
}

TEST_F(SampleItemTest, NoOtherKindFetchesSessions) {
    Start();
    for (const ItemKind& kind : kItemKinds) {
        Forget();

        EXPECT_EQ(Send(kind), S_OK) << kind.name;

        EXPECT_EQ(CountFetches(), kind.type == eSample ? 1 : 0) << kind.name;
    }
}

TEST_F(SampleItemTest, TheDatasOwnSessionIsNotTheSamples) {
    Host().Services().Set(ISessionCollection::kId, MakeSessions({}).Get());
    Start();

    EXPECT_EQ(Send(eSample), S_OK);

    EXPECT_EQ(ItemCalls("BaseUserSession."), Calls{}) << "the host knows no session 5";
    EXPECT_EQ(SentCalls(), Calls{s_sample});
}

TEST_F(SampleItemTest, WithoutTheHostsSessionsNothingIsSentAndNothingLogged) {
    Start();
    for (const HRESULT failure : {E_ACCESSDENIED, E_UNEXPECTED, E_FAIL}) {
        Forget();
        Host().Services().SetResult(ISessionCollection::kId, failure);
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(eSample), E_FAIL);

        EXPECT_EQ(ItemCalls(), Calls{s_makeConnection});
        EXPECT_EQ(LoggedSinceStart(), Texts{});
        EXPECT_EQ(CountFetches(), 1);
    }
    Host().Services().Set(ISessionCollection::kId, nullptr);
    EXPECT_EQ(Send(eSample), E_FAIL) << "none, with success";
    EXPECT_EQ(ItemCalls(), (Calls(2, s_makeConnection))) << "of this call and the last one";
    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(SampleItemTest, DataThatIsNoSampleIsNotSent) {
    Start();
    DataObjectData data = MakeData();
    data.sample.reset();
    const auto noSample = Make(std::move(data));

    EXPECT_EQ(Dump(eSample, noSample.Get()), E_FAIL);
    EXPECT_EQ(Dump(eSample), E_FAIL);

    EXPECT_EQ(ItemCalls(), (Calls(2, s_makeConnection)));
    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(SampleItemTest, ASampleThatCannotBeConvertedIsNotSent) {
    struct Case {
        const char* operation;
        std::wstring logged;
    };
    Start();
    for (const Case& c : {Case{"ISampleNode::get_time", L"error: Failed to get time from sample"},
                          Case{"ISampleNode::get_instances", L"error: Failed to get instances from sample"}}) {
        Forget();
        Host().Record().Fail(c.operation, 1, E_ACCESSDENIED);
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(eSample), E_FAIL) << c.operation;

        EXPECT_EQ(SentCalls(), Calls{}) << c.operation;
        EXPECT_EQ(LoggedSinceStart(), Texts{c.logged + ErrorText(E_ACCESSDENIED)}) << c.operation;
    }
    Forget();
    Fake().MakeMethodThrow(Binding::BaseSample::kClass, "<init>", Exception("no sample"));
    EXPECT_EQ(Send(eSample), E_FAIL);
    EXPECT_EQ(SentCalls(), Calls{});
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to create a new Java sample object.  no sample"});
}

TEST_F(SampleItemTest, ASessionOrAMetricThatFailsIsMissingAlone) {
    Start();
    Host().Record().Fail("ISessionCollection::GetSession", 1, E_ACCESSDENIED);
    Host().Record().Fail("ISampleNode::get_metrics", 1, E_ACCESSDENIED);

    EXPECT_EQ(Send(eSample), S_OK);

    EXPECT_EQ(ItemCalls(), (Calls{s_makeConnection, "BaseSample.<init>(86400000)", s_sample}));
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to get metrics from sample" + ErrorText(E_ACCESSDENIED)});
}

}  // namespace
