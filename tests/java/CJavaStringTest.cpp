#include "CJavaString.h"

#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CRealJvmTest.h"
#include "TestClasses.h"

namespace {

class CJavaStringTest : public CRealJvmTest {
protected:
    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        s_class = Load(Texts::kClass, Texts::kRows);
    }
    static void TearDownTestSuite() { s_class.reset(); }

    /// What GetString makes of the text that a getter of Texts returns; "earlier" is what the output held before.
    static std::wstring ReadFrom(const Texts::Getter& getter, bool expected = true) {
        const auto texts = s_class->NewObject(Texts::kCtor);
        const auto string = texts->CallStringMethod(getter);
        EXPECT_EQ(TakeException(), L"none");
        std::wstring text(L"earlier");
        EXPECT_EQ(string->GetString(text), expected);
        return text;
    }

    static inline std::shared_ptr<CJavaClass> s_class;
};

TEST_F(CJavaStringTest, GetStringReplacesTheOutput) {
    EXPECT_EQ(ReadFrom(Texts::kPlain), L"plain");
}

TEST_F(CJavaStringTest, AnEmptyStringGivesAnEmptyText) {
    EXPECT_EQ(ReadFrom(Texts::kEmpty), L"");
}

TEST_F(CJavaStringTest, AStringWithAZeroGivesTheTextBeforeIt) {
    EXPECT_EQ(ReadFrom(Texts::kWithZero), L"before");
}

TEST_F(CJavaStringTest, CharactersOutsideTheBasicPlaneAreTwoUnits) {
    EXPECT_EQ(ReadFrom(Texts::kOutsideTheBasicPlane), L"\xD83D\xDE00");
}

TEST_F(CJavaStringTest, ALoneSurrogateIsKept) {
    EXPECT_EQ(ReadFrom(Texts::kLoneSurrogate),
              L"a\xD83D"
              L"b");
}

TEST_F(CJavaStringTest, AMegabyteIsReadWhole) {
    EXPECT_EQ(ReadFrom(Texts::kMegabyte), std::wstring(1'000'000, L'x'));
}

TEST_F(CJavaStringTest, JavasNullGivesFalseAndLeavesTheOutput) {
    EXPECT_EQ(ReadFrom(Texts::kNone, false), L"earlier");
}

TEST_F(CJavaStringTest, AGlobalReferenceIsReleasedAsOne) {
    const auto local = VM().NewString(L"global");
    {
        const CJavaString global(VM(), static_cast<jstring>(Env()->NewGlobalRef(local->GetReference())), true);
        std::wstring text;
        EXPECT_TRUE(global.GetString(text));
        EXPECT_EQ(text, L"global");
    }
    // The fixture compares the number of global references.
}

}  // namespace
