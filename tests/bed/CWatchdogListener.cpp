#include "CWatchdogListener.h"

#include <cstdlib>
#include <string>

namespace {

constexpr DWORD kDefaultLimitSeconds = 120;
constexpr DWORD kMaxLimitSeconds = 24 * 60 * 60;

/// Anything that is not a number of seconds up to a day counts as not set.
DWORD ReadLimitMs() {
    const char* const text = std::getenv("TELVAR_WATCHDOG_SECONDS");
    const unsigned long seconds = text ? std::strtoul(text, nullptr, 10) : 0;
    return (seconds > 0 && seconds <= kMaxLimitSeconds ? seconds : kDefaultLimitSeconds) * 1000;
}

std::string FullName(const testing::TestInfo& test) {
    return std::string(test.test_suite_name()) + "." + test.name();
}

}  // namespace

void CWatchdogListener::OnEnvironmentsSetUpStart(const testing::UnitTest& /*run*/) {
    m_watchdog.Arm("the set-up of the run", ReadLimitMs());
}

void CWatchdogListener::OnEnvironmentsSetUpEnd(const testing::UnitTest& /*run*/) {
    m_watchdog.Disarm();
}

void CWatchdogListener::OnTestSuiteStart(const testing::TestSuite& suite) {
    m_watchdog.Arm(suite.name(), ReadLimitMs());
}

void CWatchdogListener::OnTestStart(const testing::TestInfo& test) {
    m_watchdog.Arm(FullName(test).c_str(), ReadLimitMs());
}

// The suite's name again: what runs until the next test starts or the suite ends is the suite's own.
void CWatchdogListener::OnTestEnd(const testing::TestInfo& test) {
    m_watchdog.Arm(test.test_suite_name(), ReadLimitMs());
}

void CWatchdogListener::OnTestSuiteEnd(const testing::TestSuite& /*suite*/) {
    m_watchdog.Disarm();
}

void CWatchdogListener::OnEnvironmentsTearDownStart(const testing::UnitTest& /*run*/) {
    m_watchdog.Arm("the tear-down of the run", ReadLimitMs());
}

void CWatchdogListener::OnEnvironmentsTearDownEnd(const testing::UnitTest& /*run*/) {
    m_watchdog.Disarm();
}
