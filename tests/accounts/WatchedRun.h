#pragma once

#include <functional>
#include <string>

#include "CAccounts.h"

/// How many calls of each kind are watched; fewer in the build that checks itself, which is several times slower.
constexpr int kCalls = ACCOUNT_CALLS;

/// The least that one call could leave behind by the smallest blocks there are: 16 bytes of Java's heap, 32 of the
/// process's. What the memory may waver by is a fraction of that, all calls together.
constexpr long long kHeapMarginPerCall = 4;
constexpr long long kMemoryMarginPerCall = 16;

/// One call made over and over.
struct WatchedRun {
    std::string name;            ///< of its row
    int calls;                   ///< that are watched
    std::function<void()> call;  ///< makes one and checks what it came to
    std::function<void()> rest;  ///< what has to be done now and then between the calls
};

/// Prints what was counted as a row of a table. A failed ASSERT in a call ends the run.
void ExpectNothingLeftBehind(CAccounts& accounts, const WatchedRun& run);
