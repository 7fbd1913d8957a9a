#include <deque>
#include <mutex>
#include <string>

#include "FakeState.h"
#include "FakeText.h"

namespace {

const char* GetEntry(const std::deque<std::string>& entries, long index) {
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < entries.size();
    return isThere ? entries[static_cast<std::size_t>(index)].c_str() : nullptr;
}

long SizeOf(const std::deque<std::string>& entries) {
    return static_cast<long>(entries.size());
}

/// The control surface: each operation is one access to the state under its lock.
class CFakeRuntime final : public IFakeRuntime {
public:
    void Reset() override { Locked()->Reset(); }

    void SetCreateResult(jint result) override { Locked()->machines.createResult = result; }
    void SetCreateGivesNoMachine(bool givesNone) override { Locked()->machines.givesNoMachine = givesNone; }
    long GetMachinesAlive() override { return Locked()->machines.GetAlive() ? 1 : 0; }
    long GetOptionCount() override { return SizeOf(Locked()->machines.options); }
    const char* GetOption(long index) override { return GetEntry(Locked()->machines.options, index); }
    jint GetRequestedVersion() override { return Locked()->machines.requestedVersion; }
    bool GetIgnoreUnrecognized() override { return Locked()->machines.ignoreUnrecognized; }
    bool WasOptionsPointerNull() override { return Locked()->machines.wasOptionsPointerNull; }

    void RemoveClass(const char* className) override { Locked()->behaviour.RemoveClass(className); }
    void RemoveMethod(const char* className, const char* name, const char* signature) override {
        Locked()->behaviour.RemoveMethod(className, name, signature);
    }
    void MakeMethodThrow(const char* className, const char* name, const FakeException& exception) override {
        Locked()->behaviour.SetMethod(className, name, {FakeExceptionOrder(exception), std::nullopt});
    }
    void MakeMethodReturnNull(const char* className, const char* name) override {
        Locked()->behaviour.SetMethod(className, name, {std::nullopt, FakeTextAnswer(nullptr, FakeAnswer::eNull)});
    }
    void MakeMethodReturnText(const char* className, const char* name, const char* text) override {
        Locked()->behaviour.SetMethod(className, name, {std::nullopt, FakeTextAnswer(text, FakeAnswer::eValue)});
    }
    void SetThrowableFrames(long count) override { Locked()->behaviour.SetThrowableFrames(count); }
    bool SetPendingException(const FakeException& exception) override;
    bool IsExceptionPending() override;

    void Fail(const char* function, long nth, long times, FakeFaultMode mode, jint errorCode) override;
    long GetFaultsFired() override { return Locked()->faults.GetFired(); }
    const char* GetFailedFunction() override { return Locked()->faults.GetFailedFunction(); }
    void ClearFaults() override { Locked()->faults.Clear(); }

    long GetLocalReferences() override { return Locked()->references.GetLocals(); }
    long GetPeakLocalReferences() override { return Locked()->references.GetPeakLocals(); }
    long GetLocalReferencesOfThread() override;
    long GetGlobalReferences() override { return Locked()->references.GetGlobals(); }
    long GetPeakGlobalReferences() override { return Locked()->references.GetPeakGlobals(); }
    long GetOpenFrames() override { return Locked()->references.GetOpenFrames(); }
    long GetAttachedThreads() override { return Locked()->threads.GetAttached(); }
    bool IsCreatorAttached() override { return Locked()->threads.IsCreatorAttached(); }
    bool IsThreadAttached() override { return Locked()->threads.GetCurrent() != nullptr; }
    long GetPinnedStrings() override { return Locked()->pins.GetCount(); }
    long GetGlobalReferencesAtDestroy() override { return Locked()->machines.globalsAtDestroy; }
    long GetPinnedStringsAtDestroy() override { return Locked()->machines.pinsAtDestroy; }
    long GetAttachedThreadsAtDestroy() override { return Locked()->machines.threadsAtDestroy; }

    long GetCallCount(const char* function) override;
    void SetCallLogEnabled(bool enabled) override { Locked()->record.SetCallLogEnabled(enabled); }
    long GetCallLogSize() override { return Locked()->record.GetCallLogSize(); }
    const char* GetCallLogEntry(long index) override { return Locked()->record.GetCall(index); }
    long GetMethodLogSize() override { return SizeOf(Locked()->record.GetMethods()); }
    const char* GetMethodLogEntry(long index) override { return GetEntry(Locked()->record.GetMethods(), index); }
    void ForgetMethodLog() override { Locked()->record.ForgetMethods(); }
    long GetMisuseCount() override { return SizeOf(Locked()->record.GetMisuses()); }
    const char* GetMisuse(long index) override { return GetEntry(Locked()->record.GetMisuses(), index); }

private:
    /// The state, locked until the end of the full expression or of the scope.
    class CLockedState {
    public:
        FakeState* operator->() noexcept { return &m_state; }

    private:
        FakeState& m_state = GetFakeState();
        const std::lock_guard<std::mutex> m_lock{m_state.mutex};
    };

    [[nodiscard]] static CLockedState Locked() { return {}; }
};

bool CFakeRuntime::SetPendingException(const FakeException& exception) {
    CLockedState state;
    CFakeEnv* const env = state->threads.GetCurrent();
    if (env) {
        state->Throw(*env, FakeExceptionOrder(exception));
    }
    return env != nullptr;
}

bool CFakeRuntime::IsExceptionPending() {
    CLockedState state;
    const CFakeEnv* const env = state->threads.GetCurrent();
    return env && env->pending;
}

void CFakeRuntime::Fail(const char* function, long nth, long times, FakeFaultMode mode, jint errorCode) {
    CLockedState state;
    if (!state->faults.Order(function, nth, times, {mode, errorCode})) {
        state->record.AddMisuse(std::string("Fail: JNI has no function ") + function);
    }
}

long CFakeRuntime::GetLocalReferencesOfThread() {
    CLockedState state;
    const CFakeEnv* const env = state->threads.GetCurrent();
    return env ? env->locals.count : 0;
}

long CFakeRuntime::GetCallCount(const char* function) {
    const std::size_t place = FindFunction(function);
    return place == kFunctionCount ? -1 : Locked()->record.GetCallCount(place);
}

}  // namespace

extern "C" JNIEXPORT IFakeRuntime* GetFakeRuntime() {
    static CFakeRuntime runtime;
    return &runtime;
}
