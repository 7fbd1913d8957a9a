#include "FakeState.h"

#include "FakeText.h"

FakeState& GetFakeState() {
    static FakeState& state = *new FakeState;
    return state;
}

void FakeState::Reset() {
    threads.DetachAll(references, FakeReferenceEnd::eThreadDetached);
    references.Forget();
    pins.Forget();
    classes.Forget();
    machines.Forget();
    behaviour = CFakeBehaviour();
    faults.Clear();
    record = CFakeRecord();
}

void FakeState::Throw(CFakeEnv& env, const FakeExceptionOrder& order) {
    env.pending = classes.MakeThrowable(order);
}

void FakeState::Throw(CFakeEnv& env, const char* className, const std::string& detail) {
    const std::string description = DottedName(className) + ": " + detail;
    Throw(env, FakeExceptionOrder(className, description, behaviour.GetThrowableFrames()));
}
