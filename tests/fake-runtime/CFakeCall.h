#pragma once

#include <jni.h>

#include <memory>
#include <mutex>
#include <string>

#include "FakeFunction.h"
#include "FakeState.h"

/// The exception that an ordered fault leaves behind.
struct FakeFaultException {
    const char* className = kOutOfMemoryError;
    const char* detail = "injected";
};

/// One call of a function of the JNIEnv table: counts it, looks whether JNI allows it and whether it was ordered to
/// fail, and holds the state's lock to its end.
class CFakeCall {
public:
    CFakeCall(JNIEnv* env, const FakeFunction& function, const FakeFaultException& onFault = {});

    CFakeCall(const CFakeCall&) = delete;
    CFakeCall& operator=(const CFakeCall&) = delete;

    /// Whether the call is to do its work; otherwise it returns null, 0 or GetErrorCode() at once.
    [[nodiscard]] bool MayRun() const noexcept { return m_mayRun; }
    /// That of an ordered fault, else 0.
    [[nodiscard]] jint GetErrorCode() const noexcept { return m_errorCode; }

    [[nodiscard]] FakeState& State() noexcept { return m_state; }
    [[nodiscard]] CFakeEnv& Env() noexcept { return m_env; }
    [[nodiscard]] const FakeFunction& Function() const noexcept { return m_function; }

    void ReportMisuse(const std::string& what);

    /// The object of a reference. Null for null and for a bad reference; `isGood` tells which, the misuse being
    /// reported.
    [[nodiscard]] FakeObjectPtr ResolveOrNull(jobject reference, bool& isGood);
    /// The object of a reference that may not be null; null when it is or is bad, which is reported then.
    [[nodiscard]] FakeObjectPtr Resolve(jobject reference);
    /// The same for an object of one kind; `otherwise` is the misuse when it is of another ("not a string").
    template <typename T>
    [[nodiscard]] std::shared_ptr<T> ResolveAs(jobject reference, const char* otherwise) {
        const FakeObjectPtr object = Resolve(reference);
        auto typed = std::dynamic_pointer_cast<T>(object);
        if (object && !typed) {
            ReportMisuse(otherwise);
        }
        return typed;
    }
    /// False, reported, for a null address.
    [[nodiscard]] bool IsGiven(const void* argument);

    template <typename T = jobject>
    [[nodiscard]] T MakeLocal(const FakeObjectPtr& object) {
        return static_cast<T>(m_state.references.MakeLocal(m_env.locals, object));
    }

private:
    /// Why JNI does not allow the call; empty when it does.
    [[nodiscard]] std::string FindBreach() const;

    FakeState& m_state;
    const std::lock_guard<std::mutex> m_lock;
    CFakeEnv& m_env;
    const FakeFunction& m_function;
    bool m_mayRun = false;
    jint m_errorCode = 0;
};

constexpr char kNotAClass[] = "not a class";
constexpr char kNotAString[] = "not a string";
constexpr char kNotAnArray[] = "not an array";
constexpr char kNotAThrowable[] = "not a throwable";
