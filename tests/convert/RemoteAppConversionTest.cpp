#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CSampleConversionTest.h"
#include "StackSamples.h"

namespace {

constexpr char kAppPut[] = "BaseUserSession.putRemoteApp(BaseRemoteApp@instance)";

class RemoteAppClassTest : public CDataConversionTest {};

TEST_F(RemoteAppClassTest, WithoutItThereIsNoApplicationAndNotAWord) {
    EXPECT_EQ(MakeConvertor().GetRemoteApp(SharedVM(), L"mail"), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(RemoteAppClassTest, WithoutItTheApplicationsNodesAreNotAsked) {
    LoadClasses({Binding::BaseUserSession::kClass, Binding::BaseMetric::kClass});
    const Object session = VM().GetClass(Binding::BaseUserSession::kClass)->NewObject(Binding::BaseUserSession::kCtor);
    ForgetJavaCalls();
    const auto node = MakeSampleNode(Host().ShareRecord(), {1.5, {}, {{L"mail", {1.5, {{L"a", MakeInt(1)}}}}}});

    MakeConvertor().AddRemoteApps(SharedVM(), session, node.Get());

    EXPECT_EQ(JavaCalls(), Names{});
    EXPECT_EQ(Host().Record().CountCalls("Sample/mail*"), 0);
    EXPECT_EQ(Host().Errors(), Texts{});
}

class RemoteAppConversionTest : public CSampleConversionTest {
protected:
    void SetUp() override {
        CSampleConversionTest::SetUp();
        m_session = MakeExpectedTarget(Binding::BaseUserSession::kClass);
    }
    void TearDown() override {
        m_session.reset();
        CSampleConversionTest::TearDown();
    }

    [[nodiscard]] const Object& Session() const { return m_session; }
    [[nodiscard]] static InstanceData MakeApp(std::wstring id, std::vector<MetricData> metrics) {
        return {std::move(id), {kAppTime, std::move(metrics)}};
    }
    [[nodiscard]] static std::vector<InstanceData> MakeThreeApps() {
        return {MakeApp(L"a", {{L"x", MakeInt(1)}}), MakeApp(L"b", {{L"x", MakeInt(2)}}),
                MakeApp(L"c", {{L"x", MakeInt(3)}})};
    }
    void Add(ISampleNode* node) {
        ForgetJavaCalls();
        MakeConvertor().AddRemoteApps(SharedVM(), m_session, node);
    }
    void Add(std::vector<InstanceData> apps, WalkData walk = {}) {
        Add(MakeNode({kSessionTime, {}, std::move(apps), {}, walk}).Get());
    }

    /// What Java is called with for one of the three applications.
    [[nodiscard]] static Names AppCalls(const std::string& id, LONGLONG value) {
        return Join({{"BaseRemoteApp.<init>(\"" + id + "\")"}, MetricCalls("BaseRemoteApp", "x", value), {kAppPut}});
    }

private:
    Object m_session;
};

// ---- one application ------------------------------------------------------------------------------------

TEST_F(RemoteAppConversionTest, AnApplicationHasItsIdInItsStoredLength) {
    for (const std::wstring& id :
         {std::wstring(L"mail"), std::wstring(), std::wstring(L"a\0b", 3), std::wstring(L"\u65e5 \U0001f600 %s")}) {
        ForgetJavaCalls();

        EXPECT_NE(MakeConvertor().GetRemoteApp(SharedVM(), id), nullptr);

        EXPECT_EQ(JavaCalls(), Names{"BaseRemoteApp.<init>(" + Quote(id) + ")"});
    }
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(RemoteAppConversionTest, AnIdThatJavaDoesNotTakeIsShownAndEndsIt) {
    Fake().Fail("NewString", 1);
    ExpectKeptLocals(1);

    EXPECT_EQ(MakeConvertor().GetRemoteApp(SharedVM(), L"mail%s"), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for mail%s.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), Names{});
}

TEST_F(RemoteAppConversionTest, AnApplicationThatCannotBeMadeIsLogged) {
    Fake().Fail("NewGlobalRef", 1);
    EXPECT_EQ(MakeConvertor().GetRemoteApp(SharedVM(), L"mail"), nullptr);
    Fake().Fail("NewObjectV", 1, 1, FakeFaultMode::eWithoutException);
    EXPECT_EQ(MakeConvertor().GetRemoteApp(SharedVM(), L"mail"), nullptr);
    MakeThrow(Binding::BaseRemoteApp::kClass, "<init>", kRefusal);
    EXPECT_EQ(MakeConvertor().GetRemoteApp(SharedVM(), L"mail"), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to create a new Java remote app object.  " + kOutOfMemory,
                                      L"Failed to create a new Java remote app object.  ",
                                      L"Failed to create a new Java remote app object.  " + s_refused}));
    ExpectKeptLocals(2);
}

// ---- a session's ----------------------------------------------------------------------------------------

TEST_F(RemoteAppConversionTest, NullPointersAreNoApplicationsWithoutAWordOrACall) {
    const auto node = MakeNode({kSessionTime, {}, MakeThreeApps()});

    MakeConvertor().AddRemoteApps(SharedVM(), Session(), nullptr);
    MakeConvertor().AddRemoteApps(SharedVM(), nullptr, node.Get());

    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(RemoteAppConversionTest, EachApplicationIsPutWithItsMetricsAfterItWasTold) {
    const auto node = MakeNode({kSessionTime, {}, {MakeApp(L"a", {{L"x", MakeInt(1)}}), MakeApp(L"100%s", {})}});

    const Names trace = Trace([&] { Add(node.Get()); });

    EXPECT_EQ(trace,
              Join({{"Sample: get_instances", "Sample instances: Next", R"(BaseRemoteApp.<init>("a"))",
                     "Sample/a: get_metrics(1)", "Sample/a metrics: Next"},
                    MetricCalls("BaseRemoteApp", "x", 1),
                    {"Sample/a metrics: Next", "Logger: LogVerbose(telvar-rmi, 8, Adding remote app to sample: 'a')",
                     kAppPut, "Sample instances: Next", R"(BaseRemoteApp.<init>("100%s"))",
                     "Sample/100%s: get_metrics(1)", "Sample/100%s metrics: Next", "Sample instances: Next"}}));
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(RemoteAppConversionTest, AnApplicationWithoutAMetricIsNotPut) {
    Host().Record().Fail("Sample/fails: get_metrics(1)", 1, kUntold);
    Host().Record().GiveNull("Sample/null: get_metrics(1)");

    Add({MakeApp(L"none", {}), MakeApp(L"invalid", {{L"on", MakeBool(true)}, {L"at", MakeDate(1.5)}}),
         MakeApp(L"fails", {{L"x", MakeInt(1)}}), MakeApp(L"null", {{L"x", MakeInt(1)}}),
         MakeApp(L"good", {{L"on", MakeBool(true)}, {L"x", MakeInt(1)}})});

    EXPECT_EQ(CountCalls(JavaCalls(), kAppPut), 1);
    EXPECT_EQ(Host().Details(), Texts{L"Adding remote app to sample: 'good'"});
    EXPECT_EQ(Host().Errors(),
              (Texts{L"Invalid type for metric 'on'.", L"Invalid type for metric 'at'.",
                     L"Failed to get metrics from sample  Error code 0x8abcdef0.", L"Invalid type for metric 'on'."}));
    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
}

TEST_F(RemoteAppConversionTest, AnApplicationWhoseMetricsCannotBePutGoesWithoutThem) {
    MakeThrow(Binding::BaseRemoteApp::kClass, "putMetric", kRefusal);

    Add({MakeApp(L"a", {{L"x", MakeInt(1)}})});

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to add metric 'x' to sample '03/02/24 12:00:00'.  " + s_refused});
    EXPECT_EQ(JavaCalls(), AppCalls("a", 1));
}

TEST_F(RemoteAppConversionTest, TheIdIsToldAsItIs) {
    Add({MakeApp(L"100%s%n", {{L"x", MakeInt(1)}})});

    EXPECT_EQ(Host().Details(), Texts{L"Adding remote app to sample: '100%s%n'"});
}

TEST_F(RemoteAppConversionTest, InstancesThatCannotBeHadAreLogged) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Sample: get_instances", 1, failure);

        Add(MakeThreeApps());

        EXPECT_EQ(Host().Errors().back(), L"Failed to get instances from sample" + Suffix(failure));
        EXPECT_EQ(JavaCalls(), Names{});
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get instances from sample  Error code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
    EXPECT_EQ(Host().Record().CountCalls("IInstanceEnumerator::Next"), 0);
}

TEST_F(RemoteAppConversionTest, AHostThatSucceedsWithoutAnEnumeratorHasNoApplications) {
    Host().Record().GiveNull("Sample: get_instances");
    Add(MakeThreeApps());
    Host().Record().LeaveUntouched("Sample: get_instances");
    Add(MakeThreeApps());

    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(CountCalls(JavaCalls(), ""), 0);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(RemoteAppConversionTest, WhateverIsNotSOkEndsTheWalkAndKeepsWhatWasPut) {
    for (const HRESULT result : {S_FALSE, HRESULT{2}, E_FAIL, kUntold}) {
        WalkData walk;
        walk.failAt = 1;
        walk.failure = result;

        Add(MakeThreeApps(), walk);

        EXPECT_EQ(JavaCalls(), AppCalls("a", 1)) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(RemoteAppConversionTest, AnInstanceWithoutAnIdOrANodeIsSkippedWithoutAWord) {
    WalkData walk;
    walk.nullNameAt = 0;
    walk.nullItemAt = 2;
    Add(MakeThreeApps(), walk);
    EXPECT_EQ(JavaCalls(), AppCalls("b", 2));

    Host().Record().LeaveUntouched("Sample instances: Next", 3);
    Add(MakeThreeApps());
    EXPECT_EQ(JavaCalls(), Join({AppCalls("a", 1), AppCalls("b", 2), AppCalls("c", 3)}));

    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(RemoteAppConversionTest, AnApplicationThatCannotBeMadeIsSkippedAndItsNodeNotAsked) {
    Fake().Fail("NewObjectV", 1);

    Add(MakeThreeApps());

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java remote app object.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), Join({AppCalls("b", 2), AppCalls("c", 3)}));
    EXPECT_EQ(Host().Record().CountCalls("Sample/a*"), 0);
}

TEST_F(RemoteAppConversionTest, AnApplicationThatCannotBePutIsLoggedWithTheSessionNodesTimeAndTheNextGoesOn) {
    MakeThrow(Binding::BaseUserSession::kClass, "putRemoteApp", kRefusal);
    Host().Record().Fail("Sample: get_time", 2, E_FAIL);

    Add({MakeApp(L"a", {{L"x", MakeInt(1)}}), MakeApp(L"b", {{L"x", MakeInt(2)}}),
         MakeApp(L"%s", {{L"x", MakeInt(3)}})});

    EXPECT_EQ(Host().Errors(),
              (Texts{L"Failed to add app 'a' to sample '" + s_sessionNodeName + L"'.  " + s_refused,
                     L"Failed to add app 'b' to sample 'Invalid DateTime'.  " + s_refused,
                     L"Failed to add app '%s' to sample '" + s_sessionNodeName + L"'.  " + s_refused}));
    EXPECT_EQ(JavaCalls(), Join({AppCalls("a", 1), AppCalls("b", 2), AppCalls("%s", 3)}));
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_time"), 3) << "the application's is not asked for";
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(RemoteAppConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto node = MakeNode({kSessionTime, {}, MakeThreeApps()});

    FailEachJniCall(
        [&] {
            Add(node.Get());
            return Session();
        },
        [](const FaultRound& round) {
            if (!round.isOnce) {
                return;
            }
            const bool isFrame = round.failed == "PushLocalFrame";
            EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
            const std::wstring error = isFrame ? L"" : round.errors[0];
            const bool isMetric = error.find(L"Failed to add metric 'x'") == 0;
            const bool isPut = error.find(L"Failed to add app") == 0;
            // An application whose one metric fails has none and is not put, one that cannot take it is.
            EXPECT_EQ(CountCalls(round.calls, kAppPut), isFrame || isMetric ? 3 : 2) << round.failed;
            EXPECT_EQ(CountCalls(round.calls, "BaseRemoteApp.putMetric"), isFrame || isPut ? 3 : 2) << round.failed;
        });
}

TEST_F(RemoteAppConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto node = MakeNode({kSessionTime, {}, MakeThreeApps()});
    MakeThrow(Binding::BaseUserSession::kClass, "putRemoteApp", kRefusal);
    ForgetJavaCalls();

    MakeConvertorWithoutLogger().AddRemoteApps(SharedVM(), Session(), node.Get());

    EXPECT_EQ(JavaCalls(), Join({AppCalls("a", 1), AppCalls("b", 2), AppCalls("c", 3)}));
    EXPECT_EQ(Host().Record().CountCalls("Logger*"), 0);
}

TEST_F(RemoteAppConversionTest, TenThousandRefusedApplicationsDoNotFillTheFrame) {
    constexpr std::size_t kMany = 10'000;
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::BaseUserSession::kClass, "putRemoteApp", "refused");

    Add(std::vector<InstanceData>(kMany, MakeApp(L"a", {{L"x", MakeInt(1)}})));

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
    EXPECT_EQ(Host().Errors().size(), kMany);
}

using RemoteAppMemoryTest = CSampleConversionTest;

TEST_F(RemoteAppMemoryTest, EachAllocationMayFail) {
    const std::wstring id = L"an id that is longer than a short text";
    const CJNIConvertor convertor = MakeConvertor();

    EXPECT_EQ(FailEachAllocation([&] { return convertor.GetRemoteApp(SharedVM(), id); }), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
