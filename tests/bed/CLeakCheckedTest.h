#pragma once

#include <gtest/gtest.h>

#include "CResourceLedger.h"

/// Base of every fixture: what the program holds of the system after a test is what it held before.
class CLeakCheckedTest : public testing::Test {
protected:
    void SetUp() override { m_expected = CResourceLedger::Get().Count(); }
    void TearDown() override { EXPECT_EQ(CResourceLedger::Get().Count(), m_expected) << "left over by the test"; }

    /// States that something the product does not own keeps `count` more of one kind after this test.
    void ExpectKept(long ResourceCounts::*kind, long count) { m_expected.*kind += count; }

private:
    ResourceCounts m_expected{};
};
