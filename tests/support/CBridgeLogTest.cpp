#include "CBridgeLog.h"

#include <comdef.h>

#include "CHostedTest.h"
#include "CImportHook.h"
#include "RefusedMemory.h"

namespace {

using Texts = std::vector<std::wstring>;

class CBridgeLogTest : public CHostedTest {};

constexpr auto kUnknown = static_cast<HRESULT>(0xA1234567);

TEST_F(CBridgeLogTest, EachLevelGoesToItsOwnOperation) {
    const CBridgeLog log = MakeLog();

    log.Error(L"Failed for %s.", L"x");
    log.ErrorWithResult(kUnknown, L"Failed for %s.", L"x");
    log.WarningWithCode(E_FAIL, L"Doubtful %d.", 5);
    log.Info(L"Done.");
    log.Verbose(L"Loaded %s.", L"y");

    EXPECT_EQ(Logged(),
              (Texts{L"error: Failed for x.", L"error: Failed for x.  Error code 0xa1234567.",
                     L"warning: Doubtful 5.  Error code 0x80004005.", L"info: Done.", L"verbose 8: Loaded y."}));
}

TEST_F(CBridgeLogTest, AnErrorRunsTogetherWithTheTextOfItsResult) {
    const CBridgeLog log = MakeLog();

    log.ErrorRunTogether(kUnknown, L"Failed for %s", L"%s%n");
    log.ErrorRunTogether(E_ACCESSDENIED, L"Failed for %s", L"x");

    const std::wstring systemText(FindSystemText(E_ACCESSDENIED).Get());
    ASSERT_NE(systemText, L"");
    EXPECT_EQ(Logged(), (Texts{L"error: Failed for %s%nError code 0xa1234567.",
                               L"error: Failed for xError code 0x80070005 -- " + systemText}));
    EXPECT_EQ(Host().Record().GetCallTexts()[0], "Logger: LogError(telvar-rmi, Failed for %s%nError code 0xa1234567.)");
}

TEST_F(CBridgeLogTest, EveryEntryCarriesTheComponentsName) {
    const CBridgeLog log = MakeLog();

    log.Error(L"e");
    log.WarningWithCode(S_OK, L"w");
    log.Info(L"i");
    log.Verbose(L"v");

    EXPECT_EQ(Host().Record().GetCallTexts(),
              (std::vector<std::string>{"Logger: LogError(telvar-rmi, e)",
                                        "Logger: LogWarning(telvar-rmi, w  Error code 0x00000000.)",
                                        "Logger: LogInfo(telvar-rmi, i)", "Logger: LogVerbose(telvar-rmi, 8, v)"}));
}

TEST_F(CBridgeLogTest, TextFromOutsideIsLoggedAsItself) {
    MakeLog().Error(L"To %s.", L"%s%n%5000d");

    EXPECT_EQ(Logged(), Texts{L"error: To %s%n%5000d."});
}

TEST_F(CBridgeLogTest, AMegabyteIsLoggedWhole) {
    const std::wstring text(1'000'000, L'x');

    MakeLog().Error(L"%s", text.c_str());

    EXPECT_EQ(Logged(), Texts{L"error: " + text});
}

TEST_F(CBridgeLogTest, TheLoggersResultIsIgnored) {
    Host().Record().Fail("*", 1, E_UNEXPECTED, -1);

    MakeLog().Error(L"e");

    EXPECT_EQ(Host().Record().CountFiredFaults(), 1);
}

TEST_F(CBridgeLogTest, WithoutALoggerNothingIsLoggedAndNoTextIsMade) {
    const CBridgeLog log;
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseText));

    log.Error(L"e");
    log.ErrorWithResult(E_FAIL, L"e");
    log.ErrorRunTogether(E_FAIL, L"e");
    log.WarningWithCode(E_FAIL, L"w");
    log.Info(L"i");
    log.Verbose(L"v");

    EXPECT_FALSE(log);
    EXPECT_EQ(Logged(), Texts{});
}

TEST_F(CBridgeLogTest, ATextThatFindsNoMemoryIsThrownAsAComError) {
    const CBridgeLog log = MakeLog();
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseText));

    try {
        log.Error(L"e");
        FAIL() << "nothing was thrown";
    } catch (const _com_error& error) {
        EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
    }
    EXPECT_EQ(Logged(), Texts{});
}

}  // namespace
