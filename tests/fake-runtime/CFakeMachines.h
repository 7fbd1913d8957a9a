#pragma once

#include <jni.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

/// The machines, of which one at most is alive, and what the last one was asked for. Like environments, machines stay
/// in memory for good.
class CFakeMachines {
public:
    jint createResult = JNI_OK;
    bool givesNoMachine = false;

    /// What the last JNI_CreateJavaVM was given.
    std::deque<std::string> options;
    jint requestedVersion = 0;
    bool ignoreUnrecognized = false;
    bool wasOptionsPointerNull = false;

    /// What the last DestroyJavaVM found.
    long globalsAtDestroy = 0;
    long pinsAtDestroy = 0;
    long threadsAtDestroy = 0;

    void RememberArguments(const JavaVMInitArgs& arguments);
    /// A machine whose functions are `functions`; none is alive yet.
    [[nodiscard]] JavaVM* Start(const JNIInvokeInterface_* functions);
    void Stop() noexcept { m_alive = nullptr; }
    /// Null when none is alive.
    [[nodiscard]] JavaVM* GetAlive() const noexcept { return m_alive; }
    /// Back to the defaults; no machine is alive then.
    void Forget();

private:
    std::vector<std::unique_ptr<JavaVM>> m_machines;  // since the library was loaded
    JavaVM* m_alive = nullptr;
};

/// Whether a machine knows this version of JNI.
[[nodiscard]] bool IsKnownJniVersion(jint version) noexcept;
