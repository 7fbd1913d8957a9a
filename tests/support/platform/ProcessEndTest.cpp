#include "ProcessEnd.h"

#include <windows.h>

#include <cstdlib>

#include "CLeakCheckedTest.h"

namespace {

class ProcessEndTest : public CLeakCheckedTest {
protected:
    /// Lies beside this program; see ProcessEndProbe.cpp.
    static constexpr wchar_t kProbe[] = L"process_end_probe.dll";
};

TEST_F(ProcessEndTest, AProcessThatRunsIsNotEnding) {
    EXPECT_FALSE(IsProcessEnding());
}

TEST_F(ProcessEndTest, ALibraryDetachedByTheEndOfTheProcessSeesIt) {
    EXPECT_EXIT(
        {
            LoadLibraryW(kProbe);
            std::exit(3);
        },
        testing::ExitedWithCode(3), "detached: the process ends");
}

TEST_F(ProcessEndTest, ALibraryThatIsUnloadedSeesTheProcessGoOn) {
    EXPECT_EXIT(
        {
            FreeLibrary(LoadLibraryW(kProbe));
            TerminateProcess(GetCurrentProcess(), 3);
        },
        testing::ExitedWithCode(3), "detached: the process goes on");
}

}  // namespace
