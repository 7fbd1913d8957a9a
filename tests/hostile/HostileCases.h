#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <map>
#include <string>

#include "CRandom.h"

/// The generated cases of one test, from its first to its last or to the first that fails. One of these per test, on
/// the test's thread.
///
/// Each case begins with numbers of its own, made from the seed, the test's name and the case's number alone: it must
/// not depend on the cases before it, so that it can be run by itself. The environment says what is run:
///
///     TELVAR_HOSTILE_SEED=n    other cases
///     TELVAR_HOSTILE_CASES=n   more of them, or fewer
///     TELVAR_HOSTILE_CASE=n    this one alone
///
/// A case that fails, crashes or aborts prints the settings that bring it back. One that hangs is ended by a watchdog,
/// which names the thousand that it is one of.
///
/// At the end the numbers of cases for each outcome are printed. Every outcome named to the constructor has to occur
/// (in a run of the usual number of cases or more): input that is always refused, or never, proves little.
class CHostileCases {
public:
    /// @param outcomes what a case can come to
    /// @param share where the test's cases are dear: only each `share`th is run
    explicit CHostileCases(std::initializer_list<const char*> outcomes, std::uint64_t share = 1);

    CHostileCases(const CHostileCases&) = delete;
    CHostileCases& operator=(const CHostileCases&) = delete;

    /// Calls `oneCase(random)` for each case. It makes an input, compares what the product does with what a model says,
    /// by GoogleTest's assertions, and returns the outcome, one of those named to the constructor.
    template <typename Case>
    void Run(Case oneCase) {
        for (std::uint64_t number = m_first; number < m_end; ++number) {
            Begin(number);
            CRandom random(SeedOf(number));
            try {
                Count(oneCase(random));
            } catch (const std::exception& thrown) {
                ADD_FAILURE() << "thrown: " << thrown.what();
            }
            if (testing::Test::HasFailure()) {
                break;
            }
        }
        End();
    }

    /// How many cases Run makes of them.
    [[nodiscard]] std::uint64_t GetCount() const noexcept { return m_end - m_first; }

private:
    [[nodiscard]] std::uint64_t SeedOf(std::uint64_t number) const noexcept;
    void Begin(std::uint64_t number);
    void Count(const char* outcome);
    void End();

    std::string m_test;
    std::uint64_t m_seed;
    std::uint64_t m_first;
    std::uint64_t m_end;
    bool m_isWhole;
    std::map<std::string, std::uint64_t> m_counts;
};
