#include "JavaException.h"

#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "CRealJvmTest.h"
#include "TestClasses.h"

namespace {

class JavaExceptionTest : public CRealJvmTest {
protected:
    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        s_class = Load(Throwing::kClass, Throwing::kRows);
    }
    static void TearDownTestSuite() { s_class.reset(); }

    /// What the exception that `method` throws makes of a text that held "earlier".
    template <typename Method, typename... Arguments>
    static std::wstring Thrown(const Method& method, const Arguments&... arguments) {
        s_class->NewObject(Throwing::kCtor)->CallVoidMethod(method, arguments...);
        std::wstring text(L"earlier");
        EXPECT_TRUE(VM().GetJavaException(text));
        EXPECT_FALSE(Env()->ExceptionCheck());
        return text;
    }

    static inline std::shared_ptr<CJavaClass> s_class;
};

TEST_F(JavaExceptionTest, WithoutOneTheTextIsUntouched) {
    std::wstring text(L"earlier");

    EXPECT_FALSE(VM().GetJavaException(text));
    EXPECT_EQ(text, L"earlier");
}

TEST_F(JavaExceptionTest, TheTextIsTheDescriptionAndALineForEachFrame) {
    EXPECT_EQ(Thrown(Throwing::kWithFrames, 3),
              L"described\r\n\ta.B.m0(B.java:1)\r\n\ta.B.m1(B.java:2)\r\n\ta.B.m2(B.java:3)");
}

TEST_F(JavaExceptionTest, ARealExceptionShowsItsRealFrames) {
    const auto object = s_class->NewObject(Throwing::kCtor);
    const std::wstring frames = Read(object->CallStringMethod(Throwing::kFramesOf, 2));

    const std::wstring text = Thrown(Throwing::kThroughRealFrames, 2);

    EXPECT_EQ(text, L"java.lang.IllegalStateException: deep" + frames);
}

TEST_F(JavaExceptionTest, WithoutFramesTheTextIsTheDescriptionAlone) {
    EXPECT_EQ(Thrown(Throwing::kWithoutFrames), L"described");
}

TEST_F(JavaExceptionTest, ANullTraceLeavesTheDescriptionAlone) {
    EXPECT_EQ(Thrown(Throwing::kWithNullTrace), L"described");
}

TEST_F(JavaExceptionTest, AThrowingTraceLeavesTheDescriptionAlone) {
    EXPECT_EQ(Thrown(Throwing::kWithThrowingTrace), L"described");
}

TEST_F(JavaExceptionTest, ANullFrameIsSkipped) {
    EXPECT_EQ(Thrown(Throwing::kWithNullFrame), L"described\r\n\ta.B.m0(B.java:1)\r\n\ta.B.m2(B.java:3)");
}

TEST_F(JavaExceptionTest, ANullDescriptionKeepsTheEarlierTextInFrontOfTheFrames) {
    EXPECT_EQ(Thrown(Throwing::kWithNullDescription), L"earlier\r\n\ta.B.m0(B.java:1)\r\n\ta.B.m1(B.java:2)");
}

TEST_F(JavaExceptionTest, AThrowingDescriptionKeepsTheEarlierTextInFrontOfTheFrames) {
    EXPECT_EQ(Thrown(Throwing::kWithThrowingDescription), L"earlier\r\n\ta.B.m0(B.java:1)\r\n\ta.B.m1(B.java:2)");
}

TEST_F(JavaExceptionTest, AnEmptyDescriptionReplacesTheEarlierText) {
    EXPECT_EQ(Thrown(Throwing::kWithEmptyDescription), L"\r\n\ta.B.m0(B.java:1)");
}

TEST_F(JavaExceptionTest, TheCauseIsNotWalked) {
    EXPECT_EQ(Thrown(Throwing::kWithCause), L"outer\r\n\ta.B.m0(B.java:1)");
}

TEST_F(JavaExceptionTest, AThousandFramesAreAllThere) {
    const std::wstring text = Thrown(Throwing::kWithFrames, 1000);

    std::wstring expected(L"described");
    for (int i = 0; i < 1000; ++i) {
        expected += L"\r\n\ta.B.m" + std::to_wstring(i) + L"(B.java:" + std::to_wstring(i + 1) + L")";
    }
    EXPECT_EQ(text, expected);
}

TEST_F(JavaExceptionTest, TheDescriptionsBytesAreReadInTheThreadsCodePage) {
    // UTF-8 C3 A9 and E2 82 AC, each byte a character of code page 1252.
    EXPECT_EQ(Thrown(Throwing::kWithDescription, VM().NewString(L"\u00e9 \u20ac")), L"\u00c3\u00a9 \u00e2\u201a\u00ac");
}

TEST_F(JavaExceptionTest, DirectivesInADescriptionStayAsTheyAre) {
    EXPECT_EQ(Thrown(Throwing::kWithDescription, VM().NewString(L"%s%n%5000d")), L"%s%n%5000d");
}

TEST_F(JavaExceptionTest, ADescriptionOfAMegabyteIsReadWhole) {
    const std::wstring description(1'000'000, L'd');

    EXPECT_EQ(Thrown(Throwing::kWithDescription, VM().NewString(description)), description);
}

TEST_F(JavaExceptionTest, JavaMayBeCalledAgainAfterwards) {
    static_cast<void>(Thrown(Throwing::kWithFrames, 1));

    EXPECT_NE(s_class->NewObject(Throwing::kCtor), nullptr);
    EXPECT_EQ(TakeException(), L"none");
}

}  // namespace
