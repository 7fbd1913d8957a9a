#include "LoaderLockRule.h"

#include "CLeakCheckedTest.h"
#include "CLoaderLockScope.h"

namespace {

class LoaderLockRuleTest : public CLeakCheckedTest {};

TEST_F(LoaderLockRuleTest, TheLoaderLockIsSeenByTheThreadThatHoldsIt) {
    EXPECT_FALSE(HasLoaderLock());
    {
        const CLoaderLockScope loaderLock;
        EXPECT_TRUE(HasLoaderLock());
    }
    EXPECT_FALSE(HasLoaderLock());
}

TEST_F(LoaderLockRuleTest, OutsideTheLoaderLockAnyoneMayCallJava) {
    AssertOutsideLoaderLock();
    { const CLoaderLockExemption exemption; }
    AssertOutsideLoaderLock();

    EXPECT_FALSE(HasLoaderLock());
}

TEST_F(LoaderLockRuleTest, AnExemptionHoldsUnderTheLoaderLock) {
    const CLoaderLockScope loaderLock;
    const CLoaderLockExemption exemption;
    { const CLoaderLockExemption another; }

    AssertOutsideLoaderLock();

    EXPECT_TRUE(HasLoaderLock());
}

#ifndef NDEBUG

constexpr char kUnderTheLoaderLock[] = "Java is called under the loader lock";

using LoaderLockRuleDeathTest = LoaderLockRuleTest;

TEST_F(LoaderLockRuleDeathTest, ACallUnderTheLoaderLockEndsTheProcess) {
    EXPECT_EXIT(
        {
            const CLoaderLockScope loaderLock;
            AssertOutsideLoaderLock();
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(LoaderLockRuleDeathTest, AnExemptionEndsWithItsScope) {
    EXPECT_EXIT(
        {
            const CLoaderLockScope loaderLock;
            { const CLoaderLockExemption exemption; }
            AssertOutsideLoaderLock();
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(LoaderLockRuleDeathTest, AnExemptionOutsideTheLoaderLockIsNoneUnderIt) {
    EXPECT_EXIT(
        {
            const CLoaderLockExemption exemption;
            const CLoaderLockScope loaderLock;
            AssertOutsideLoaderLock();
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

#endif

}  // namespace
