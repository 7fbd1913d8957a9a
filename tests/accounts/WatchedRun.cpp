#include "WatchedRun.h"

#include <cstdio>

namespace {

/// What is made once, at the first calls, is there by then.
constexpr int kCallsUntilSettled = 1'000;
constexpr int kCallsUntilRest = 500;

void Repeat(const WatchedRun& run, int calls) {
    for (int made = 1; made <= calls && !testing::Test::HasFatalFailure(); ++made) {
        run.call();
        if (made % kCallsUntilRest == 0) {
            run.rest();
        }
    }
    run.rest();
}

}  // namespace

void ExpectNothingLeftBehind(CAccounts& accounts, const WatchedRun& run) {
    Repeat(run, kCallsUntilSettled);
    accounts.Open();

    Repeat(run, run.calls);

    EXPECT_TRUE(accounts.Close());
    std::printf("%s\n%s\n", accounts.MakeHeading().c_str(), accounts.MakeRow(run.name, run.calls).c_str());
}
