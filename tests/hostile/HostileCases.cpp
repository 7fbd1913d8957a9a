#include "HostileCases.h"

#include <windows.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "CWatchdog.h"

namespace {

constexpr std::uint64_t kUsualCases = 100'000;
constexpr std::uint64_t kUsualSeed = 1;

constexpr std::uint64_t kWatchedCases = 1000;
constexpr DWORD kWatchLimitMs = 120'000;

/// The watchdog's threads begin before the first test, whose accounts of the system they would disturb.
CWatchdog g_watchdog;

// The case that is running, for a crash, in which nothing can be looked for any more.
char g_reproduction[200];

void PrintReproduction() noexcept {
    if (g_reproduction[0] != '\0') {
        std::printf("hostile: failed: %s\n", g_reproduction);
    }
}

LONG WINAPI PrintAtCrash(EXCEPTION_POINTERS* /*crash*/) {
    PrintReproduction();
    return EXCEPTION_CONTINUE_SEARCH;
}

void PrintAtAbort(int /*signal*/) {
    PrintReproduction();
}

/// A number from the environment; `usual` where there is none.
std::uint64_t ReadSetting(const char* name, std::uint64_t usual) {
    const char* const text = std::getenv(name);
    return text && *text != '\0' ? std::strtoull(text, nullptr, 10) : usual;
}

std::string NameOfThisTest() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test.test_suite_name()) + "." + test.name();
}

/// As the hash known as FNV-1a has it.
std::uint64_t Hash(const std::string& text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3U;
    }
    return hash;
}

}  // namespace

CHostileCases::CHostileCases(std::initializer_list<const char*> outcomes, std::uint64_t share)
    : m_test(NameOfThisTest()),
      m_seed(ReadSetting("TELVAR_HOSTILE_SEED", kUsualSeed)),
      m_first(0),
      m_end(std::max<std::uint64_t>(ReadSetting("TELVAR_HOSTILE_CASES", kUsualCases) / share, 1)),
      m_isWhole(m_end >= kUsualCases / share) {
    if (std::getenv("TELVAR_HOSTILE_CASE")) {
        m_first = ReadSetting("TELVAR_HOSTILE_CASE", 0);
        m_end = m_first + 1;
        m_isWhole = false;
    }
    for (const char* const outcome : outcomes) {
        m_counts[outcome] = 0;
    }
    SetUnhandledExceptionFilter(&PrintAtCrash);
    std::signal(SIGABRT, &PrintAtAbort);
}

std::uint64_t CHostileCases::SeedOf(std::uint64_t number) const noexcept {
    return CRandom::Mix(CRandom::Mix(m_seed ^ Hash(m_test)) + number);
}

void CHostileCases::Begin(std::uint64_t number) {
    std::snprintf(g_reproduction, sizeof(g_reproduction),
                  "TELVAR_HOSTILE_SEED=%llu TELVAR_HOSTILE_CASE=%llu with --gtest_filter=%s",
                  static_cast<unsigned long long>(m_seed), static_cast<unsigned long long>(number), m_test.c_str());
    if ((number - m_first) % kWatchedCases == 0) {
        g_watchdog.Arm((std::string("a thousand cases from ") + g_reproduction).c_str(), kWatchLimitMs);
    }
}

void CHostileCases::Count(const char* outcome) {
    const auto found = m_counts.find(outcome);
    if (found == m_counts.end()) {
        ADD_FAILURE() << "an outcome that the test does not name: " << outcome;
        return;
    }
    ++found->second;
}

void CHostileCases::End() {
    g_watchdog.Disarm();
    if (testing::Test::HasFailure()) {
        PrintReproduction();
    }
    g_reproduction[0] = '\0';

    std::string line;
    for (const auto& [outcome, count] : m_counts) {
        line += (line.empty() ? "" : ", ") + std::to_string(count) + " " + outcome;
        if (m_isWhole && !testing::Test::HasFailure()) {
            EXPECT_NE(count, 0U) << "no case came to '" << outcome << "'";
        }
    }
    std::printf("hostile: %s: %llu cases: %s\n", m_test.c_str(), static_cast<unsigned long long>(GetCount()),
                line.c_str());
}
