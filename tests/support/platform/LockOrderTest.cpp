#include "LockOrder.h"

#include <optional>

#include "CCriticalSection.h"
#include "CLeakCheckedTest.h"
#include "RunOnNewThread.h"

namespace {

class LockOrderTest : public CLeakCheckedTest {
protected:
    [[nodiscard]] static long CountHeld() { return CResourceLedger::Get().Count().locksHeld; }

    CCriticalSection m_outermost{LockRank::eOutermost};
    CCriticalSection m_otherOutermost{LockRank::eOutermost};
    CCriticalSection m_innermost{LockRank::eInnermost};
    CCriticalSection m_otherInnermost{LockRank::eInnermost};
};

TEST_F(LockOrderTest, AnInnermostLockIsTakenUnderAnOutermostOne) {
    const CCriticalSectionLock outer(m_outermost);
    const CCriticalSectionLock inner(m_innermost);

    EXPECT_EQ(CountHeld(), 2);
}

TEST_F(LockOrderTest, ALockThatTheThreadHoldsIsTakenAgainUnderAnyOther) {
    const CCriticalSectionLock outer(m_outermost);
    const CCriticalSectionLock inner(m_innermost);
    const CCriticalSectionLock outerAgain(m_outermost);
    const CCriticalSectionLock innerAgain(m_innermost);

    EXPECT_EQ(CountHeld(), 4);
}

TEST_F(LockOrderTest, LocksOfOneRankAreTakenOneAfterTheOther) {
    const CCriticalSectionLock outer(m_outermost);
    { const CCriticalSectionLock inner(m_innermost); }
    const CCriticalSectionLock otherInner(m_otherInnermost);

    EXPECT_EQ(CountHeld(), 2);
}

TEST_F(LockOrderTest, WhatOtherThreadsHoldDoesNotCount) {
    const CCriticalSectionLock inner(m_innermost);
    long held = 0;

    RunOnNewThread([&] {
        const CCriticalSectionLock outer(m_outermost);
        const CCriticalSectionLock otherInner(m_otherInnermost);
        held = CountHeld();
    });

    EXPECT_EQ(held, 3);
}

TEST_F(LockOrderTest, ALockThatIsNoMoreDoesNotCount) {
    std::optional<CCriticalSection> first(std::in_place, LockRank::eInnermost);
    std::optional<CCriticalSection> last(std::in_place, LockRank::eInnermost);
    first.reset();
    const CCriticalSectionLock outer(m_outermost);
    const CCriticalSectionLock inner(*last);

    EXPECT_EQ(CountHeld(), 2);
}

#ifdef NDEBUG

TEST_F(LockOrderTest, WithoutAssertionsALockIsNoLargerThanTheSystems) {
    EXPECT_EQ(sizeof(CCriticalSection), sizeof(CRITICAL_SECTION));
}

#else

constexpr char kAgainstTheOrder[] = "a lock is taken against the order of locks";

using LockOrderDeathTest = LockOrderTest;

TEST_F(LockOrderDeathTest, AnOutermostLockUnderAnInnermostOneEndsTheProcess) {
    EXPECT_EXIT(
        {
            const CCriticalSectionLock inner(m_innermost);
            const CCriticalSectionLock outer(m_outermost);
        },
        testing::ExitedWithCode(3), kAgainstTheOrder);
}

TEST_F(LockOrderDeathTest, TwoLocksOfOneRankEndTheProcess) {
    EXPECT_EXIT(
        {
            const CCriticalSectionLock inner(m_innermost);
            const CCriticalSectionLock otherInner(m_otherInnermost);
        },
        testing::ExitedWithCode(3), kAgainstTheOrder);
    EXPECT_EXIT(
        {
            const CCriticalSectionLock outer(m_outermost);
            const CCriticalSectionLock otherOuter(m_otherOutermost);
        },
        testing::ExitedWithCode(3), kAgainstTheOrder);
}

TEST_F(LockOrderDeathTest, ALockThatWasTakenTwiceAndLeftOnceStillCounts) {
    EXPECT_EXIT(
        {
            const CCriticalSectionLock inner(m_innermost);
            { const CCriticalSectionLock innerAgain(m_innermost); }
            const CCriticalSectionLock outer(m_outermost);
        },
        testing::ExitedWithCode(3), kAgainstTheOrder);
}

#endif

}  // namespace
