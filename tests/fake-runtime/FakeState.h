#pragma once

#include <mutex>

#include "CFakeBehaviour.h"
#include "CFakeClasses.h"
#include "CFakeFaults.h"
#include "CFakeMachines.h"
#include "CFakePins.h"
#include "CFakeRecord.h"
#include "CFakeReferences.h"
#include "CFakeThreads.h"

/// All that the fake runtime knows. `mutex` guards the rest; each JNI call holds it from start to end, and none calls
/// out.
struct FakeState {
    std::mutex mutex;
    CFakeRecord record;
    CFakeFaults faults;
    CFakeBehaviour behaviour;
    CFakeClasses classes;
    CFakeReferences references;
    CFakePins pins;
    CFakeThreads threads;
    CFakeMachines machines;

    void Reset();
    void Throw(CFakeEnv& env, const FakeExceptionOrder& order);
    /// An exception of the runtime's own: "java.lang.NoSuchMethodError: put".
    void Throw(CFakeEnv& env, const char* className, const std::string& detail);
};

/// It is never freed: code that still calls in while the process ends finds it.
[[nodiscard]] FakeState& GetFakeState();
