#pragma once

#include <windows.h>

#include <jni.h>

#include <memory>
#include <vector>

#include "CFakeReferences.h"

/// The environment of one attached thread. It stays in memory for good, so that its use after the thread was detached
/// is noticed and does no harm.
struct CFakeEnv : JNIEnv_ {
    FakeLocals locals;
    std::shared_ptr<FakeThrowable> pending;
    bool isAttached = false;
    bool isCreator = false;
};

/// Which threads are attached.
class CFakeThreads {
public:
    /// Takes one of the process's slots for thread-local values: other than a thread's ID, a value there is not taken
    /// for that of an earlier thread which ended attached.
    CFakeThreads() noexcept : m_slot(TlsAlloc()) {}

    CFakeThreads(const CFakeThreads&) = delete;
    CFakeThreads& operator=(const CFakeThreads&) = delete;

    /// The calling thread's environment; null when it is not attached.
    [[nodiscard]] CFakeEnv* GetCurrent() const noexcept;
    /// Gives the calling thread, which has none, an environment.
    [[nodiscard]] CFakeEnv& Attach(bool isCreator);
    /// Ends an environment and its references.
    void Detach(CFakeEnv& env, CFakeReferences& references, FakeReferenceEnd end);
    void DetachAll(CFakeReferences& references, FakeReferenceEnd end);

    /// Threads attached without the creator.
    [[nodiscard]] long GetAttached() const noexcept { return m_attached; }
    [[nodiscard]] bool IsCreatorAttached() const noexcept { return m_isCreatorAttached; }

private:
    const DWORD m_slot;
    std::vector<std::unique_ptr<CFakeEnv>> m_envs;  // since the library was loaded
    std::vector<CFakeEnv*> m_attachedEnvs;
    long m_attached = 0;
    bool m_isCreatorAttached = false;
};
