#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"
#include "HostTime.h"
#include "StackObjects.h"
#include "SystemHandles.h"

namespace {

constexpr DATE kTime = 25570.0;
constexpr char kSample[] = "BaseSample.<init>(86400000)";
constexpr char kPut[] = "BaseSample.putMetric(BaseMetric@instance)";
constexpr char kAdded[] = "BaseMetric.addInstance(BaseMetric@instance)";

using ExtendedSampleClassTest = CDataConversionTest;

TEST_F(ExtendedSampleClassTest, WithoutItThereIsNoSampleAndTheHostIsNotAsked) {
    const auto node = MakeSampleNode(Host().ShareRecord(), SampleData{});
    const auto metrics = MakeNameValueEnumerator(Host().ShareRecord(), "Metrics", {});

    EXPECT_EQ(MakeConvertor().GetExtendedSample(SharedVM(), node.Get(), metrics.Get()), nullptr);

    EXPECT_EQ(HostCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(ExtendedSampleClassTest, WithoutThatOfMetricsTheSampleHasNone) {
    LoadClasses({Binding::BaseSample::kClass});
    const auto node = MakeSampleNode(Host().ShareRecord(), {kTime});
    const auto metrics = MakeNameValueEnumerator(Host().ShareRecord(), "Metrics", {MakeExtendedMetric(L"cpu", {})});

    EXPECT_NE(MakeConvertor().GetExtendedSample(SharedVM(), node.Get(), metrics.Get()), nullptr);

    EXPECT_EQ(JavaCalls(), Names{kSample});
    EXPECT_EQ(Host().Errors(), Texts{});
}

class ExtendedSampleConversionTest : public CDataConversionTest {
protected:
    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::BaseSample::kClass, Binding::BaseMetric::kClass});
        m_node = MakeSampleNode(Host().ShareRecord(), {kTime});
    }
    void TearDown() override {
        m_node = {};
        CDataConversionTest::TearDown();
    }

    [[nodiscard]] ISampleNode* Node() { return m_node.Get(); }
    [[nodiscard]] static std::vector<MetricData> MakeItems() {
        return {MakeExtendedMetric(L"cpu", {{L"0", MakeInt(10)}, {L"1", MakeInt(20)}}),
                MakeExtendedMetric(L"disk", {{L"C", MakeText(L"full")}}), MakeExtendedMetric(L"none", {})};
    }
    [[nodiscard]] Object Convert(std::vector<MetricData> items, WalkData walk = {}) {
        const auto metrics = MakeNameValueEnumerator(Host().ShareRecord(), "Metrics", std::move(items), walk);
        return MakeConvertor().GetExtendedSample(SharedVM(), Node(), metrics.Get());
    }
    /// Java's calls for a sample with one metric "m" of this value.
    [[nodiscard]] Names CallsForValue(CVariantValue value) {
        ForgetJavaCalls();
        EXPECT_NE(Convert({{L"m", std::move(value)}}), nullptr);
        return JavaCalls();
    }

    static inline const Names s_cpu = {R"(BaseMetric.<init>("cpu"))",
                                       R"(BaseMetric.<init>("0"))",
                                       "BaseMetric.putLongValue(10)",
                                       kAdded,
                                       R"(BaseMetric.<init>("1"))",
                                       "BaseMetric.putLongValue(20)",
                                       kAdded,
                                       kPut};
    static inline const Names s_disk = {R"(BaseMetric.<init>("disk"))", R"(BaseMetric.<init>("C"))",
                                        R"(BaseMetric.putStringValue("full"))", kAdded, kPut};
    static inline const Names s_none = {R"(BaseMetric.<init>("none"))", kPut};
    static inline const Names s_withoutInstances = {kSample, R"(BaseMetric.<init>("m"))", kPut};
    static inline const Names s_withInstance = {
        kSample, R"(BaseMetric.<init>("m"))", R"(BaseMetric.<init>("i"))", "BaseMetric.putLongValue(5)", kAdded, kPut};

    [[nodiscard]] static Names Join(std::initializer_list<Names> parts) {
        Names joined = {kSample};
        for (const Names& part : parts) {
            joined.insert(joined.end(), part.begin(), part.end());
        }
        return joined;
    }

private:
    CHostReference<ISampleNode> m_node;
};

TEST_F(ExtendedSampleConversionTest, HasTheNodesTimeAndItsMetricsWithTheirInstances) {
    EXPECT_NE(Convert(MakeItems()), nullptr);

    EXPECT_EQ(JavaCalls(), Join({s_cpu, s_disk, s_none}));
    EXPECT_EQ(HostCalls(), (Names{"Sample: get_time", "Metrics: Next", "Metrics cpu: Next", "Metrics cpu: Next",
                                  "Metrics cpu: Next", "Metrics: Next", "Metrics disk: Next", "Metrics disk: Next",
                                  "Metrics: Next", "Metrics none: Next", "Metrics: Next"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedSampleConversionTest, WithoutMetricsItHasItsTimeAlone) {
    EXPECT_NE(Convert({}), nullptr);

    EXPECT_EQ(JavaCalls(), Names{kSample});
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedSampleConversionTest, ANullNodeIsNoSampleWithoutAWordOrACall) {
    CStackValues metrics;

    EXPECT_EQ(MakeConvertor().GetExtendedSample(SharedVM(), nullptr, &metrics), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(ExtendedSampleConversionTest, ATimeThatCannotBeHadIsLoggedAndThereIsNoSample) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Sample: get_time", 1, failure);

        EXPECT_EQ(Convert(MakeItems()), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get time from sample  " + RunTogether(failure));
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get time from sample  Error code 0x8abcdef0.");
    EXPECT_EQ(JavaCalls(), Names{});
    EXPECT_EQ(Host().Record().CountCalls("INameValueEnumerator::Next"), 0);
}

TEST_F(ExtendedSampleConversionTest, AConstructorThatThrowsIsLoggedAndTheMetricsAreNotAskedFor) {
    MakeThrow(Binding::BaseSample::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java sample object.  no %s%n"});
    EXPECT_EQ(HostCalls(), Names{"Sample: get_time"});
}

TEST_F(ExtendedSampleConversionTest, AFailureOfNextIsLoggedAndTheSampleStays) {
    for (const HRESULT failure : kFailures) {
        WalkData walk;
        walk.failAt = 1;
        walk.failure = failure;
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeItems(), walk), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get extended metrics.");
        EXPECT_EQ(JavaCalls(), Join({s_cpu}));
    }
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
}

TEST_F(ExtendedSampleConversionTest, NoMetricsAtAllIsAFailureOfThem) {
    EXPECT_NE(MakeConvertor().GetExtendedSample(SharedVM(), Node(), nullptr), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to get extended metrics."});
    EXPECT_EQ(JavaCalls(), Names{kSample});
}

TEST_F(ExtendedSampleConversionTest, TheResultIsWhatEndedTheWalk) {
    const Object sample = Convert({});
    for (const HRESULT result : {S_FALSE, E_FAIL, kUntold, static_cast<HRESULT>(0x00040000)}) {
        WalkData walk;
        walk.endResult = result;
        const auto metrics = MakeNameValueEnumerator(Host().ShareRecord(), "Metrics", MakeItems(), walk);
        ForgetJavaCalls();

        EXPECT_EQ(MakeConvertor().AddExtendedMetrics(SharedVM(), sample, Node(), metrics.Get()), result);

        EXPECT_EQ(CountCalls(JavaCalls(), kPut), 3) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_time"), 1) << "the sample's own";
}

TEST_F(ExtendedSampleConversionTest, EachOfTheThreeMustBeThere) {
    const Object sample = Convert({});
    CStackValues metrics;
    const CJNIConvertor convertor = MakeConvertor();

    EXPECT_EQ(convertor.AddExtendedMetrics(SharedVM(), nullptr, Node(), &metrics), E_POINTER);
    EXPECT_EQ(convertor.AddExtendedMetrics(SharedVM(), sample, nullptr, &metrics), E_POINTER);
    EXPECT_EQ(convertor.AddExtendedMetrics(SharedVM(), sample, Node(), nullptr), E_POINTER);
    EXPECT_EQ(convertor.AddExtendedMetrics(SharedVM(), sample, Node(), &metrics), S_FALSE);
}

TEST_F(ExtendedSampleConversionTest, AMetricWithoutANameIsNotPut) {
    WalkData walk;
    walk.nullNameAt = 1;

    EXPECT_NE(Convert(MakeItems(), walk), nullptr);

    EXPECT_EQ(JavaCalls(), Join({s_cpu, s_none}));
}

// ---- values ---------------------------------------------------------------------------------------------

TEST_F(ExtendedSampleConversionTest, AnInterfaceIsAskedForItsInstancesWhateverItIsHeldAs) {
    const StackPair pairs[] = {{L"i", MakeInt(5).Detach()}};
    CStackValues instances(pairs);
    const auto bits = reinterpret_cast<ULONGLONG>(static_cast<IUnknown*>(&instances));

    EXPECT_EQ(CallsForValue(MakeInterface(&instances)), s_withInstance);
    EXPECT_EQ(CallsForValue(MakeInterface(&instances, VT_DISPATCH)), s_withInstance);
    EXPECT_EQ(CallsForValue(MakeScalar(VT_EMPTY, bits)), s_withInstance);
    EXPECT_EQ(CallsForValue(MakeScalar(VT_NULL, bits)), s_withInstance);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedSampleConversionTest, WhatIsNoInterfaceIsNotTakenForOneAndTheMetricHasNoInstances) {
    const StackPair pairs[] = {{L"i", MakeInt(5).Detach()}};
    CStackValues instances(pairs);
    IUnknown* object = &instances;
    const auto bits = reinterpret_cast<ULONGLONG>(object);
    for (const VARTYPE type : {VT_I4, VT_I8, VT_UI8, VT_R8, VT_DATE, VT_CY, VT_BOOL, VT_ERROR}) {
        EXPECT_EQ(CallsForValue(MakeScalar(type, bits)), s_withoutInstances) << type;
    }
    EXPECT_EQ(CallsForValue(MakeText(L"text")), s_withoutInstances);
    EXPECT_EQ(CallsForValue(MakeScalar(VT_BYREF | VT_UNKNOWN, reinterpret_cast<ULONGLONG>(&object))),
              s_withoutInstances);
    const CSafeArray array(SafeArrayCreateVector(VT_UNKNOWN, 0, 3));
    VARIANT arrayValue{};
    arrayValue.vt = VT_ARRAY | VT_UNKNOWN;
    arrayValue.parray = array.Get();
    EXPECT_EQ(CallsForValue(CVariantValue::Copy(arrayValue)), s_withoutInstances);

    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedSampleConversionTest, AnInterfaceThatIsNullOrDoesNotAnswerGivesNoInstances) {
    CStackBox box(nullptr);

    EXPECT_EQ(CallsForValue(MakeEmpty()), s_withoutInstances);
    EXPECT_EQ(CallsForValue(MakeInterface(nullptr)), s_withoutInstances);
    EXPECT_EQ(CallsForValue(MakeInterface(nullptr, VT_DISPATCH)), s_withoutInstances);
    EXPECT_EQ(CallsForValue(MakeInterface(&box)), s_withoutInstances);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedSampleConversionTest, AnInstanceOfAnInvalidTypeIsLeftOutAndItsMetricIsStillPut) {
    EXPECT_NE(Convert({MakeExtendedMetric(L"cpu", {{L"0", MakeBool(true)}})}), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric '0'."});
    EXPECT_EQ(JavaCalls(), (Names{kSample, R"(BaseMetric.<init>("cpu"))", R"(BaseMetric.<init>("0"))", kPut}));
}

TEST_F(ExtendedSampleConversionTest, AMetricThatJavaDoesNotTakeIsLoggedAndTheNextGoesOn) {
    Fake().Fail("NewObjectV", 2);

    EXPECT_NE(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java metric object.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), Join({s_disk, s_none}));
}

TEST_F(ExtendedSampleConversionTest, AMetricThatCannotBePutIsLoggedWithTheTimeOfTheNode) {
    MakeThrow(Binding::BaseSample::kClass, "putMetric", "refused %s%n");
    Host().Record().Fail("Sample: get_time", 3, E_FAIL);
    const std::wstring time(FormatSampleTime(kTime).GetView());

    EXPECT_NE(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to add metric 'cpu' to sample '" + time + L"'.  refused %s%n",
                                      L"Failed to add metric 'disk' to sample 'Invalid DateTime'.  refused %s%n",
                                      L"Failed to add metric 'none' to sample '" + time + L"'.  refused %s%n"}));
    EXPECT_EQ(JavaCalls(), Join({s_cpu, s_disk, s_none}));
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_time"), 4);
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(ExtendedSampleConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    // The instances are walked anew in each round: the values live on the stack.
    const StackPair instancePairs[] = {{L"i", MakeInt(5).Detach()}, {L"j", MakeText(L"t").Detach()}};
    CStackValues instances(instancePairs);
    VARIANT value{};
    value.vt = VT_UNKNOWN;
    value.punkVal = &instances;
    const StackPair pairs[] = {{L"m", value}, {L"n", value}};
    CStackValues metrics(pairs);

    FailEachJniCall(
        [&] {
            instances.Rewind();
            metrics.Rewind();
            return MakeConvertor().GetExtendedSample(SharedVM(), Node(), &metrics);
        },
        [](const FaultRound& round) {
            const long put = CountCalls(round.calls, kPut);
            if (round.isOnce) {
                const long added = CountCalls(round.calls, kAdded);
                EXPECT_EQ(round.errors.size(), round.failed == "PushLocalFrame" ? 0U : 1U) << round.failed;
                EXPECT_TRUE(!round.object || put == 1 || (put == 2 && added >= 3)) << round.failed;
            }
            EXPECT_TRUE(round.object || put == 0);
        });
    VariantClear(const_cast<VARIANT*>(&instancePairs[1].value));
}

TEST_F(ExtendedSampleConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    MakeThrow(Binding::BaseSample::kClass, "putMetric", "refused");
    EXPECT_NE(Convert(MakeItems()), nullptr);
    const auto metrics = MakeNameValueEnumerator(Host().ShareRecord(), "Metrics", MakeItems());
    ForgetJavaCalls();

    EXPECT_NE(MakeConvertorWithoutLogger().GetExtendedSample(SharedVM(), Node(), metrics.Get()), nullptr);

    EXPECT_EQ(JavaCalls(), Join({s_cpu, s_disk, s_none}));
    EXPECT_EQ(Host().Errors().size(), 3U) << "the first one's";
}

TEST_F(ExtendedSampleConversionTest, TenThousandRefusedMetricsDoNotFillTheFrame) {
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::BaseSample::kClass, "putMetric", "refused");

    EXPECT_NE(Convert(std::vector<MetricData>(10'000, {L"name"})), nullptr);

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Host().Errors().size(), 10'000U);
}

TEST_F(ExtendedSampleConversionTest, EachAllocationMayFail) {
    const StackPair instancePairs[] = {{L"an instance's name of some length", MakeInt(5).Detach()}};
    CStackValues instances(instancePairs);
    VARIANT value{};
    value.vt = VT_UNKNOWN;
    value.punkVal = &instances;
    const StackPair pairs[] = {{L"a metric's name of some length", value}, {L"another metric's name", value}};
    CStackValues metrics(pairs);
    CStackNode node;
    const CJNIConvertor convertor = MakeConvertor();

    const long thrown = FailEachAllocation([&] {
        instances.Rewind();
        metrics.Rewind();
        return convertor.GetExtendedSample(SharedVM(), &node, &metrics);
    });

    EXPECT_EQ(thrown, 4);
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
