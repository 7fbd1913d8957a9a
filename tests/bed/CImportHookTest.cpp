#include "CImportHook.h"

#include <stdexcept>

#include "CLeakCheckedTest.h"

namespace {

class CImportHookTest : public CLeakCheckedTest {};

DWORD WINAPI OneTick() {
    return 1;
}
DWORD WINAPI TwoTicks() {
    return 2;
}

/// A call of its own each time: the compiler takes an import for something that never changes, and reads it once per
/// function.
[[gnu::noinline]] DWORD AskForTicks() {
    return GetTickCount();
}

HMODULE Program() {
    return GetModuleHandleW(nullptr);
}

TEST_F(CImportHookTest, CallsGoToTheReplacementAsLongAsTheHookLives) {
    {
        const CImportHook hook(Program(), "GetTickCount", AddressOf(&OneTick));
        EXPECT_EQ(AskForTicks(), 1U);
    }

    EXPECT_GT(AskForTicks(), 2U);
}

TEST_F(CImportHookTest, HooksNest) {
    const CImportHook outer(Program(), "GetTickCount", AddressOf(&OneTick));
    {
        const CImportHook inner(Program(), "GetTickCount", AddressOf(&TwoTicks));
        EXPECT_EQ(AskForTicks(), 2U);
    }

    EXPECT_EQ(AskForTicks(), 1U);
}

TEST_F(CImportHookTest, AFunctionThatIsNotImportedIsRefused) {
    EXPECT_THROW(CImportHook(Program(), "NoSuchFunction", AddressOf(&OneTick)), std::runtime_error);
}

}  // namespace
