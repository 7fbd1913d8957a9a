#include "CConversionBuffer.h"

#include <string>

#include "CHresultException.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "RefusedMemory.h"

namespace {

using namespace std::string_view_literals;

class CConversionBufferTest : public CLeakCheckedTest {};

long HeapBlocks() {
    return CResourceLedger::Get().Count().heapBlocks;
}

TEST_F(CConversionBufferTest, ANullTextStaysNull) {
    const CWideCopy wide(nullptr);
    const CWideFromNarrow fromNarrow(static_cast<const char*>(nullptr));

    EXPECT_EQ(wide.Get(), nullptr);
    EXPECT_EQ(fromNarrow.Get(), nullptr);
    EXPECT_TRUE(wide.GetView().empty());
}

TEST_F(CConversionBufferTest, AnEmptyTextIsNotNull) {
    const CWideCopy wide(L"");
    const CWideFromNarrow fromNarrow("");
    const CNarrowFromWide fromWide(L"");

    EXPECT_STREQ(wide.Get(), L"");
    EXPECT_STREQ(fromNarrow.Get(), L"");
    EXPECT_STREQ(fromWide.Get(), "");
}

TEST_F(CConversionBufferTest, AHundredAndTwentySevenCharactersNeedNoHeap) {
    const std::wstring text(127, L'x');
    const CWideCopy copy(text.c_str());

    EXPECT_EQ(copy.Get(), text);
    EXPECT_EQ(HeapBlocks(), 0);
}

TEST_F(CConversionBufferTest, AHundredAndTwentyEightCharactersLieOnTheHeap) {
    const std::wstring text(128, L'x');
    const CWideCopy copy(text.c_str());

    EXPECT_EQ(copy.Get(), text);
    EXPECT_EQ(HeapBlocks(), 1);
}

TEST_F(CConversionBufferTest, ACopyIsPrivate) {
    wchar_t text[] = L"before";
    const CWideCopy copy(text);

    text[0] = L'X';

    EXPECT_STREQ(copy.Get(), L"before");
}

TEST_F(CConversionBufferTest, NarrowTextsAreReadInTheThreadsCodePage) {
    // Code page 1252, which is the tests' own: 0x80 is the euro sign.
    const CWideFromNarrow wide("\x80\xE9");

    EXPECT_STREQ(wide.Get(), L"\u20ac\u00e9");
}

TEST_F(CConversionBufferTest, WideTextsBecomeNarrowInTheThreadsCodePage) {
    const CNarrowFromWide narrow(L"\u20ac\u00e9");

    EXPECT_STREQ(narrow.Get(), "\x80\xE9");
}

TEST_F(CConversionBufferTest, CharactersThatTheCodePageLacksAreLost) {
    const CNarrowFromWide narrow(L"a\u4e2db");

    EXPECT_STREQ(narrow.Get(), "a?b");
}

TEST_F(CConversionBufferTest, ATextMayHoldZeros) {
    const CWideFromNarrow wide("a\0b"sv);

    EXPECT_EQ(wide.GetView(), L"a\0b"sv);
}

TEST_F(CConversionBufferTest, AnotherCodePageMayBeNamed) {
    const CWideFromNarrow wide("\xC3\xA9", CP_UTF8);

    EXPECT_STREQ(wide.Get(), L"\u00e9");
}

TEST_F(CConversionBufferTest, LongTextsConvertBothWays) {
    const std::wstring text(1'000'000, L'\u00e9');
    const CNarrowFromWide narrow(text);
    const CWideFromNarrow wide(narrow.GetView());

    EXPECT_EQ(wide.GetView(), text);
}

TEST_F(CConversionBufferTest, AnUnknownCodePageIsThrownAsTheSystemsError) {
    try {
        const CWideFromNarrow wide("text", 54321);
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER));
    }
}

TEST_F(CConversionBufferTest, ExhaustedMemoryIsThrownAsOutOfMemory) {
    const std::wstring text(500, L'x');
    const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));

    try {
        const CWideCopy copy(text.c_str());
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), E_OUTOFMEMORY);
    }
}

}  // namespace
