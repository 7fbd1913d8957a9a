#pragma once

#include <jni.h>

#include <boost/bind/bind.hpp>
#include <memory>
#include <type_traits>
#include <utility>

/// Sole owner of a local JNI reference; move-only. It lives on the stack of the thread that made the reference and dies
/// before the local frame that the reference was made in.
template <typename T>
class CJavaLocalRef {
    static_assert(std::is_convertible_v<T, jobject>, "a JNI reference type");

public:
    CJavaLocalRef() noexcept = default;
    /// Takes `reference`, which may be null, over. `env` is the calling thread's.
    CJavaLocalRef(JNIEnv* env, T reference) noexcept : m_env(env), m_reference(reference) {}
    ~CJavaLocalRef() {
        if (m_reference) {
            m_env->DeleteLocalRef(m_reference);
        }
    }

    CJavaLocalRef(const CJavaLocalRef&) = delete;
    CJavaLocalRef& operator=(const CJavaLocalRef&) = delete;
    CJavaLocalRef(CJavaLocalRef&& other) noexcept : m_env(other.m_env), m_reference(other.Detach()) {}
    CJavaLocalRef& operator=(CJavaLocalRef&& other) noexcept {
        CJavaLocalRef moved(std::move(other));
        std::swap(m_env, moved.m_env);
        std::swap(m_reference, moved.m_reference);
        return *this;
    }

    [[nodiscard]] T Get() const noexcept { return m_reference; }
    explicit operator bool() const noexcept { return m_reference != nullptr; }

    /// Gives the reference away; this owner is empty afterwards.
    [[nodiscard]] T Detach() noexcept { return std::exchange(m_reference, nullptr); }

private:
    JNIEnv* m_env = nullptr;
    T m_reference = nullptr;
};

/// A short-lived local reference with shared ownership, for elements that a walk hands on while it goes through an
/// array; under the same rules of thread and frame as CJavaLocalRef.
using SharedLocalRef = std::shared_ptr<_jobject>;

/// Takes `reference`, which may be null, over. Throws std::bad_alloc, the reference being deleted then.
[[nodiscard]] inline SharedLocalRef AdoptSharedLocalRef(JNIEnv* env, jobject reference) {
    return SharedLocalRef(reference, boost::bind(&JNIEnv::DeleteLocalRef, env, boost::placeholders::_1));
}
