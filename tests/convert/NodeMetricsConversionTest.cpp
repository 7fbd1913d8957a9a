#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CSampleConversionTest.h"
#include "StackSamples.h"

namespace {

/// The metrics of a node and the object that they are put into.
class NodeMetricsConversionTest : public CSampleConversionTest {
protected:
    static inline const std::vector<MetricData> s_threeMetrics = {
        {L"a", MakeInt(1)}, {L"b", MakeInt(2)}, {L"c", MakeInt(3)}};
    static inline const std::string s_owner = "BaseSample";

    void SetUp() override {
        CSampleConversionTest::SetUp();
        m_target = MakeExpectedTarget(Binding::BaseSample::kClass);
    }
    void TearDown() override {
        m_target.reset();
        CSampleConversionTest::TearDown();
    }

    [[nodiscard]] const Object& Target() const { return m_target; }
    [[nodiscard]] bool Add(ISampleNode* node) {
        ForgetJavaCalls();
        return MakeConvertor().AddMetrics(SharedVM(), m_target, node);
    }
    [[nodiscard]] bool Add(SampleData data) { return Add(MakeNode(std::move(data)).Get()); }
    [[nodiscard]] static Names Put(const std::string& name, LONGLONG value) {
        return MetricCalls(s_owner, name, value);
    }

    static void ExpectBoundedFrame() {
        EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
        EXPECT_EQ(Fake().GetLocalReferences(), 0);
    }
    /// 100,000 metrics, none with a text: the ledger's account of COM's blocks takes a look at all that there are for
    /// each that is freed.
    [[nodiscard]] bool AddManyMetrics() {
        Host().Record().SetKeepsHistory(false);
        Fake().SetCallLogEnabled(false);
        return Add({kSampleTime, std::vector<MetricData>(kMany, {L"name", MakeInt(1)})});
    }
    static constexpr long kMany = 100'000;

private:
    Object m_target;
};

TEST_F(NodeMetricsConversionTest, NullPointersAreNoMetricsWithoutAWordOrACall) {
    const auto node = MakeNode({kSampleTime, s_threeMetrics});

    EXPECT_FALSE(MakeConvertor().AddMetrics(SharedVM(), Target(), nullptr));
    EXPECT_FALSE(MakeConvertor().AddMetrics(SharedVM(), nullptr, node.Get()));

    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(NodeMetricsConversionTest, EachMetricIsPutBeforeTheHostIsAskedForTheNext) {
    const auto node = MakeNode({kSampleTime, s_threeMetrics});
    bool isAnyBuilt = false;

    const Names trace = Trace([&] { isAnyBuilt = Add(node.Get()); });

    EXPECT_TRUE(isAnyBuilt);
    const Names next = {"Sample metrics: Next"};
    EXPECT_EQ(trace, Join({{"Sample: get_metrics(1)"}, next, Put("a", 1), next, Put("b", 2), next, Put("c", 3), next}));
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(NodeMetricsConversionTest, SessionsAndApplicationsTakeMetricsAsSamplesDo) {
    for (const char* const className : {Binding::BaseUserSession::kClass, Binding::BaseRemoteApp::kClass}) {
        const Object target = MakeExpectedTarget(className);
        const auto node = MakeNode({kSampleTime, {{L"a", MakeInt(1)}}});

        EXPECT_TRUE(MakeConvertor().AddMetrics(SharedVM(), target, node.Get()));

        const std::string owner = std::string(className).substr(std::string(className).rfind('/') + 1);
        EXPECT_EQ(JavaCalls(), MetricCalls(owner, "a", 1));
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, ANodeWithoutMetricsHasNone) {
    EXPECT_FALSE(Add({kSampleTime}));

    EXPECT_EQ(JavaCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, MetricsThatCannotBeHadAreLogged) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Sample: get_metrics(1)", 1, failure);

        EXPECT_FALSE(Add({kSampleTime, s_threeMetrics}));

        EXPECT_EQ(Host().Errors().back(), L"Failed to get metrics from sample" + Suffix(failure));
        EXPECT_EQ(JavaCalls(), Names{});
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get metrics from sample  Error code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors()[0].find(L"Failed to get metrics from sample  Error code 0x80004005 -- "), 0U);
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
    EXPECT_EQ(Host().Record().CountCalls("INameValueEnumerator::Next"), 0);
}

TEST_F(NodeMetricsConversionTest, WhatAFailingHostLeavesIsNotTouched) {
    CStackValues metrics;
    CStackSample node(&metrics);
    node.getMetrics = E_FAIL;

    EXPECT_FALSE(Add(&node));

    EXPECT_EQ(metrics.CountReferences(), 0);
    EXPECT_EQ(Host().Errors(), Texts{L"Failed to get metrics from sample" + Suffix(E_FAIL)});
}

TEST_F(NodeMetricsConversionTest, AHostThatSucceedsWithoutAnEnumeratorHasNoMetrics) {
    Host().Record().GiveNull("Sample: get_metrics(1)");
    EXPECT_FALSE(Add({kSampleTime, s_threeMetrics}));
    Host().Record().LeaveUntouched("Sample: get_metrics(1)");
    EXPECT_FALSE(Add({kSampleTime, s_threeMetrics}));
    Host().Record().Fail("Sample: get_metrics(1)", 1, S_FALSE);
    EXPECT_FALSE(Add({kSampleTime, s_threeMetrics}));

    EXPECT_EQ(Host().Record().CountFiredFaults(), 3);
    EXPECT_EQ(JavaCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
}

// ---- walks ----------------------------------------------------------------------------------------------

TEST_F(NodeMetricsConversionTest, WhateverIsNotSOkEndsTheWalkWithoutAWord) {
    for (const HRESULT result : {S_FALSE, HRESULT{2}, E_FAIL, E_NOTIMPL, kUntold}) {
        for (const long failAt : {0L, 1L, 2L}) {
            SampleData data{kSampleTime, s_threeMetrics};
            data.metricsWalk.failAt = failAt;
            data.metricsWalk.failure = result;
            Host().Record().ClearCalls();

            EXPECT_EQ(Add(data), failAt > 0) << result;

            EXPECT_EQ(CountCalls(JavaCalls(), "BaseSample.putMetric"), failAt) << result;
            EXPECT_EQ(Host().Record().CountCalls("INameValueEnumerator::Next"), failAt + 1) << result;
        }
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, AMetricWithoutANameIsSkippedWithoutAWord) {
    SampleData data{kSampleTime, s_threeMetrics};
    data.metricsWalk.nullNameAt = 1;

    EXPECT_TRUE(Add(data));

    EXPECT_EQ(JavaCalls(), Join({Put("a", 1), Put("c", 3)}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, AnEmptyNameIsAName) {
    EXPECT_TRUE(Add({kSampleTime, {{L"", MakeInt(1)}}}));

    EXPECT_EQ(JavaCalls(), Put("", 1));
}

TEST_F(NodeMetricsConversionTest, ANextThatLeavesWhatItIsGivenShowsNothingOfThePairBefore) {
    Host().Record().LeaveUntouched("Sample metrics: Next", 2);

    EXPECT_TRUE(Add({kSampleTime, s_threeMetrics}));

    EXPECT_EQ(Host().Record().CountFiredFaults(), 1);
    EXPECT_EQ(JavaCalls(), Join({Put("a", 1), Put("b", 2), Put("c", 3)}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, AValueThatTheHostLeavesEmptyIsOfNoType) {
    SampleData data{kSampleTime, s_threeMetrics};
    data.metricsWalk.nullItemAt = 1;

    EXPECT_TRUE(Add(data));

    EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric 'b'."});
    EXPECT_EQ(JavaCalls(), Join({Put("a", 1), {R"(BaseMetric.<init>("b"))"}, Put("c", 3)}));
}

TEST_F(NodeMetricsConversionTest, AMetricOfAnotherTypeIsLeftOutAndTheOthersGo) {
    EXPECT_TRUE(Add({kSampleTime, {{L"a", MakeInt(1)}, {L"on", MakeBool(true)}, {L"c", MakeInt(3)}}}));

    EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric 'on'."});
    EXPECT_EQ(JavaCalls(), Join({Put("a", 1), {R"(BaseMetric.<init>("on"))"}, Put("c", 3)}));
}

TEST_F(NodeMetricsConversionTest, ANodeOfInvalidMetricsAloneHasNone) {
    LONG number = 5;
    CStackValues object;
    const std::vector<MetricData> metrics = {
        {L"bool", MakeBool(false)},
        {L"date", MakeDate(1.5)},
        {L"null", MakeNull()},
        {L"error", MakeError(E_FAIL)},
        {L"currency", MakeScalar(VT_CY, 1)},
        {L"reference", MakeScalar(VT_BYREF | VT_I4, reinterpret_cast<ULONGLONG>(&number))},
        {L"null reference", MakeScalar(VT_BYREF | VT_BSTR, 0)},
        {L"no type", MakeScalar(4095, 1)},
        {L"object", MakeInterface(&object)},
        MakeExtendedMetric(L"extended", {{L"0", MakeInt(1)}})};
    Texts expected;
    for (const MetricData& metric : metrics) {
        expected.push_back(L"Invalid type for metric '" + metric.name + L"'.");
    }

    EXPECT_FALSE(Add({kSampleTime, metrics}));

    EXPECT_EQ(Host().Errors(), expected);
    EXPECT_EQ(CountCalls(JavaCalls(), "BaseMetric.put"), 0);
    EXPECT_EQ(CountCalls(JavaCalls(), "BaseSample.putMetric"), 0);
}

// ---- metrics that cannot be put -------------------------------------------------------------------------

TEST_F(NodeMetricsConversionTest, AMetricThatCannotBePutIsLoggedWithTheNodesTimeAndTheNextGoesOn) {
    const auto node = MakeNode({kSampleTime, {{L"a", MakeInt(1)}, {L"100%s", MakeInt(2)}, {L"c", MakeInt(3)}}});
    Fake().Fail("CallVoidMethodV", 4);

    EXPECT_TRUE(Add(node.Get()));

    EXPECT_EQ(Host().Errors(),
              Texts{L"Failed to add metric '100%s' to sample '" + s_sampleName + L"'.  " + kOutOfMemory});
    EXPECT_EQ(CountCalls(JavaCalls(), "BaseSample.putMetric"), 2);
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_time"), 1);
}

TEST_F(NodeMetricsConversionTest, MetricsThatCannotBePutCountAsBuilt) {
    MakeThrow(Binding::BaseSample::kClass, "putMetric", kRefusal);
    const auto node = MakeNode({kSampleTime, {{L"a", MakeInt(1)}}});
    bool isAnyBuilt = false;

    const Names trace = Trace([&] { isAnyBuilt = Add(node.Get()); });

    EXPECT_TRUE(isAnyBuilt);
    EXPECT_EQ(Host().Errors(), Texts{L"Failed to add metric 'a' to sample '" + s_sampleName + L"'.  " + s_refused});
    EXPECT_EQ(trace, Join({{"Sample: get_metrics(1)", "Sample metrics: Next"},
                           Put("a", 1),
                           {"Sample: get_time",
                            "Logger: LogError(telvar-rmi, Failed to add metric 'a' to sample '02/29/24 12:00:00'.  "
                            "refused %s%n)",
                            "Sample metrics: Next"}}));
}

TEST_F(NodeMetricsConversionTest, ANodeThatDoesNotTellADateIsNamedSo) {
    MakeThrow(Binding::BaseSample::kClass, "putMetric", kRefusal);
    const std::wstring expected = L"Failed to add metric 'a' to sample 'Invalid DateTime'.  " + s_refused;
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Sample: get_time", 1, failure);

        EXPECT_TRUE(Add({kSampleTime, {{L"a", MakeInt(1)}}}));

        EXPECT_EQ(Host().Errors().back(), expected) << failure;
    }
    for (const DATE time : {1e300, std::nan(""), std::numeric_limits<DATE>::infinity()}) {
        EXPECT_TRUE(Add({time, {{L"a", MakeInt(1)}}}));

        EXPECT_EQ(Host().Errors().back(), expected) << time;
    }
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures) + 3);
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(NodeMetricsConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto node = MakeNode({kSampleTime, {{L"a", MakeInt(1)}, {L"b", MakeText(L"text")}, {L"c", MakeDouble(0.5)}}});
    bool isAnyBuilt = false;

    FailEachJniCall(
        [&] {
            isAnyBuilt = Add(node.Get());
            return Target();
        },
        [&](const FaultRound& round) {
            const long put = CountCalls(round.calls, "BaseSample.putMetric");
            if (!round.isOnce) {
                EXPECT_TRUE(isAnyBuilt || put == 0) << round.failed;
                return;
            }
            const bool isFrame = round.failed == "PushLocalFrame";
            const bool isText = !isFrame && round.errors[0].find(L"Failed to create a new Java string for text.") == 0;
            EXPECT_TRUE(isAnyBuilt) << round.failed;
            EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
            EXPECT_EQ(put, isFrame || isText ? 3 : 2) << round.failed;
            EXPECT_TRUE(!isText || CountCalls(round.calls, "BaseMetric.putStringValue") == 0) << "put without a value";
        });
}

TEST_F(NodeMetricsConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto node = MakeNode({kSampleTime, {{L"a", MakeInt(1)}, {L"b", MakeBool(true)}, {L"c", MakeInt(3)}}});
    MakeThrow(Binding::BaseSample::kClass, "putMetric", kRefusal);
    const auto add = [&](const CJNIConvertor& convertor) {
        Host().Record().ClearCalls();
        ForgetJavaCalls();
        EXPECT_TRUE(convertor.AddMetrics(SharedVM(), Target(), node.Get()));
        return JavaCalls();
    };

    const Names logged = add(MakeConvertor());

    EXPECT_EQ(add(MakeConvertorWithoutLogger()), logged);
    EXPECT_EQ(logged.size(), 7U);
    EXPECT_EQ(Host().Record().CountCalls("Logger*"), 0);
}

TEST_F(NodeMetricsConversionTest, AHundredThousandMetricsArePutInABoundedFrame) {
    EXPECT_TRUE(AddManyMetrics());

    ExpectBoundedFrame();
    EXPECT_EQ(Fake().GetCallCount("CallVoidMethodV"), 2 * kMany);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(NodeMetricsConversionTest, AHundredThousandRefusedMetricsDoNotFillTheFrame) {
    struct Case {
        const char* className;
        const char* method;
        bool isAnyBuilt;
    };
    for (const Case& c : {Case{Binding::BaseSample::kClass, "putMetric", true},
                          Case{Binding::BaseMetric::kClass, "putLongValue", false},
                          Case{Binding::BaseMetric::kClass, "<init>", false}}) {
        MakeThrow(c.className, c.method, "refused");
        Host().ForgetLog();

        EXPECT_EQ(AddManyMetrics(), c.isAnyBuilt) << c.method;

        ExpectBoundedFrame();
        EXPECT_EQ(Host().Errors().size(), static_cast<std::size_t>(kMany)) << c.method;
    }
}

}  // namespace
