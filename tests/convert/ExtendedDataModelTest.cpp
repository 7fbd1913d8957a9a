#include <string>
#include <utility>
#include <vector>

#include "CModelTest.h"
#include "HostTime.h"

namespace {

constexpr DATE kTime = 25570.0;  // 1970-01-02

/// Extended data as the data model, and a Java map, hold it.
class ExtendedDataModelTest : public CModelTest {
protected:
    [[nodiscard]] std::string ConvertMap(std::vector<PropertyData> properties, WalkData walk = {}) {
        PropertyBoxData box;
        box.properties = std::move(properties);
        box.walk = walk;
        return TellMap(ConvertProperties(box));
    }
    [[nodiscard]] std::string ConvertExtended(std::vector<NameValueData> metrics, WalkData walk = {}) {
        return TellSample(ConvertExtendedSample(kTime, std::move(metrics), walk));
    }
    [[nodiscard]] static std::string Sample(const std::string& metrics) {
        return "Sample(time=86400000L, metrics=[" + metrics + "], sessions=[])";
    }
};

std::vector<NameValueData> MakeThreeTexts() {
    return {{L"a", MakeText(L"1")}, {L"b", MakeText(L"2")}, {L"c", MakeText(L"3")}};
}

std::vector<NameValueData> MakeThreeExtended() {
    return {MakeExtendedMetric(L"a", {{L"0", MakeInt(1)}}), MakeExtendedMetric(L"b", {{L"0", MakeInt(2)}}),
            MakeExtendedMetric(L"c", {{L"0", MakeInt(3)}})};
}

TEST_F(ExtendedDataModelTest, AMapHasATextForEachProperty) {
    const auto object = MakePropertyBox(Record(), {});

    const std::string told = ConvertMap({{L"text", MakeText(L"gr\u00fc\u00df \U0001f600")},
                                         {L"number", MakeInt(-5)},
                                         {L"", MakeText(L"of an empty name")},
                                         {std::wstring(L"a\0b", 3), MakeText(std::wstring(L"c\0d", 3))},
                                         {L"empty", MakeEmpty()},
                                         {L"null", MakeNull()},
                                         {L"no text", MakeNullText()},
                                         {L"object", MakeInterface(object.Get())},
                                         {L"error", MakeError(E_FAIL)}});

    EXPECT_EQ(told, R"({""="of an empty name", "a\u0000b"="c\u0000d", "empty"="", "error"="", "no text"="", )"
                    R"("null"="", "number"="-5", "object"="", "text"="gr\u00fc\u00df \ud83d\ude00"})");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, OfAKeyThatComesTwiceTheLaterValueCounts) {
    EXPECT_EQ(ConvertMap({{L"k", MakeText(L"first")}, {L"other", MakeInt(1)}, {L"k", MakeText(L"second")}}),
              R"({"k"="second", "other"="1"})");
    EXPECT_EQ(ConvertMap({{L"k", MakeText(L"first")}, {L"k", MakeNull()}}), R"({"k"=""})");
}

TEST_F(ExtendedDataModelTest, AMapOfManyPropertiesHasThemAll) {
    std::vector<PropertyData> properties;
    std::string expected;
    for (int i = 1000; i < 1500; ++i) {  // all of one width: the order of texts is that of numbers
        properties.push_back({std::to_wstring(i), MakeInt(i)});
        expected += (expected.empty() ? "{\"" : ", \"") + std::to_string(i) + "\"=\"" + std::to_string(i) + '"';
    }

    EXPECT_EQ(ConvertMap(properties), expected + "}");
}

TEST_F(ExtendedDataModelTest, OfSpoiltPropertiesTheOthersAreLeft) {
    WalkData walk;
    EXPECT_EQ(ConvertMap({}), "{}");

    walk.failAt = 2;
    EXPECT_EQ(ConvertMap(MakeThreeTexts(), walk), R"({"a"="1", "b"="2"})");

    walk = {};
    walk.nullNameAt = 1;
    EXPECT_EQ(ConvertMap(MakeThreeTexts(), walk), R"({"a"="1", "c"="3"})");

    walk = {};
    walk.nullItemAt = 1;
    EXPECT_EQ(ConvertMap(MakeThreeTexts(), walk), R"({"a"="1", "b"="", "c"="3"})");

    Record()->LeaveUntouched("INameValueEnumerator::Next", 2);
    EXPECT_EQ(ConvertMap(MakeThreeTexts()), R"({"a"="1", "b"="2", "c"="3"})");

    Record()->Fail("IPropertyBox::get_enumerator", 1, kFailure);
    EXPECT_EQ(ConvertMap(MakeThreeTexts()), "{}");

    Record()->GiveNull("IPropertyBox::get_enumerator");
    EXPECT_EQ(ConvertMap(MakeThreeTexts()), "{}");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, ASampleHasMetricsOfInstancesOfEveryType) {
    const std::string told = ConvertExtended({
        MakeExtendedMetric(L"disk", {{L"C:", MakeInt64(-9223372036854775807)},
                                     {L"D:", MakeFloat(0.1F)},
                                     {L"E:", MakeDouble(-0.0)},
                                     {L"F:", MakeText(L"gr\u00fc\u00df")},
                                     {L"G:", MakeScalar(VT_UI8, 0xFFFFFFFFFFFFFFFF)},
                                     {L"", MakeShort(-1)}}),
        MakeExtendedMetric(L"cpu", {{L"0", MakeUnsigned(4294967295)}, {L"0", MakeScalar(VT_UI2, 65535)}}),
        MakeExtendedMetric(L"nothing", {}),
    });

    EXPECT_EQ(told, Sample(R"("disk"=["C:"=-9223372036854775807L, "D:"=0.10000000149011612, "E:"=-0.0, )"
                           R"("F:"="gr\u00fc\u00df", "G:"=-1L, ""=-1L], )"
                           R"("cpu"=["0"=4294967295L, "0"=65535L], "nothing"=none)"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, WithoutMetricsASampleHasItsTimeAlone) {
    EXPECT_EQ(ConvertExtended({}), Sample(""));
    EXPECT_EQ(TellSample(ConvertExtendedSample(25568.0, {})),
              "Sample(time=1844674320970000L, metrics=[], sessions=[])");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, AValueThatEnumeratesNothingIsAMetricWithoutInstances) {
    LONG referenced = 5;
    const auto box = MakePropertyBox(Record(), {});

    const std::string told = ConvertExtended({
        {L"object", MakeInterface(box.Get())},
        {L"no object", MakeInterface(nullptr)},
        {L"no dispatch", MakeInterface(nullptr, VT_DISPATCH)},
        {L"empty", MakeEmpty()},
        {L"null", MakeNull()},
        {L"number", MakeInt(5)},
        {L"text", MakeText(L"5")},
        {L"reference", MakeScalar(VT_BYREF | VT_I4, reinterpret_cast<ULONG_PTR>(&referenced))},
    });

    EXPECT_EQ(told, Sample(R"("object"=none, "no object"=none, "no dispatch"=none, "empty"=none, "null"=none, )"
                           R"("number"=none, "text"=none, "reference"=none)"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, AnEnumeratorUnderAnyTypeThatHoldsInterfacesIsFound) {
    const auto first = MakeNameValueEnumerator(Record(), "First", {{L"0", MakeInt(1)}, {L"1", MakeInt(2)}});
    const auto second = MakeNameValueEnumerator(Record(), "Second", {{L"0", MakeInt(3)}});
    const auto third = MakeNameValueEnumerator(Record(), "Third", {{L"0", MakeInt(4)}});

    const std::string told = ConvertExtended({
        {L"dispatch", MakeInterface(first.Get(), VT_DISPATCH)},
        {L"empty", MakeScalar(VT_EMPTY, reinterpret_cast<ULONG_PTR>(second.Get()))},
        {L"null", MakeScalar(VT_NULL, reinterpret_cast<ULONG_PTR>(third.Get()))},
    });

    EXPECT_EQ(told, Sample(R"("dispatch"=["0"=1L, "1"=2L], "empty"=["0"=3L], "null"=["0"=4L])"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ExtendedDataModelTest, AnInstanceOfAnInvalidTypeIsLeftOutOfItsMetric) {
    const std::string told = ConvertExtended({
        MakeExtendedMetric(L"some", {{L"0", MakeInt(1)}, {L"1", MakeBool(true)}, {L"2", MakeInt(3)}}),
        MakeExtendedMetric(L"none", {{L"only", MakeDate(kTime)}}),
    });

    EXPECT_EQ(told, Sample(R"("some"=["0"=1L, "2"=3L], "none"=none)"));
    EXPECT_EQ(Host().Errors(), (Texts{L"Invalid type for metric '1'.", L"Invalid type for metric 'only'."}));
}

TEST_F(ExtendedDataModelTest, OfSpoiltMetricsTheOthersAreLeft) {
    struct Case {
        const char* what;
        WalkData walk;
        std::string left;
        Texts errors;
    };
    std::vector<Case> cases(5);
    cases[0] = {"a failure midway", {}, R"("a"=["0"=1L])", {L"Failed to get extended metrics."}};
    cases[0].walk.failAt = 1;
    cases[1] = {"another success midway", {}, R"("a"=["0"=1L])", {}};
    cases[1].walk.failAt = 1;
    cases[1].walk.failure = S_FALSE;
    cases[2] = {"a failure in place of the end",
                {},
                R"("a"=["0"=1L], "b"=["0"=2L], "c"=["0"=3L])",
                {L"Failed to get extended metrics."}};
    cases[2].walk.endResult = E_UNEXPECTED;
    cases[3] = {"a null name", {}, R"("b"=["0"=2L], "c"=["0"=3L])", {}};
    cases[3].walk.nullNameAt = 0;
    cases[4] = {"a null value", {}, R"("a"=["0"=1L], "b"=none, "c"=["0"=3L])", {}};
    cases[4].walk.nullItemAt = 1;
    for (const Case& each : cases) {
        EXPECT_EQ(ConvertExtended(MakeThreeExtended(), each.walk), Sample(each.left)) << each.what;

        EXPECT_EQ(Host().Errors(), each.errors) << each.what;
        Host().ForgetLog();
    }
}

TEST_F(ExtendedDataModelTest, OfSpoiltInstancesTheOthersAreLeft) {
    const std::vector<NameValueData> instances = {{L"0", MakeInt(1)}, {L"1", MakeInt(2)}, {L"2", MakeInt(3)}};
    NameValueData failing = MakeExtendedMetric(L"failing", instances);
    failing.itemsWalk.failAt = 1;
    NameValueData nameless = MakeExtendedMetric(L"nameless", instances);
    nameless.itemsWalk.nullNameAt = 1;
    NameValueData valueless = MakeExtendedMetric(L"valueless", instances);
    valueless.itemsWalk.nullItemAt = 1;

    const std::string told = ConvertExtended({failing, nameless, valueless});

    EXPECT_EQ(told, Sample(R"("failing"=["0"=1L], "nameless"=["0"=1L, "2"=3L], "valueless"=["0"=1L, "2"=3L])"));
    EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric '1'."});
}

TEST_F(ExtendedDataModelTest, WithoutItsTimeASampleIsLost) {
    Record()->Fail("ISampleNode::get_time", 1, kFailure);

    EXPECT_EQ(ConvertExtended(MakeThreeExtended()), "null");

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to get time from sample  " + kFailureText});
}

}  // namespace
