#pragma once

#include <jni.h>

/// The UTF-16 characters of a Java string, pinned or copied by the machine until the end of the scope. Stack only.
class CJavaStringChars {
public:
    /// `string` is not null and outlives this object; `env` is the calling thread's.
    CJavaStringChars(JNIEnv* env, jstring string) noexcept
        : m_env(env), m_string(string), m_chars(env->GetStringChars(string, nullptr)) {}
    ~CJavaStringChars() {
        if (m_chars) {
            m_env->ReleaseStringChars(m_string, m_chars);
        }
    }

    CJavaStringChars(const CJavaStringChars&) = delete;
    CJavaStringChars& operator=(const CJavaStringChars&) = delete;

    /// Closed by a zero; null when the machine had no memory for them, an exception then pending.
    [[nodiscard]] const wchar_t* Get() const noexcept { return reinterpret_cast<const wchar_t*>(m_chars); }

private:
    JNIEnv* const m_env;
    const jstring m_string;
    const jchar* const m_chars;
};

/// The same for the string's modified UTF-8 bytes.
class CJavaStringUtfChars {
public:
    CJavaStringUtfChars(JNIEnv* env, jstring string) noexcept
        : m_env(env), m_string(string), m_chars(env->GetStringUTFChars(string, nullptr)) {}
    ~CJavaStringUtfChars() {
        if (m_chars) {
            m_env->ReleaseStringUTFChars(m_string, m_chars);
        }
    }

    CJavaStringUtfChars(const CJavaStringUtfChars&) = delete;
    CJavaStringUtfChars& operator=(const CJavaStringUtfChars&) = delete;

    [[nodiscard]] const char* Get() const noexcept { return m_chars; }

private:
    JNIEnv* const m_env;
    const jstring m_string;
    const char* const m_chars;
};
