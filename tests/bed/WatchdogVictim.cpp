#include <gtest/gtest.h>

#include <windows.h>

#include <mutex>
#include <thread>

// A test that never ends, for CheckWatchdog.cmake, which looks for the names of the two functions in the stacks.

namespace {

std::mutex lock;

[[gnu::noinline]] void HoldTheLockForEver() {
    const std::lock_guard<std::mutex> guard(lock);
    for (;;) {
        Sleep(1000);
    }
}

[[gnu::noinline]] void HangForEver() {
    std::thread holder(HoldTheLockForEver);
    holder.join();
}

}  // namespace

TEST(WatchdogVictim, HangsInsideALock) {
    HangForEver();

    FAIL() << "never reached";
}
