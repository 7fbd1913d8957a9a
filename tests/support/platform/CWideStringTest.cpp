#include "CWideString.h"

#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "CHresultException.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "RefusedMemory.h"

namespace {

using namespace std::string_view_literals;

class CWideStringTest : public CLeakCheckedTest {};

TEST_F(CWideStringTest, AnEmptyTextTakesNoMemory) {
    const CWideString text;

    EXPECT_STREQ(text.GetText(), L"");
    EXPECT_EQ(text.GetLength(), 0U);
    EXPECT_EQ(CResourceLedger::Get().Count().heapBlocks, 0);
}

TEST_F(CWideStringTest, HoldsEmbeddedZerosAndClosesWithOne) {
    const CWideString text(L"a\0b"sv);

    EXPECT_EQ(text.GetView(), L"a\0b"sv);
    EXPECT_EQ(text.GetText()[3], L'\0');
}

TEST_F(CWideStringTest, CopiesShareOneBuffer) {
    const CWideString text(L"shared");
    const CWideString copy(text);  // NOLINT(performance-unnecessary-copy-initialization): the copy is the matter

    EXPECT_EQ(copy.GetText(), text.GetText());
    EXPECT_EQ(CResourceLedger::Get().Count().heapBlocks, 1);
}

TEST_F(CWideStringTest, ChangingACopyLeavesTheOriginal) {
    const CWideString text(L"one");
    CWideString copy(text);

    copy.Append(L" two");

    EXPECT_EQ(text.GetView(), L"one");
    EXPECT_EQ(copy.GetView(), L"one two");
}

TEST_F(CWideStringTest, AssigningReleasesWhatWasHeld) {
    CWideString text(L"old");

    text = CWideString(L"new");

    EXPECT_EQ(text.GetView(), L"new");
    EXPECT_EQ(CResourceLedger::Get().Count().heapBlocks, 1);
}

TEST_F(CWideStringTest, AssigningATextToItselfKeepsIt) {
    CWideString text(L"same");
    const CWideString& alias = text;

    text = alias;

    EXPECT_EQ(text.GetView(), L"same");
}

TEST_F(CWideStringTest, AMovedTextLeavesAnEmptyOneBehind) {
    CWideString text(L"moved");
    const CWideString target(std::move(text));

    EXPECT_EQ(target.GetView(), L"moved");
    EXPECT_STREQ(text.GetText(), L"");  // NOLINT(bugprone-use-after-move): what is left is the claim
}

TEST_F(CWideStringTest, AppendsAPartOfItself) {
    CWideString text(L"ab");

    for (int i = 0; i < 4; ++i) {
        text.Append(text.GetView());
    }

    EXPECT_EQ(text.GetView(), L"abababababababababababababababab");
}

TEST_F(CWideStringTest, GrowsPieceByPieceToAMegabyte) {
    CWideString text;
    for (int i = 0; i < 100'000; ++i) {
        text.Append(L"0123456789");
    }

    EXPECT_EQ(text.GetLength(), 1'000'000U);
    EXPECT_EQ(text.GetView().substr(999'990), L"0123456789");
}

TEST_F(CWideStringTest, FormatsWideTextsForPercentS) {
    EXPECT_EQ(CWideString::Format(L"Failed for %s.  %s", L"\u00e9\u4e2d", L"x").GetView(),
              L"Failed for \u00e9\u4e2d.  x");
}

TEST_F(CWideStringTest, FormatsAResultAsEightLowerCaseDigits) {
    EXPECT_EQ(CWideString::Format(L"  Error code 0x%08lx.", E_UNEXPECTED).GetView(), L"  Error code 0x8000ffff.");
}

TEST_F(CWideStringTest, FormatsATextOfAMegabyte) {
    const std::wstring argument(1'000'000, L'y');

    const CWideString text = CWideString::Format(L"<%s>", argument.c_str());

    EXPECT_EQ(text.GetView(), L"<" + argument + L">");
}

TEST_F(CWideStringTest, FormatsTextsOfAnyLengthWhole) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::wstring argument(length, L'y');

        const CWideString text = CWideString::Format(L"<%s>", argument.c_str());

        ASSERT_EQ(text.GetView(), L"<" + argument + L">") << length;
        ASSERT_EQ(text.GetText()[length + 2], L'\0') << length;
    }
}

TEST_F(CWideStringTest, DirectivesInAnArgumentStayAsTheyAre) {
    EXPECT_EQ(CWideString::Format(L"to %s", L"%s%n%5000d").GetView(), L"to %s%n%5000d");
}

TEST_F(CWideStringTest, FormattingToNothingGivesAnEmptyText) {
    EXPECT_TRUE(CWideString::Format(L"%s", L"").IsEmpty());
}

TEST_F(CWideStringTest, FindsAPartWithItsLetterCase) {
    const CWideString text(L"java.rmi.ConnectException: refused");

    EXPECT_TRUE(text.Contains(L"rmi.Connect"));
    EXPECT_FALSE(text.Contains(L"RMI.Connect"));
}

TEST_F(CWideStringTest, AMissingStringManagerIsThrownAsAFailure) {
    try {
        const CWideString text(L"text", nullptr);
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), E_FAIL);
    }
}

TEST_F(CWideStringTest, ExhaustedMemoryLeavesTheTextAsItWas) {
    CWideString text(L"kept");
    {
        const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));
        try {
            text.Append(L" and more");
            FAIL() << "nothing was thrown";
        } catch (const CHresultException& exception) {
            EXPECT_EQ(exception.GetResult(), E_OUTOFMEMORY);
        }
    }

    EXPECT_EQ(text.GetView(), L"kept");
}

TEST_F(CWideStringTest, ThreadsMayCopyAndDropOneSharedBuffer) {
    const CWideString text(L"shared by all");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = text] {
            for (int round = 0; round < 10'000; ++round) {
                CWideString mine(copy);
                mine.Append(L"!");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();

    EXPECT_EQ(text.GetView(), L"shared by all");
    EXPECT_EQ(CResourceLedger::Get().Count().heapBlocks, 1);
}

}  // namespace
