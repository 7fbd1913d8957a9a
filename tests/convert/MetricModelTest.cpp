#include <cstring>
#include <string>

#include "CModelTest.h"

namespace {

/// Metrics as the data model holds them: which kind of value, and which value.
class MetricModelTest : public CModelTest {
protected:
    /// What `GetMetric` makes of eight bytes under a type, the type alone deciding how many of them count.
    [[nodiscard]] std::string Convert(VARTYPE type, ULONGLONG bits) {
        return TellMetric(ConvertMetric(L"m", MakeScalar(type, bits)));
    }
    [[nodiscard]] std::string Convert(float value) { return TellMetric(ConvertMetric(L"m", MakeFloat(value))); }
    [[nodiscard]] std::string Convert(double value) { return TellMetric(ConvertMetric(L"m", MakeDouble(value))); }
};

TEST_F(MetricModelTest, EveryWholeNumberIsALongOfItsOwnWidthAndSign) {
    struct Case {
        VARTYPE type;
        ULONGLONG bits;
        const char* value;
    };
    // Above the width there is what a host may leave there.
    const Case cases[] = {
        {VT_I2, 0xDEADBEEFCAFE8000, "-32768L"},
        {VT_I2, 0xDEADBEEFCAFE7FFF, "32767L"},
        {VT_I2, 0xDEADBEEFCAFEFFFF, "-1L"},
        {VT_I2, 0xDEADBEEFCAFE0000, "0L"},
        {VT_I4, 0xDEADBEEF80000000, "-2147483648L"},
        {VT_I4, 0xDEADBEEF7FFFFFFF, "2147483647L"},
        {VT_I4, 0xDEADBEEFFFFFFFFF, "-1L"},
        {VT_I4, 0xDEADBEEF00000000, "0L"},
        {VT_UI2, 0xDEADBEEFCAFE0000, "0L"},
        {VT_UI2, 0xDEADBEEFCAFE8000, "32768L"},
        {VT_UI2, 0xDEADBEEFCAFEFFFF, "65535L"},
        {VT_UI4, 0xDEADBEEF00000000, "0L"},
        {VT_UI4, 0xDEADBEEF80000000, "2147483648L"},
        {VT_UI4, 0xDEADBEEFFFFFFFFF, "4294967295L"},
        {VT_I8, 0x8000000000000000, "-9223372036854775808L"},
        {VT_I8, 0x7FFFFFFFFFFFFFFF, "9223372036854775807L"},
        {VT_I8, 0xFFFFFFFFFFFFFFFF, "-1L"},
        {VT_I8, 0, "0L"},
        {VT_UI8, 0, "0L"},
        {VT_UI8, 0x7FFFFFFFFFFFFFFF, "9223372036854775807L"},
        {VT_UI8, 0x8000000000000000, "-9223372036854775808L"},
        {VT_UI8, 0xFFFFFFFFFFFFFFFF, "-1L"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(Convert(each.type, each.bits), std::string("\"m\"=") + each.value) << each.type;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, AFloatIsTheDoubleOfTheSameValue) {
    EXPECT_EQ(Convert(0.1F), "\"m\"=0.10000000149011612") << "not 0.1";
    EXPECT_EQ(Convert(-1.5F), "\"m\"=-1.5");
    EXPECT_EQ(Convert(0.0F), "\"m\"=0.0");
    EXPECT_EQ(Convert(-0.0F), "\"m\"=-0.0");
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEF7F7FFFFF), "\"m\"=3.4028234663852886E38") << "the greatest";
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEFFF7FFFFF), "\"m\"=-3.4028234663852886E38") << "the least";
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEF00000001), "\"m\"=1.401298464324817E-45") << "the smallest above 0";
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEF7F800000), "\"m\"=Infinity");
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEFFF800000), "\"m\"=-Infinity");
    EXPECT_EQ(Convert(VT_R4, 0xDEADBEEF7FC00000), "\"m\"=NaN");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, ADoubleStaysWhatItIs) {
    EXPECT_EQ(Convert(0.1), "\"m\"=0.1");
    EXPECT_EQ(Convert(0.0), "\"m\"=0.0");
    EXPECT_EQ(Convert(-0.0), "\"m\"=-0.0");
    EXPECT_EQ(Convert(-1.0), "\"m\"=-1.0");
    EXPECT_EQ(Convert(VT_R8, 0x7FEFFFFFFFFFFFFF), "\"m\"=1.7976931348623157E308") << "the greatest";
    EXPECT_EQ(Convert(VT_R8, 0xFFEFFFFFFFFFFFFF), "\"m\"=-1.7976931348623157E308") << "the least";
    EXPECT_EQ(Convert(VT_R8, 1), "\"m\"=4.9E-324") << "the smallest above 0";
    EXPECT_EQ(Convert(VT_R8, 0x7FF0000000000000), "\"m\"=Infinity");
    EXPECT_EQ(Convert(VT_R8, 0xFFF0000000000000), "\"m\"=-Infinity");
    EXPECT_EQ(Convert(VT_R8, 0x7FF8000000000000), "\"m\"=NaN");
    EXPECT_EQ(Convert(VT_R8, 0x7FF0000000000001), "\"m\"=NaN") << "a signalling one";
    EXPECT_EQ(Host().Errors(), Texts{});
}

struct TextCase {
    std::wstring text;
    const char* told;
};

const TextCase kTexts[] = {
    {L"", R"("")"},
    {L"plain", R"("plain")"},
    {L"gr\u00fc\u00df \u65e5\u672c", R"("gr\u00fc\u00df \u65e5\u672c")"},
    {L"\U0001f600", R"("\ud83d\ude00")"},
    {std::wstring(L"a\0b\0", 4), R"("a\u0000b\u0000")"},
    {std::wstring(L"\0", 1), R"("\u0000")"},
    {L"\xd83d", R"("\ud83d")"},
    {L"\xde00\xd83d", R"("\ude00\ud83d")"},
    {L"\xfffe\xffff\xfeff", R"("\ufffe\uffff\ufeff")"},
    {L"\r\n\t\"%s\\", R"("\u000d\u000a\u0009\"%s\\")"},
};

TEST_F(MetricModelTest, ATextArrivesUnitByUnit) {
    for (const TextCase& each : kTexts) {
        EXPECT_EQ(TellMetric(ConvertMetric(L"m", MakeText(each.text))), std::string("\"m\"=") + each.told);
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, ANameArrivesUnitByUnit) {
    for (const TextCase& each : kTexts) {
        EXPECT_EQ(TellMetric(ConvertMetric(each.text, MakeInt(5))), std::string(each.told) + "=5L");
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, ANullTextIsAnEmptyOne) {
    EXPECT_EQ(TellMetric(ConvertMetric(L"m", MakeNullText())), R"("m"="")");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, ATextOfAMegabyteArrivesWhole) {
    std::wstring text(std::size_t{512} * 1024, L'x');
    text.front() = L'<';
    text.back() = L'>';
    for (std::size_t i = 1; i + 1 < text.size(); i += 1000) {
        text[i] = static_cast<wchar_t>(L'A' + i % 26);
    }

    const std::string told = TellMetric(ConvertMetric(L"m", MakeText(text)));

    EXPECT_EQ(told.size(), text.size() + std::strlen(R"("m"="")"));
    EXPECT_TRUE(told == R"("m"=")" + std::string(text.begin(), text.end()) + '"') << "not shown: a megabyte";
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricModelTest, AnyOtherTypeHasNoMetricAndIsNamedInTheLog) {
    LONG referenced = 5;
    const CVariantValue values[] = {
        MakeEmpty(),
        MakeNull(),
        MakeScalar(VT_CY, 10000),
        MakeDate(25570.0),
        MakeBool(true),
        MakeError(DISP_E_PARAMNOTFOUND),
        MakeInterface(nullptr),
        MakeInterface(nullptr, VT_DISPATCH),
        MakeScalar(VT_DECIMAL, 5),
        MakeScalar(VT_I1, 5),
        MakeScalar(VT_UI1, 5),
        MakeScalar(VT_INT, 5),
        MakeScalar(VT_UINT, 5),
        MakeScalar(VT_BYREF | VT_I4, reinterpret_cast<ULONG_PTR>(&referenced)),
        MakeScalar(VT_ARRAY | VT_I4, 0),
        MakeScalar(0x1003, 5),
    };
    for (const CVariantValue& value : values) {
        EXPECT_EQ(TellMetric(ConvertMetric(L"odd", value)), "null") << value.Get().vt;

        EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric 'odd'."}) << value.Get().vt;
        Host().ForgetLog();
    }
}

}  // namespace
