#include "CFakeCall.h"

CFakeCall::CFakeCall(JNIEnv* env, const FakeFunction& function, const FakeFaultException& onFault)
    : m_state(GetFakeState()), m_lock(m_state.mutex), m_env(*static_cast<CFakeEnv*>(env)), m_function(function) {
    m_state.record.AddCall(function);
    const std::string breach = FindBreach();
    if (!breach.empty()) {
        ReportMisuse(breach);
        return;
    }
    const FakeFault* const fault = m_state.faults.Take(function);
    if (!fault) {
        m_mayRun = true;
        return;
    }
    m_errorCode = fault->errorCode;
    if (fault->mode == FakeFaultMode::eWithException && !m_env.pending) {
        m_state.Throw(m_env, onFault.className, onFault.detail ? onFault.detail : "null");
    }
}

std::string CFakeCall::FindBreach() const {
    if (!m_env.isAttached) {
        return "environment of a thread that is detached";
    }
    if (m_state.threads.GetCurrent() != &m_env) {
        return "environment of another thread";
    }
    if (m_env.pending && !m_function.mayRunWithException) {
        return "exception pending: " + m_env.pending->javaClass->name;
    }
    return {};
}

void CFakeCall::ReportMisuse(const std::string& what) {
    m_state.record.AddMisuse(std::string(m_function.name) + ": " + what);
}

FakeObjectPtr CFakeCall::ResolveOrNull(jobject reference, bool& isGood) {
    const FakeResolved resolved = m_state.references.Resolve(m_env.locals, reference);
    isGood = !resolved.problem;
    if (resolved.problem) {
        ReportMisuse(resolved.problem);
    }
    return resolved.object;
}

FakeObjectPtr CFakeCall::Resolve(jobject reference) {
    bool isGood = false;
    FakeObjectPtr object = ResolveOrNull(reference, isGood);
    if (isGood && !object) {
        ReportMisuse("null reference");
    }
    return object;
}

bool CFakeCall::IsGiven(const void* argument) {
    if (!argument) {
        ReportMisuse("null argument");
    }
    return argument != nullptr;
}
