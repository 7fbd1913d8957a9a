#include "ProductName.h"

#include <windows.h>

#include "CImportHook.h"
#include "CLeakCheckedTest.h"

namespace {

class ProductNameTest : public CLeakCheckedTest {};

struct Case {
    const wchar_t* commandLine;
    const wchar_t* name;
};

TEST_F(ProductNameTest, TheValueFollowsTheEqualsSignAtOnce) {
    for (const Case& c : {Case{L"host.exe --product=Alpha", L"Alpha"}, Case{L"host.exe --product=Alpha beta", L"Alpha"},
                          Case{L"host.exe --product= Alpha", L""}, Case{L"host.exe --product=", L""},
                          Case{L"host.exe --product=A=B", L"A=B"}}) {
        EXPECT_EQ(ParseProductName(c.commandLine), c.name) << c.commandLine;
    }
}

TEST_F(ProductNameTest, WithoutAnEqualsSignWhiteSpaceIsSkipped) {
    for (const Case& c :
         {Case{L"host.exe --product  Alpha beta", L"Alpha"}, Case{L"host.exe --product \t\r\n\f\bAlpha", L"Alpha"},
          Case{L"host.exe --productAlpha", L"Alpha"}, Case{L"host.exe --product", L""},
          Case{L"host.exe --product  \t", L""}}) {
        EXPECT_EQ(ParseProductName(c.commandLine), c.name) << c.commandLine;
    }
}

TEST_F(ProductNameTest, TheFormWithAnEqualsSignGoesFirstWhereverItStands) {
    EXPECT_EQ(ParseProductName(L"host.exe --product Alpha --product=Beta"), L"Beta");
}

TEST_F(ProductNameTest, EachSeparatorEndsTheName) {
    for (const wchar_t separator : {L' ', L'\t', L'\r', L'\n', L'\f', L'\b'}) {
        EXPECT_EQ(ParseProductName((std::wstring(L"host.exe --product=Alpha") + separator + L"x").c_str()), L"Alpha");
    }
    EXPECT_EQ(ParseProductName(L"host.exe --product=Al\vpha"), L"Al\vpha") << "a vertical tab is none";
}

TEST_F(ProductNameTest, QuotesHoldTheNameTogether) {
    for (const Case& c :
         {Case{L"host.exe --product=\"Alpha beta\" x", L"Alpha beta"},
          Case{L"host.exe --product \"Alpha beta\"", L"Alpha beta"}, Case{L"host.exe --product=\"\"", L""}}) {
        EXPECT_EQ(ParseProductName(c.commandLine), c.name) << c.commandLine;
    }
}

TEST_F(ProductNameTest, AQuoteThatIsNotClosedGivesTheDefaultName) {
    EXPECT_EQ(ParseProductName(L"host.exe --product=\"Alpha beta"), L"Tessaro");
    EXPECT_EQ(ParseProductName(L"\"C:\\host.exe"), L"Tessaro");
}

TEST_F(ProductNameTest, WithoutTheOptionItIsTheCommandLinesFirstToken) {
    for (const Case& c : {Case{L"host.exe -x", L"host.exe"},
                          Case{L"\"C:\\Program Files\\host.exe\" -x", L"C:\\Program Files\\host.exe"},
                          Case{L" host.exe", L""}, Case{L"", L""}, Case{L"host.exe --Product=Alpha", L"host.exe"}}) {
        EXPECT_EQ(ParseProductName(c.commandLine), c.name) << c.commandLine;
    }
}

TEST_F(ProductNameTest, WithoutACommandLineItIsTheDefaultName) {
    EXPECT_EQ(ParseProductName(nullptr), L"Tessaro");
}

TEST_F(ProductNameTest, AnAbsurdlyLongNameIsTakenWhole) {
    const std::wstring name(1'000'000, L'n');

    EXPECT_EQ(ParseProductName((L"host.exe --product=" + name).c_str()), name);
}

const wchar_t* g_commandLine = nullptr;
wchar_t* WINAPI GiveCommandLine() {
    return const_cast<wchar_t*>(g_commandLine);
}

TEST_F(ProductNameTest, TheProcesssCommandLineIsReadAnewOnEveryCall) {
    const CImportHook hook(GetModuleHandleW(nullptr), "GetCommandLineW", AddressOf(&GiveCommandLine));

    g_commandLine = L"host.exe --product=First";
    EXPECT_EQ(ProductName(), L"First");
    g_commandLine = L"host.exe --product=Second";
    EXPECT_EQ(ProductName(), L"Second");
    g_commandLine = nullptr;
    EXPECT_EQ(ProductName(), L"Tessaro");
}

TEST_F(ProductNameTest, TheRealCommandLineIsThatOfTheProcess) {
    EXPECT_EQ(ProductName(), ParseProductName(GetCommandLineW()));
    EXPECT_NE(ProductName().find(L"bridge_tests"), std::wstring::npos) << "the program's own path";
}

}  // namespace
