#include <shlwapi.h>

#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CSampleTreeTest.h"
#include "StackSamples.h"

namespace {

using SampleClassTest = CDataConversionTest;

TEST_F(SampleClassTest, WithoutItThereIsNoSampleAndTheHostIsNotAsked) {
    const auto node = MakeSampleNode(Host().ShareRecord(), {1.5, {{L"a", MakeInt(1)}}});
    const auto sessions = MakeSessionCollection(Host().ShareRecord(), {});

    EXPECT_EQ(MakeConvertor().GetSample(SharedVM(), node.Get(), sessions.Get()), nullptr);

    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(SampleClassTest, WithoutTheClassesOfItsPartsThereIsTheSampleAlone) {
    LoadClasses({Binding::BaseSample::kClass});
    const auto node = MakeSampleNode(Host().ShareRecord(), {25570.0, {{L"a", MakeInt(1)}}, {{L"7", {}}}});
    const auto sessions = MakeSessionCollection(Host().ShareRecord(), {SessionData{7}});

    EXPECT_NE(MakeConvertor().GetSample(SharedVM(), node.Get(), sessions.Get()), nullptr);

    EXPECT_EQ(JavaCalls(), Names{"BaseSample.<init>(86400000)"});
    EXPECT_EQ(Host().Errors(), Texts{});
}

using SampleConversionTest = CSampleTreeTest;

TEST_F(SampleConversionTest, ANullSampleIsNoneWithoutAWordOrACall) {
    EXPECT_EQ(MakeConvertor().GetSample(SharedVM(), nullptr, MakeSessions().Get()), nullptr);

    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(SampleConversionTest, ATreeIsConvertedNodeByNodeAndEachPartIsPutWhenItIsWhole) {
    const auto node = MakeNode(MakeTree());
    const auto sessions = MakeSessions();
    Object sample;

    const Names trace = Trace([&] { sample = MakeConvertor().GetSample(SharedVM(), node.Get(), sessions.Get()); });

    EXPECT_NE(sample, nullptr);
    EXPECT_EQ(
        trace,
        Join({{"Sample: get_time", kSampleMade, "Sample: get_metrics(1)", "Sample metrics: Next"},
              MetricCalls("BaseSample", "cpu", 1),
              {"Sample metrics: Next", "Sample: get_instances", "Sample instances: Next"},
              AskedOfSession("7"),
              {kAnnMade},
              AskedForProperties("7"),
              {"Sample/7: get_metrics(1)", "Sample/7 metrics: Next"},
              MetricCalls("BaseUserSession", "load", 3),
              {"Sample/7 metrics: Next", "Sample/7: get_instances", "Sample/7 instances: Next",
               R"(BaseRemoteApp.<init>("mail"))", "Sample/7/mail: get_metrics(1)", "Sample/7/mail metrics: Next"},
              MetricCalls("BaseRemoteApp", "hits", 2),
              {"Sample/7/mail metrics: Next", "Logger: LogVerbose(telvar-rmi, 8, Adding remote app to sample: 'mail')",
               "BaseUserSession.putRemoteApp(BaseRemoteApp@instance)", "Sample/7 instances: Next",
               "Logger: LogVerbose(telvar-rmi, 8, Adding session to sample: '7')", kSessionPut,
               "Sample instances: Next"},
              AskedOfSession("8"),
              {kBobMade},
              AskedForProperties("8"),
              {"Sample/8: get_metrics(1)", "Sample/8 metrics: Next"},
              MetricCalls("BaseUserSession", "load", 4),
              {"Sample/8 metrics: Next", "Sample/8: get_instances", "Sample/8 instances: Next",
               "Logger: LogVerbose(telvar-rmi, 8, Adding session to sample: '8')", kSessionPut,
               "Sample instances: Next"}}));
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

// ---- the sample itself ----------------------------------------------------------------------------------

TEST_F(SampleConversionTest, ItsTimeIsInMillisecondsOfWholeSecondsAndWrapsBefore1970) {
    struct Case {
        DATE time;
        const char* javaTime;
    };
    constexpr double kSecond = 1.0 / 86400;
    for (const Case& c : {Case{25570.0, "86400000"}, Case{25569.0, "0"}, Case{25569.0 + 1.4 * kSecond, "1000"},
                          Case{45351.0 + 45296.3 * kSecond, "1709210096000"}, Case{2958465.0, "253402214400000"},
                          Case{25569.0 - kSecond, "1844674407369000"}, Case{0.0, "1842465245770000"},
                          Case{1e300, "1833029933770000"}}) {
        EXPECT_NE(Convert({c.time}), nullptr) << c.time;

        EXPECT_EQ(JavaCalls(), Names{std::string("BaseSample.<init>(") + c.javaTime + ")"}) << c.time;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleConversionTest, ATimeThatCannotBeHadLosesTheSample) {
    for (const HRESULT failure : kFailures) {
        Host().Record().ClearCalls();
        Host().Record().Fail("Sample: get_time", 1, failure);

        EXPECT_EQ(Convert(MakeTree()), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get time from sample" + Suffix(failure));
        EXPECT_EQ(Host().Record().CountCalls("Sample*"), 1) << "the time alone";
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get time from sample  Error code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors()[0].find(L"Failed to get time from sample  Error code 0x80004005 -- "), 0U);
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
    EXPECT_EQ(JavaCalls(), Names{});
}

TEST_F(SampleConversionTest, ATimeThatTheHostLeavesUntouchedIsThatOfZero) {
    Host().Record().LeaveUntouched("Sample: get_time");
    EXPECT_NE(Convert({kSampleTime}), nullptr);
    EXPECT_EQ(JavaCalls(), Names{"BaseSample.<init>(1842465245770000)"});

    Host().Record().Fail("Sample: get_time", 1, S_FALSE);
    EXPECT_NE(Convert({kSampleTime}), nullptr);
    EXPECT_EQ(JavaCalls(), Names{"BaseSample.<init>(1842465245770000)"}) << "a success as well";

    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleConversionTest, AnObjectThatCannotBeMadeLosesTheSample) {
    Fake().Fail("NewGlobalRef", 1);
    EXPECT_EQ(Convert(MakeTree()), nullptr);
    EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java sample object.  " + kOutOfMemory);
    Fake().Fail("NewObjectV", 1, 1, FakeFaultMode::eWithoutException);
    EXPECT_EQ(Convert(MakeTree()), nullptr);
    EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java sample object.  ");
    MakeThrow(Binding::BaseSample::kClass, "<init>", kRefusal);
    EXPECT_EQ(Convert(MakeTree()), nullptr);
    EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java sample object.  " + s_refused);

    EXPECT_EQ(Host().Errors().size(), 3U);
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode*"), 3) << "the time, each time";
    ExpectKeptLocals(2);
}

TEST_F(SampleConversionTest, MetricsThatCannotBeHadLeaveTheRest) {
    Host().Record().Fail("Sample: get_metrics(1)", 1, E_FAIL);
    Host().Record().Fail("Sample/8: get_metrics(1)", 1, kUntold);

    EXPECT_NE(Convert(MakeTree()), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to get metrics from sample" + Suffix(E_FAIL),
                                      L"Failed to get metrics from sample  Error code 0x8abcdef0."}));
    EXPECT_EQ(JavaCalls(), Join({{kSampleMade}, AnnCalls(), {kBobMade, kSessionPut}}));
}

TEST_F(SampleConversionTest, InstancesThatCannotBeHadLoseTheSampleWhole) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Sample: get_instances", 1, failure);

        EXPECT_EQ(Convert(MakeTree()), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get instances from sample" + Suffix(failure));
        EXPECT_EQ(JavaCalls(), SampleCalls());
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get instances from sample  Error code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors()[0].find(L"Failed to get instances from sample  Error code 0x80004005 -- "), 0U);
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
    EXPECT_EQ(Host().Record().CountCalls("ISessionCollection::GetSession"), 0);
}

TEST_F(SampleConversionTest, AHostThatSucceedsWithoutAnEnumeratorHasNoSessions) {
    Host().Record().GiveNull("Sample: get_instances");
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), SampleCalls());
    Host().Record().LeaveUntouched("Sample: get_instances");
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), SampleCalls());

    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

// ---- walks over sessions --------------------------------------------------------------------------------

TEST_F(SampleConversionTest, WhateverIsNotSOkEndsTheWalkAndKeepsWhatWasPut) {
    for (const HRESULT result : {S_FALSE, HRESULT{2}, E_FAIL, kUntold}) {
        SampleData data = MakeTree();
        data.instancesWalk.failAt = 1;
        data.instancesWalk.failure = result;
        Host().Record().ClearCalls();

        EXPECT_NE(Convert(data), nullptr) << result;

        EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls()})) << result;
        EXPECT_EQ(Host().Record().CountCalls("Sample instances: Next"), 2) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleConversionTest, AnInstanceWithoutAKeyOrANodeIsSkippedWithoutAWord) {
    SampleData withoutKey = MakeTree();
    withoutKey.instancesWalk.nullNameAt = 0;
    EXPECT_NE(Convert(withoutKey), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), BobCalls()}));

    SampleData withoutNode = MakeTree();
    withoutNode.instancesWalk.nullItemAt = 1;
    EXPECT_NE(Convert(withoutNode), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls()}));

    Host().Record().LeaveUntouched("Sample instances: Next", 2);
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls(), BobCalls()})) << "nothing is left of the pair before";

    EXPECT_EQ(Host().Record().CountFiredFaults(), 1);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleConversionTest, WhatAFailingHostLeavesIsNotTouchedAndWhatASuccessLeavesIsReleased) {
    CStackBox box(nullptr);
    CStackSession session(&box);
    CStackSessions sessions(&session);
    CStackSample instance;
    for (const HRESULT result : {E_FAIL, S_FALSE}) {
        CStackInstances instances(L"7", &instance);
        instances.endResult = result;
        CStackSample sample(nullptr, &instances);
        ForgetJavaCalls();

        EXPECT_NE(MakeConvertor().GetSample(SharedVM(), &sample, &sessions), nullptr);

        EXPECT_EQ(CountCalls(JavaCalls(), kSessionPut), 1) << "the pair that the end came with is none";
        sample.getInstances = E_FAIL;
        EXPECT_EQ(MakeConvertor().GetSample(SharedVM(), &sample, &sessions), nullptr);
        EXPECT_EQ(instances.CountReferences(), 0);
        EXPECT_EQ(instance.CountReferences(), 0);
    }
    CStackInstances instances(L"7", &instance);
    CStackSample sample(nullptr, &instances);
    sessions.getSession = E_FAIL;
    EXPECT_NE(MakeConvertor().GetSample(SharedVM(), &sample, &sessions), nullptr);
    EXPECT_EQ(session.CountReferences(), 0);
}

TEST_F(SampleConversionTest, AKeyNamesTheSessionOfItsNumberAndWhatIsNoNumberSession0) {
    struct Case {
        std::wstring key;
        int id;
    };
    const std::wstring tooGreat = L"99999999999";
    for (const Case& c :
         {Case{L"7", 7}, Case{L"65536", 65536}, Case{L"2147483647", 2147483647}, Case{L"-1", -1}, Case{L"console", 0},
          Case{L"", 0}, Case{L"x7", 0}, Case{L"0x10", 0}, Case{L"12abc", 12}, Case{L"007", 7}, Case{L"\u0667", 0},
          Case{std::wstring(L"5\0006", 3), 5}, Case{L" 7", StrToIntW(L" 7")}, Case{L"+7", StrToIntW(L"+7")},
          Case{tooGreat, StrToIntW(tooGreat.c_str())}}) {
        Host().Record().ClearCalls();

        EXPECT_NE(Convert({kSampleTime, {}, {{c.key, {}}}}), nullptr);

        EXPECT_EQ(Host().Record().CountCalls("Sessions: GetSession(" + std::to_string(c.id) + ")"), 1) << c.id;
        EXPECT_EQ(Host().Record().CountCalls("ISessionCollection::GetSession"), 1) << c.id;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleConversionTest, TheKeyIsNamedAsItIs) {
    EXPECT_NE(Convert({kSampleTime, {}, {{L"7 %s", {}}}}), nullptr);

    EXPECT_EQ(Host().Details(), Texts{L"Adding session to sample: '7 %s'"});
    EXPECT_EQ(JavaCalls(), (Names{kSampleMade, kAnnMade, kSessionPut}));
}

TEST_F(SampleConversionTest, InstancesOfOneKeyAreAsManySessions) {
    EXPECT_NE(Convert({kSampleTime, {}, {{L"8", {}}, {L"8", {}}}}), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kSampleMade, kBobMade, kSessionPut, kBobMade, kSessionPut}));
}

}  // namespace
