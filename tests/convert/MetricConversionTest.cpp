#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CBstr.h"
#include "CJNIConvertor.h"
#include "CSampleConversionTest.h"

namespace {

constexpr char kMade[] = R"(BaseMetric.<init>("m"))";
constexpr wchar_t kNoValueText[] = L"Failed to create a new Java string for value.  ";

using MetricClassTest = CDataConversionTest;

TEST_F(MetricClassTest, WithoutItThereIsNoMetricAndNotAWord) {
    const CVariantValue value = MakeInt(1);

    EXPECT_EQ(MakeConvertor().GetMetric(SharedVM(), L"m", &value.Get()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

class MetricConversionTest : public CSampleConversionTest {
protected:
    [[nodiscard]] Object Convert(const std::wstring& name, const CVariantValue& value) {
        ForgetJavaCalls();
        return MakeConvertor().GetMetric(SharedVM(), name, &value.Get());
    }
    [[nodiscard]] static std::string PutText(const std::wstring& text) {
        return "BaseMetric.putStringValue(" + Quote(text) + ")";
    }
};

TEST_F(MetricConversionTest, ANullValueIsNoneWithoutAWord) {
    EXPECT_EQ(MakeConvertor().GetMetric(SharedVM(), L"m", nullptr), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(JavaCalls(), Names{});
}

// ---- values ---------------------------------------------------------------------------------------------

TEST_F(MetricConversionTest, IntegersArePutAsTheirNumbersAndUnsigned64BitOnesAsTheirBits) {
    struct Case {
        VARTYPE type;
        std::uint64_t bits;  ///< of the value's eight bytes; those that the type does not have are to be ignored
        const char* value;
    };
    for (const Case& c : {
             Case{VT_I2, 0, "0"},
             Case{VT_I2, 0x7FFF, "32767"},
             Case{VT_I2, 0x8000, "-32768"},
             Case{VT_I2, 0xFFFF, "-1"},
             Case{VT_I2, 0xFFFFFFFFFFFF0001, "1"},
             Case{VT_UI2, 0, "0"},
             Case{VT_UI2, 0x7FFF, "32767"},
             Case{VT_UI2, 0x8000, "32768"},
             Case{VT_UI2, 0xFFFF, "65535"},
             Case{VT_UI2, 0xFFFFFFFFFFFF0001, "1"},
             Case{VT_I4, 0, "0"},
             Case{VT_I4, 0x7FFFFFFF, "2147483647"},
             Case{VT_I4, 0x80000000, "-2147483648"},
             Case{VT_I4, 0xFFFFFFFF, "-1"},
             Case{VT_I4, 0xFFFFFFFF00000001, "1"},
             Case{VT_UI4, 0, "0"},
             Case{VT_UI4, 0x7FFFFFFF, "2147483647"},
             Case{VT_UI4, 0x80000000, "2147483648"},
             Case{VT_UI4, 0xFFFFFFFF, "4294967295"},
             Case{VT_UI4, 0xFFFFFFFF00000001, "1"},
             Case{VT_I8, 0, "0"},
             Case{VT_I8, 0x7FFFFFFFFFFFFFFF, "9223372036854775807"},
             Case{VT_I8, 0x8000000000000000, "-9223372036854775808"},
             Case{VT_I8, 0xFFFFFFFFFFFFFFFF, "-1"},
             Case{VT_I8, 0x0020000000000001, "9007199254740993"},
             Case{VT_UI8, 0, "0"},
             Case{VT_UI8, 0x7FFFFFFFFFFFFFFF, "9223372036854775807"},
             Case{VT_UI8, 0x8000000000000000, "-9223372036854775808"},
             Case{VT_UI8, 0xFFFFFFFFFFFFFFFF, "-1"},
         }) {
        EXPECT_NE(Convert(L"m", MakeScalar(c.type, c.bits)), nullptr) << c.type;

        EXPECT_EQ(JavaCalls(), (Names{kMade, std::string("BaseMetric.putLongValue(") + c.value + ")"})) << c.type;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, AFloatIsPutAsTheDoubleOfTheSameValue) {
    using Limits = std::numeric_limits<float>;
    struct Case {
        float value;
        const char* expected;
    };
    for (const Case& c :
         {Case{0.1F, "0.10000000149011612"}, Case{12.5F, "12.5"}, Case{0.0F, "0"}, Case{-0.0F, "-0"}, Case{-1.0F, "-1"},
          Case{Limits::max(), "3.4028234663852886e+38"}, Case{Limits::lowest(), "-3.4028234663852886e+38"},
          Case{Limits::min(), "1.1754943508222875e-38"}, Case{Limits::denorm_min(), "1.401298464324817e-45"},
          Case{Limits::infinity(), "inf"}, Case{-Limits::infinity(), "-inf"}, Case{Limits::quiet_NaN(), "nan"}}) {
        EXPECT_NE(Convert(L"m", MakeFloat(c.value)), nullptr) << c.value;

        EXPECT_EQ(JavaCalls(), (Names{kMade, std::string("BaseMetric.putDoubleValue(") + c.expected + ")"}));
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, ADoubleIsPutAsItIs) {
    using Limits = std::numeric_limits<double>;
    struct Case {
        double value;
        const char* expected;
    };
    for (const Case& c :
         {Case{0.1, "0.1"}, Case{12.5, "12.5"}, Case{0.0, "0"}, Case{-0.0, "-0"}, Case{-1.0, "-1"},
          Case{Limits::max(), "1.7976931348623157e+308"}, Case{Limits::lowest(), "-1.7976931348623157e+308"},
          Case{Limits::min(), "2.2250738585072014e-308"}, Case{Limits::denorm_min(), "5e-324"},
          Case{Limits::infinity(), "inf"}, Case{-Limits::infinity(), "-inf"}, Case{Limits::quiet_NaN(), "nan"}}) {
        EXPECT_NE(Convert(L"m", MakeDouble(c.value)), nullptr) << c.value;

        EXPECT_EQ(JavaCalls(), (Names{kMade, std::string("BaseMetric.putDoubleValue(") + c.expected + ")"}));
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, ATextIsPutInItsStoredLength) {
    const std::wstring units[] = {L"",
                                  L"plain",
                                  std::wstring(L"a\0b\0", 4),
                                  std::wstring(1, L'\0'),
                                  L"gr\u00fc\u00df \u65e5\u672c",
                                  L"\U0001f600",
                                  std::wstring(1, wchar_t{0xD83D}),
                                  std::wstring(L"x").append(1, wchar_t{0xDE00}).append(L"y"),
                                  L"100%s%n",
                                  std::wstring(std::size_t{1024} * 1024 / sizeof(wchar_t), L'w')};
    for (const std::wstring& text : units) {
        EXPECT_NE(Convert(L"m", MakeText(text)), nullptr);

        EXPECT_EQ(JavaCalls(), (Names{kMade, PutText(text)}));
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, ANullTextIsPutAsTheEmptyOne) {
    EXPECT_NE(Convert(L"m", MakeNullText()), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kMade, R"(BaseMetric.putStringValue(""))"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, ANameIsHandedOnInItsStoredLength) {
    for (const std::wstring& name : {std::wstring(), std::wstring(L"a\0b", 3), std::wstring(L"\u65e5 \U0001f600 %s"),
                                     std::wstring(1, wchar_t{0xDE00})}) {
        EXPECT_NE(Convert(name, MakeInt(-5)), nullptr);

        EXPECT_EQ(JavaCalls(), (Names{"BaseMetric.<init>(" + Quote(name) + ")", "BaseMetric.putLongValue(-5)"}));
    }
}

TEST_F(MetricConversionTest, NineTypesOfAllThatFitInTheFieldHaveASetter) {
    // Every type that says the value is elsewhere finds a text there, not a bad address.
    const CBstr text = CBstr::Make(L"7");
    VARIANT value{};
    value.bstrVal = text.Get();
    const CJNIConvertor convertor = MakeConvertor();
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    std::vector<VARTYPE> taken;

    for (unsigned type = 0; type <= 0xFFFF; ++type) {
        value.vt = static_cast<VARTYPE>(type);
        Host().ForgetLog();
        if (convertor.GetMetric(SharedVM(), L"100%s", &value)) {
            taken.push_back(value.vt);
            EXPECT_EQ(Host().Errors(), Texts{}) << type;
        } else {
            EXPECT_EQ(Host().Errors(), Texts{L"Invalid type for metric '100%s'."}) << type;
        }
    }

    EXPECT_EQ(taken, (std::vector<VARTYPE>{2, 3, 4, 5, 8, 18, 19, 20, 21}));
    EXPECT_EQ(Fake().GetCallCount("NewObjectV"), 0x10000);
    EXPECT_EQ(Fake().GetCallCount("CallVoidMethodV"), 9) << "no setter for a type that is refused";
    EXPECT_EQ(SysStringLen(text.Get()), 1U) << "the caller's";
}

// ---- failures -------------------------------------------------------------------------------------------

TEST_F(MetricConversionTest, ANameThatJavaDoesNotTakeIsShownAndEndsIt) {
    Fake().Fail("NewString", 1);
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(L"100%s", MakeText(L"value")), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for 100%s.  " + kOutOfMemory});
    EXPECT_EQ(Fake().GetCallCount("NewString"), 1);
    EXPECT_EQ(Fake().GetCallCount("NewObjectV"), 0);
}

TEST_F(MetricConversionTest, AConstructorThatThrowsIsLoggedWithItsTextAndItsFrames) {
    const FakeFrame frames[] = {{"orvane.A.a(A.java:1)"}, {"orvane.B.b(B.java:2)"}};
    FakeException exception;
    exception.description = kRefusal;
    exception.frames = frames;
    exception.frameCount = 2;
    Fake().MakeMethodThrow(Binding::BaseMetric::kClass, "<init>", exception);
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(L"m", MakeText(L"value")), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java metric object.  " + s_refused +
                                     L"\r\n\torvane.A.a(A.java:1)\r\n\torvane.B.b(B.java:2)"});
    EXPECT_EQ(JavaCalls(), Names{kMade});
    EXPECT_EQ(Fake().GetCallCount("NewString"), 1) << "the name's alone";
}

TEST_F(MetricConversionTest, AnObjectThatCannotBeMadeOrHeldIsLogged) {
    for (const char* const function : {"NewObjectV", "NewGlobalRef"}) {
        Fake().Fail(function, 1);

        EXPECT_EQ(Convert(L"m", MakeInt(1)), nullptr) << function;

        EXPECT_EQ(Fake().GetFaultsFired(), 1) << function;
        EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java metric object.  " + kOutOfMemory);
    }
    Fake().Fail("NewObjectV", 1, 1, FakeFaultMode::eWithoutException);

    EXPECT_EQ(Convert(L"m", MakeInt(1)), nullptr);

    EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java metric object.  ");
    EXPECT_EQ(Host().Errors().size(), 3U);
    EXPECT_EQ(Fake().GetCallCount("CallVoidMethodV"), 0);
    ExpectKeptLocals(2);
}

TEST_F(MetricConversionTest, ATextThatJavaDoesNotTakeLeavesTheMetricWithoutAValue) {
    Fake().Fail("NewString", 2);
    ExpectKeptLocals(1);

    EXPECT_NE(Convert(L"m", MakeText(L"100%s")), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for 100%s.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), Names{kMade});
    EXPECT_EQ(Fake().GetCallCount("CallVoidMethodV"), 0);
}

TEST_F(MetricConversionTest, AnExceptionOfASettersIsLoggedWithTheNameAndEndsIt) {
    struct Case {
        const char* setter;
        CVariantValue value;
        const char* call;
    };
    for (const Case& c : {Case{"putLongValue", MakeInt(1), "BaseMetric.putLongValue(1)"},
                          Case{"putDoubleValue", MakeFloat(1.5F), "BaseMetric.putDoubleValue(1.5)"},
                          Case{"putStringValue", MakeText(L"t"), R"(BaseMetric.putStringValue("t"))"}}) {
        MakeThrow(Binding::BaseMetric::kClass, c.setter, kRefusal);
        Host().ForgetLog();

        EXPECT_EQ(Convert(L"100%s", c.value), nullptr) << c.setter;

        EXPECT_EQ(Host().Errors(), Texts{L"Failed to set the value for metric '100%s'.  " + s_refused}) << c.setter;
        EXPECT_EQ(JavaCalls(), (Names{R"(BaseMetric.<init>("100%s"))", c.call}));
        EXPECT_FALSE(Fake().IsExceptionPending()) << c.setter;
    }
    ExpectKeptLocals(3);
}

TEST_F(MetricConversionTest, ASetterThatFailsWithoutAnExceptionCountsAsDone) {
    Fake().Fail("CallVoidMethodV", 1, 1, FakeFaultMode::eWithoutException);

    EXPECT_NE(Convert(L"m", MakeInt(1)), nullptr);

    EXPECT_EQ(Fake().GetFaultsFired(), 1);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const CVariantValue values[] = {MakeText(L"value"), MakeInt(1), MakeDouble(0.5)};
    for (const CVariantValue& value : values) {
        FailEachJniCall([&] { return MakeConvertor().GetMetric(SharedVM(), L"m", &value.Get()); },
                        [&](const FaultRound& round) {
                            ASSERT_EQ(round.errors.size(), 1U) << round.failed;
                            const bool lacksText = round.errors[0].find(kNoValueText) == 0;
                            EXPECT_EQ(round.object != nullptr, lacksText) << round.failed;
                            EXPECT_EQ(CountCalls(round.calls, "BaseMetric.put"), 0) << round.failed;
                        });
    }
}

TEST_F(MetricConversionTest, EachAllocationMayFail) {
    const CVariantValue value = MakeText(L"a value that is longer than a short text");
    const std::wstring name = L"a name that is longer than a short text";
    const CJNIConvertor convertor = MakeConvertor();

    const long thrown = FailEachAllocation([&] { return convertor.GetMetric(SharedVM(), name, &value.Get()); });

    EXPECT_EQ(thrown, 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(MetricConversionTest, WithoutALoggerEverythingGoesTheSameWay) {
    const CJNIConvertor convertor = MakeConvertorWithoutLogger();
    const CVariantValue text = MakeText(L"value");
    const CVariantValue invalid = MakeBool(true);

    EXPECT_EQ(convertor.GetMetric(SharedVM(), L"m", &invalid.Get()), nullptr);
    Fake().Fail("NewString", 1);
    EXPECT_EQ(convertor.GetMetric(SharedVM(), L"m", &text.Get()), nullptr);
    Fake().Fail("NewString", 2);
    EXPECT_NE(convertor.GetMetric(SharedVM(), L"m", &text.Get()), nullptr);
    MakeThrow(Binding::BaseMetric::kClass, "putStringValue", kRefusal);
    EXPECT_EQ(convertor.GetMetric(SharedVM(), L"m", &text.Get()), nullptr);

    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(JavaCalls(), (Names{kMade, kMade, kMade, R"(BaseMetric.putStringValue("value"))"}));
    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
    ExpectKeptLocals(3);
}

}  // namespace
