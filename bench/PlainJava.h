#pragma once

#include <jni.h>

#include <string_view>

#include "JavaIds.h"

/// Makes Java objects by JNI as it stands: local references, one frame, no question after exceptions.
class CPlainJava {
public:
    explicit CPlainJava(JNIEnv* env) noexcept : m_env(env) {}

    void BeginItem() const noexcept { m_env->PushLocalFrame(kCapacity); }
    void EndItem() const noexcept { m_env->PopLocalFrame(nullptr); }

    [[nodiscard]] jstring MakeText(std::wstring_view text) const noexcept {
        return m_env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    }
    template <typename... Arguments>
    [[nodiscard]] jobject Make(const JavaMaker& maker, Arguments... arguments) const noexcept {
        return m_env->NewObject(maker.javaClass, maker.constructor, arguments...);
    }
    template <typename... Arguments>
    void Call(jobject object, jmethodID method, Arguments... arguments) const noexcept {
        m_env->CallVoidMethod(object, method, arguments...);
    }
    template <typename... Arguments>
    void Ask(jobject object, jmethodID method, Arguments... arguments) const noexcept {
        static_cast<void>(m_env->CallObjectMethod(object, method, arguments...));
    }

private:
    static constexpr jint kCapacity = 64;

    JNIEnv* const m_env;
};

/// The same in name alone: what is left is the reading of the host's objects.
class CNoJava {
public:
    void BeginItem() const noexcept {}
    void EndItem() const noexcept {}

    [[nodiscard]] jstring MakeText(std::wstring_view) const noexcept { return nullptr; }
    template <typename... Arguments>
    [[nodiscard]] jobject Make(const JavaMaker&, Arguments...) const noexcept {
        return nullptr;
    }
    template <typename... Arguments>
    void Call(jobject, jmethodID, Arguments...) const noexcept {}
    template <typename... Arguments>
    void Ask(jobject, jmethodID, Arguments...) const noexcept {}
};
