#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"
#include "StackObjects.h"

namespace {

constexpr char kParent[] = R"(BaseMetric.<init>("cpu"))";
constexpr char kAdded[] = "BaseMetric.addInstance(BaseMetric@instance)";

using ExtendedMetricClassTest = CDataConversionTest;

TEST_F(ExtendedMetricClassTest, WithoutItThereIsNoMetricAndTheHostIsNotAsked) {
    const auto instances = MakeNameValueEnumerator(Host().ShareRecord(), "Instances", {{L"a", MakeInt(1)}});

    EXPECT_EQ(MakeConvertor().GetExtendedMetric(SharedVM(), L"cpu", instances.Get()), nullptr);

    EXPECT_EQ(HostCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

class ExtendedMetricConversionTest : public CDataConversionTest {
protected:
    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::BaseMetric::kClass});
    }

    [[nodiscard]] static std::vector<NameValueData> MakeItems() {
        return {{L"a", MakeInt(1)}, {L"b", MakeText(L"two")}, {L"c", MakeDouble(2.5)}};
    }
    [[nodiscard]] Object Convert(std::vector<NameValueData> items, WalkData walk = {}) {
        const auto instances = MakeNameValueEnumerator(Host().ShareRecord(), "Instances", std::move(items), walk);
        return MakeConvertor().GetExtendedMetric(SharedVM(), L"cpu", instances.Get());
    }
    /// Java's calls for the metric with the instances of MakeItems whose letters are in `added`.
    [[nodiscard]] static Names With(const std::string& added) {
        const Names kValues = {"putLongValue(1)", R"(putStringValue("two"))", "putDoubleValue(2.5)"};
        Names calls = {kParent};
        for (const char letter : added) {
            calls.insert(calls.end(), {std::string("BaseMetric.<init>(\"") + letter + "\")",
                                       "BaseMetric." + kValues[static_cast<std::size_t>(letter - 'a')], kAdded});
        }
        return calls;
    }
};

TEST_F(ExtendedMetricConversionTest, HasAMetricForEachInstance) {
    EXPECT_NE(Convert(MakeItems()), nullptr);

    EXPECT_EQ(JavaCalls(), With("abc"));
    EXPECT_EQ(HostCalls(), Names(4, "Instances: Next"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedMetricConversionTest, WithoutAnEnumeratorItHasNoInstances) {
    EXPECT_NE(MakeConvertor().GetExtendedMetric(SharedVM(), L"cpu", nullptr), nullptr);

    EXPECT_EQ(JavaCalls(), Names{kParent});
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedMetricConversionTest, ANameThatJavaDoesNotTakeIsLoggedAndTheHostIsNotAsked) {
    Fake().Fail("NewString", 1);
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for cpu.  " + kOutOfMemory});
    EXPECT_EQ(HostCalls(), Names{});
}

TEST_F(ExtendedMetricConversionTest, AConstructorThatThrowsIsLoggedAndTheHostIsNotAsked) {
    MakeThrow(Binding::BaseMetric::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java metric object.  no %s%n"});
    EXPECT_EQ(HostCalls(), Names{});
}

TEST_F(ExtendedMetricConversionTest, AnyOtherResultOfNextEndsTheWalkWithoutAWord) {
    for (const HRESULT result : {S_FALSE, E_FAIL, kUntold, static_cast<HRESULT>(0x00040000)}) {
        WalkData walk;
        walk.failAt = 1;
        walk.failure = result;
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeItems(), walk), nullptr);

        EXPECT_EQ(JavaCalls(), With("a")) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedMetricConversionTest, AnInstanceWithoutANameIsNotAdded) {
    WalkData walk;
    walk.nullNameAt = 1;

    EXPECT_NE(Convert(MakeItems(), walk), nullptr);

    EXPECT_EQ(JavaCalls(), With("ac"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedMetricConversionTest, AnInstanceOfAnInvalidTypeIsLoggedAndLeftOut) {
    for (const CVariantValue& value : {MakeBool(true), MakeDate(1), MakeNull(), MakeEmpty(), MakeScalar(VT_I1, 1),
                                       MakeScalar(VT_BYREF | VT_I4, 0)}) {
        std::vector<NameValueData> items = MakeItems();
        items[1].value = value;
        ForgetJavaCalls();

        EXPECT_NE(Convert(items), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Invalid type for metric 'b'.");
        Names expected = With("ac");
        expected.insert(expected.begin() + 4, R"(BaseMetric.<init>("b"))");
        EXPECT_EQ(JavaCalls(), expected) << value.Get().vt;
    }
    EXPECT_EQ(Host().Errors().size(), 6U);
}

TEST_F(ExtendedMetricConversionTest, AnInstanceWhoseSetterThrowsIsLeftOut) {
    MakeThrow(Binding::BaseMetric::kClass, "putStringValue", "refused %s%n");

    EXPECT_NE(Convert(MakeItems()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to set the value for metric 'b'.  refused %s%n"});
    EXPECT_EQ(CountCalls(JavaCalls(), kAdded), 2);
}

TEST_F(ExtendedMetricConversionTest, AnInstanceThatCannotBeAddedIsLoggedAndTheNextGoesOn) {
    MakeThrow(Binding::BaseMetric::kClass, "addInstance", "refused %s%n");
    std::vector<NameValueData> items = MakeItems();
    items[1].name = L"100%s";

    EXPECT_NE(Convert(items), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to add instance 'a' to metric 'cpu'.  refused %s%n",
                                      L"Failed to add instance '100%s' to metric 'cpu'.  refused %s%n",
                                      L"Failed to add instance 'c' to metric 'cpu'.  refused %s%n"}));
    EXPECT_EQ(CountCalls(JavaCalls(), kAdded), 3);
}

TEST_F(ExtendedMetricConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const StackPair pairs[] = {{L"a", MakeInt(1).Detach()}, {L"b", MakeDouble(2.5).Detach()}};
    CStackValues instances(pairs);

    FailEachJniCall(
        [&] {
            instances.Rewind();
            return MakeConvertor().GetExtendedMetric(SharedVM(), L"cpu", &instances);
        },
        [](const FaultRound& round) {
            const long added = CountCalls(round.calls, kAdded);
            if (round.isOnce) {
                const bool isFrame = round.failed == "PushLocalFrame";
                EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
                EXPECT_EQ(added, !round.object ? 0 : isFrame ? 2 : 1) << round.failed;
            }
            EXPECT_TRUE(round.object || added == 0);
        });
}

TEST_F(ExtendedMetricConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    MakeThrow(Binding::BaseMetric::kClass, "addInstance", "refused");
    MakeThrow(Binding::BaseMetric::kClass, "putDoubleValue", "refused");
    EXPECT_NE(Convert(MakeItems()), nullptr);
    const Names logged = JavaCalls();
    ForgetJavaCalls();
    const auto instances = MakeNameValueEnumerator(Host().ShareRecord(), "Instances", MakeItems());

    EXPECT_NE(MakeConvertorWithoutLogger().GetExtendedMetric(SharedVM(), L"cpu", instances.Get()), nullptr);

    EXPECT_EQ(JavaCalls(), logged);
    EXPECT_EQ(Host().Errors().size(), 3U) << "the first one's";
}

TEST_F(ExtendedMetricConversionTest, TenThousandRefusedInstancesDoNotFillTheFrame) {
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::BaseMetric::kClass, "addInstance", "refused");

    EXPECT_NE(Convert(std::vector<NameValueData>(10'000, {L"name", MakeInt(1)})), nullptr);

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Host().Errors().size(), 10'000U);
}

}  // namespace
