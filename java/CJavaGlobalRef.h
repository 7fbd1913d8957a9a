#pragma once

#include <jni.h>

#include <type_traits>
#include <utility>

#include "CJavaLocalRef.h"
#include "CJavaVM.h"

/// Sole owner of a global JNI reference; move-only. Releases through the environment of whichever thread drops it, and
/// does so silently not at all where that thread has none or the machine is gone: it never attaches a thread for that.
/// The CJavaVM must outlive it.
template <typename T>
class CJavaGlobalRef {
    static_assert(std::is_convertible_v<T, jobject>, "a JNI reference type");

public:
    CJavaGlobalRef() noexcept = default;
    /// Makes a global reference to what `local` refers to; empty when the machine has none to give. `env` is the
    /// calling thread's.
    CJavaGlobalRef(CJavaVM& vm, JNIEnv* env, const CJavaLocalRef<T>& local) noexcept
        : m_vm(&vm), m_reference(static_cast<T>(env->NewGlobalRef(local.Get()))) {}
    ~CJavaGlobalRef() { Release(); }

    CJavaGlobalRef(const CJavaGlobalRef&) = delete;
    CJavaGlobalRef& operator=(const CJavaGlobalRef&) = delete;
    CJavaGlobalRef(CJavaGlobalRef&& other) noexcept
        : m_vm(other.m_vm), m_reference(std::exchange(other.m_reference, nullptr)) {}
    CJavaGlobalRef& operator=(CJavaGlobalRef&& other) noexcept {
        CJavaGlobalRef moved(std::move(other));
        std::swap(m_vm, moved.m_vm);
        std::swap(m_reference, moved.m_reference);
        return *this;
    }

    [[nodiscard]] T Get() const noexcept { return m_reference; }
    explicit operator bool() const noexcept { return m_reference != nullptr; }

private:
    void Release() noexcept {
        if (!m_reference) {
            return;
        }
        if (JNIEnv* const env = m_vm->GetEnvForRelease()) {
            env->DeleteGlobalRef(m_reference);
        }
    }

    CJavaVM* m_vm = nullptr;
    T m_reference = nullptr;
};
