#pragma once

#include <cstdio>
#include <string>

#include "CAllocationFaults.h"
#include "CHostFaults.h"
#include "CSystemFaults.h"
#include "FaultRounds.h"

// An operation with each call failing of each kind of thing that it depends on. `runRound` runs one round; see
// FailEachCall. Each kind prints a row: operation, kind, rounds with the one call failing, rounds with all behind it.

template <typename RunRound>
void SweepFaults(const std::string& operation, CFaultSource& source, const RunRound& runRound) {
    const FaultRoundCounts counts = FailEachCall(source, runRound);
    std::printf("| %s | %s | %ld | %ld |\n", operation.c_str(), source.GetName(), counts.once, counts.forEver);
}

/// A round ends as if nothing had failed, with E_FAIL, or with what the failed call said; as an exception only where
/// that stands for exhausted resources.
inline void ExpectLawfulEnd(const CFaultRound& round, const FaultOutcome& outcome, HRESULT undisturbed) {
    const CFaultSource& source = round.GetSource();
    if (!round.HasFired()) {
        EXPECT_TRUE(!outcome.IsThrown() && outcome.result == undisturbed) << round << ": " << outcome;
    } else if (outcome.IsThrown()) {
        EXPECT_TRUE(source.MayThrow(outcome.result)) << round << ": " << outcome;
    } else {
        EXPECT_TRUE(outcome.result == undisturbed || outcome.result == S_OK || outcome.result == E_FAIL ||
                    source.HasSaid(outcome.result))
            << round << ": " << outcome;
    }
}

/// Every kind but Java.
template <typename RunRound>
void SweepHostAndSystem(const std::string& operation, CHost& host, const RunRound& runRound) {
    CHostFaults hostFaults(host);
    SweepFaults(operation, hostFaults, runRound);
    CAllocationFaults allocationFaults;
    SweepFaults(operation, allocationFaults, runRound);
    for (const SystemGroup group : {SystemGroup::eHeap, SystemGroup::eComMemory, SystemGroup::eSystem}) {
        CSystemFaults systemFaults(group);
        SweepFaults(operation, systemFaults, runRound);
    }
}
