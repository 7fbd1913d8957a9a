// A test program whose second test ends it as if all were well.

#include <gtest/gtest.h>
#include <windows.h>

TEST(QuittingVictim, Passes) {}

TEST(QuittingVictim, EndsTheProcess) {
    ExitProcess(0);
}
