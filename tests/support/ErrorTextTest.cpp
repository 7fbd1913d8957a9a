#include "ErrorText.h"

#include "CLeakCheckedTest.h"

namespace {

class ErrorTextTest : public CLeakCheckedTest {
protected:
    /// What the system says of a code, whatever its language and version.
    static std::wstring SystemText(HRESULT result) {
        wchar_t text[1024] = L"";
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(result),
                       MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, 1024, nullptr);
        return text;
    }
};

constexpr HRESULT kKnown = E_FAIL;
constexpr auto kUnknown = static_cast<HRESULT>(0xA1234567);

TEST_F(ErrorTextTest, AKnownResultIsFollowedByTheSystemsTextWithItsLineBreak) {
    ASSERT_NE(SystemText(kKnown), L"");

    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kKnown, L"Message.").GetView(),
              L"Message.  Error code 0x80004005 -- " + SystemText(kKnown));
}

TEST_F(ErrorTextTest, AWin32ErrorIsFollowedByItsOwnText) {
    const HRESULT result = HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
    ASSERT_NE(SystemText(result), L"");

    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, result, L"Message.").GetView(),
              L"Message.  Error code 0x8007000d -- " + SystemText(result));
}

TEST_F(ErrorTextTest, AResultWithoutTextIsEightLowerCaseDigitsAndAFullStop) {
    ASSERT_EQ(SystemText(kUnknown), L"");

    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kUnknown, L"Message.").GetView(),
              L"Message.  Error code 0xa1234567.");
}

TEST_F(ErrorTextTest, SuccessIsPrintedWithItsZeros) {
    const std::wstring expected =
        SystemText(S_OK).empty() ? L"M  Error code 0x00000000." : L"M  Error code 0x00000000 -- " + SystemText(S_OK);

    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, S_OK, L"M").GetView(), expected);
}

TEST_F(ErrorTextTest, TheOtherFormsLeaveOutBlanksOrWords) {
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eRunTogether, kUnknown, L"M").GetView(), L"MError code 0xa1234567.");
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eRunTogether, kKnown, L"M").GetView(),
              L"MError code 0x80004005 -- " + SystemText(kKnown));
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eBare, kUnknown, L"M").GetView(), L"M0xa1234567.");
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eBare, kKnown, L"M").GetView(),
              L"M0x80004005 -- " + SystemText(kKnown));
}

TEST_F(ErrorTextTest, TheMessagesDirectivesTakeItsArgumentsFirst) {
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kUnknown, L"In '%s' at %d.", L"here", 5).GetView(),
              L"In 'here' at 5.  Error code 0xa1234567.");
}

TEST_F(ErrorTextTest, AMessagesPercentSignIsPassedThroughTheFormatter) {
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kUnknown, L"100%% full.").GetView(),
              L"100% full.  Error code 0xa1234567.");
}

TEST_F(ErrorTextTest, ADirectiveWithoutAnArgumentOfItsOwnTakesTheResult) {
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kUnknown, L"0x%08lx", 0x11223344L).GetView(),
              L"0x11223344  Error code 0xa1234567.");
    EXPECT_EQ(MakeErrorFormat(L"0x%08lx", ErrorTextForm::eSuffix, false).GetView(), L"0x%08lx  Error code 0x%08lx.");
}

TEST_F(ErrorTextTest, DirectivesInAnArgumentStayAsTheyAre) {
    EXPECT_EQ(FormatWithErrorText(ErrorTextForm::eSuffix, kUnknown, L"To %s.", L"%s%n%5000d").GetView(),
              L"To %s%n%5000d.  Error code 0xa1234567.");
}

TEST_F(ErrorTextTest, TheCodeAloneFollowsATextThatIsFormattedAlready) {
    EXPECT_EQ(AppendErrorCode(CWideString(L"100% %s"), kKnown).GetView(), L"100% %s  Error code 0x80004005.");
}

}  // namespace
