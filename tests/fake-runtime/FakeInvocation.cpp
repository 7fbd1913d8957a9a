#include <jni.h>

#include <mutex>

#include "FakeState.h"

namespace {

constexpr char kNullArgument[] = "null argument";

/// One call of a function of the JavaVM table or of the library: like CFakeCall, but with neither an environment nor
/// exceptions.
class CFakeInvocation {
public:
    /// `machine` is the one that is called; null where none is.
    CFakeInvocation(const FakeFunction& function, const JavaVM* machine)
        : m_state(GetFakeState()), m_lock(m_state.mutex), m_function(function) {
        m_state.record.AddCall(function);
        if (machine && machine != m_state.machines.GetAlive()) {
            Refuse("a machine that is destroyed");
            return;
        }
        if (const FakeFault* const fault = m_state.faults.Take(function)) {
            m_result = fault->errorCode;
        } else {
            m_mayRun = true;
        }
    }

    CFakeInvocation(const CFakeInvocation&) = delete;
    CFakeInvocation& operator=(const CFakeInvocation&) = delete;

    [[nodiscard]] bool MayRun() const noexcept { return m_mayRun; }
    /// What to return when the call may not run.
    [[nodiscard]] jint GetResult() const noexcept { return m_result; }
    [[nodiscard]] FakeState& State() noexcept { return m_state; }

    jint Refuse(const char* misuse, jint result = JNI_ERR) {
        m_state.record.AddMisuse(std::string(m_function.name) + ": " + misuse);
        return m_result = result;
    }

private:
    FakeState& m_state;
    const std::lock_guard<std::mutex> m_lock;
    const FakeFunction& m_function;
    bool m_mayRun = false;
    jint m_result = JNI_ERR;
};

jint JNICALL DestroyJavaVM(JavaVM* vm) {
    static constexpr FakeFunction function("DestroyJavaVM");
    CFakeInvocation call(function, vm);
    if (!call.MayRun()) {
        return call.GetResult();
    }
    FakeState& state = call.State();
    const CFakeEnv* const caller = state.threads.GetCurrent();
    state.machines.globalsAtDestroy = state.references.GetGlobals();
    state.machines.pinsAtDestroy = state.pins.GetCount();
    state.machines.threadsAtDestroy = state.threads.GetAttached() - (caller && !caller->isCreator ? 1 : 0);
    state.threads.DetachAll(state.references, FakeReferenceEnd::eMachineDestroyed);
    state.references.ReleaseGlobals();
    state.pins.Forget();
    state.classes.Forget();
    state.machines.Stop();
    return JNI_OK;
}

jint Attach(CFakeInvocation& call, void** env) {
    if (!call.MayRun()) {
        return call.GetResult();
    }
    if (!env) {
        return call.Refuse(kNullArgument);
    }
    CFakeThreads& threads = call.State().threads;
    CFakeEnv* const current = threads.GetCurrent();
    *env = static_cast<JNIEnv*>(current ? current : &threads.Attach(false));
    return JNI_OK;
}

jint JNICALL AttachCurrentThread(JavaVM* vm, void** env, void*) {
    static constexpr FakeFunction function("AttachCurrentThread");
    CFakeInvocation call(function, vm);
    return Attach(call, env);
}

jint JNICALL AttachCurrentThreadAsDaemon(JavaVM* vm, void** env, void*) {
    static constexpr FakeFunction function("AttachCurrentThreadAsDaemon");
    CFakeInvocation call(function, vm);
    return Attach(call, env);
}

jint JNICALL DetachCurrentThread(JavaVM* vm) {
    static constexpr FakeFunction function("DetachCurrentThread");
    CFakeInvocation call(function, vm);
    if (!call.MayRun()) {
        return call.GetResult();
    }
    FakeState& state = call.State();
    CFakeEnv* const current = state.threads.GetCurrent();
    if (!current) {
        return JNI_EDETACHED;
    }
    state.threads.Detach(*current, state.references, FakeReferenceEnd::eThreadDetached);
    return JNI_OK;
}

jint JNICALL GetEnv(JavaVM* vm, void** env, jint version) {
    static constexpr FakeFunction function("GetEnv");
    CFakeInvocation call(function, vm);
    if (!env) {
        return call.Refuse(kNullArgument);
    }
    *env = nullptr;
    if (!call.MayRun()) {
        return call.GetResult();
    }
    CFakeEnv* const current = call.State().threads.GetCurrent();
    if (!current) {
        return JNI_EDETACHED;
    }
    if (!IsKnownJniVersion(version)) {
        return JNI_EVERSION;
    }
    *env = static_cast<JNIEnv*>(current);
    return JNI_OK;
}

constexpr JNIInvokeInterface_ kMachineFunctions = {
    nullptr,
    nullptr,
    nullptr,
    &DestroyJavaVM,
    &AttachCurrentThread,
    &DetachCurrentThread,
    &GetEnv,
    &AttachCurrentThreadAsDaemon,
};

/// What speaks against a machine with these arguments, as JNI's error code.
jint JudgeArguments(CFakeInvocation& call, const JavaVMInitArgs& arguments) {
    CFakeMachines& machines = call.State().machines;
    machines.RememberArguments(arguments);
    if (arguments.nOptions < 0 || (arguments.nOptions > 0 && !arguments.options)) {
        return call.Refuse("no options where some are announced", JNI_EINVAL);
    }
    if (!IsKnownJniVersion(arguments.version)) {
        return JNI_EVERSION;
    }
    return machines.GetAlive() ? JNI_EEXIST : machines.createResult;
}

}  // namespace

extern "C" {

JNIEXPORT jint JNICALL JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
    static constexpr FakeFunction function("JNI_CreateJavaVM");
    CFakeInvocation call(function, nullptr);
    if (!vm || !env || !arguments) {
        return call.Refuse(kNullArgument, JNI_EINVAL);
    }
    const jint result = JudgeArguments(call, *static_cast<const JavaVMInitArgs*>(arguments));
    if (!call.MayRun()) {
        return call.GetResult();
    }
    FakeState& state = call.State();
    if (result != JNI_OK || state.machines.givesNoMachine) {
        return result;
    }
    *vm = state.machines.Start(&kMachineFunctions);
    *env = static_cast<JNIEnv*>(&state.threads.Attach(true));
    return JNI_OK;
}

JNIEXPORT jint JNICALL JNI_GetDefaultJavaVMInitArgs(void* arguments) {
    static constexpr FakeFunction function("JNI_GetDefaultJavaVMInitArgs");
    CFakeInvocation call(function, nullptr);
    if (!call.MayRun()) {
        return call.GetResult();
    }
    return IsKnownJniVersion(static_cast<const JavaVMInitArgs*>(arguments)->version) ? JNI_OK : JNI_EVERSION;
}

JNIEXPORT jint JNICALL JNI_GetCreatedJavaVMs(JavaVM** machines, jsize capacity, jsize* count) {
    static constexpr FakeFunction function("JNI_GetCreatedJavaVMs");
    CFakeInvocation call(function, nullptr);
    if (!call.MayRun()) {
        return call.GetResult();
    }
    JavaVM* const alive = call.State().machines.GetAlive();
    *count = alive ? 1 : 0;
    if (alive && capacity > 0) {
        *machines = alive;
    }
    return JNI_OK;
}

}  // extern "C"
