#include "CUniqueHandle.h"

#include <vector>

#include "CLeakCheckedTest.h"

namespace {

std::vector<int> g_closed;

struct NumberTraits {
    using Handle = int;
    static Handle None() noexcept { return -1; }
    static void Close(Handle handle) noexcept { g_closed.push_back(handle); }
};
using CNumber = CUniqueHandle<NumberTraits>;

class CUniqueHandleTest : public CLeakCheckedTest {
protected:
    CUniqueHandleTest() { g_closed.clear(); }
};

using Closed = std::vector<int>;

TEST_F(CUniqueHandleTest, ClosesItsHandleAtTheEndOfItsScope) {
    { const CNumber number(7); }

    EXPECT_EQ(g_closed, Closed{7});
}

TEST_F(CUniqueHandleTest, AnEmptyOwnerClosesNothing) {
    { const CNumber number; }

    EXPECT_EQ(g_closed, Closed{});
}

TEST_F(CUniqueHandleTest, ZeroIsAHandleWhereTheTraitsSaySo) {
    { const CNumber number(0); }

    EXPECT_EQ(g_closed, Closed{0});
}

TEST_F(CUniqueHandleTest, ADetachedHandleIsNotClosed) {
    int detached = 0;
    {
        CNumber number(7);
        detached = number.Detach();
        EXPECT_FALSE(number);
    }

    EXPECT_EQ(detached, 7);
    EXPECT_EQ(g_closed, Closed{});
}

TEST_F(CUniqueHandleTest, MovingHandsTheHandleOn) {
    {
        CNumber first(7);
        const CNumber second(std::move(first));
        EXPECT_EQ(second.Get(), 7);
    }

    EXPECT_EQ(g_closed, Closed{7});
}

TEST_F(CUniqueHandleTest, AssigningClosesWhatWasHeld) {
    CNumber number(7);

    number = CNumber(8);

    EXPECT_EQ(g_closed, Closed{7});
    EXPECT_EQ(number.Detach(), 8);
}

TEST_F(CUniqueHandleTest, ResettingToTheHeldHandleKeepsIt) {
    CNumber number(7);

    number.Reset(7);

    EXPECT_EQ(g_closed, Closed{});
    EXPECT_EQ(number.Detach(), 7);
}

TEST_F(CUniqueHandleTest, AnOutParameterIsOwnedOnceReceived) {
    {
        CNumber number;
        *number.Receive() = 9;
    }

    EXPECT_EQ(g_closed, Closed{9});
}

}  // namespace
