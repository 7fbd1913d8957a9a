#pragma once

#include <gtest/gtest.h>

#include "CWatchdog.h"

/// Puts every test under a watchdog's limit, and so the set-up and tear-down of suites and of the whole run. The limit
/// is 120 s for each, or what the environment variable TELVAR_WATCHDOG_SECONDS says.
class CWatchdogListener : public testing::EmptyTestEventListener {
public:
    void OnEnvironmentsSetUpStart(const testing::UnitTest& run) override;
    void OnEnvironmentsSetUpEnd(const testing::UnitTest& run) override;
    void OnTestSuiteStart(const testing::TestSuite& suite) override;
    void OnTestStart(const testing::TestInfo& test) override;
    void OnTestEnd(const testing::TestInfo& test) override;
    void OnTestSuiteEnd(const testing::TestSuite& suite) override;
    void OnEnvironmentsTearDownStart(const testing::UnitTest& run) override;
    void OnEnvironmentsTearDownEnd(const testing::UnitTest& run) override;

private:
    CWatchdog m_watchdog;
};
