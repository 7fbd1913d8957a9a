#pragma once

#include <jni.h>

#include <string>

#include "CJavaLocalRef.h"

class CJavaVM;

/// One Java string (or Java's null), by a local or a global reference. With a local one it lives and dies on the thread
/// that made it, inside the local frame it was made in.
class CJavaString {
public:
    CJavaString(CJavaVM& vm, CJavaLocalRef<jstring>&& reference) noexcept;
    /// Takes `reference`, which may be null, over: a global one if `isGlobal`.
    CJavaString(CJavaVM& vm, jstring reference, bool isGlobal) noexcept;
    /// Releases the reference, silently not where the thread has no environment.
    virtual ~CJavaString();

    CJavaString(const CJavaString&) = delete;
    CJavaString& operator=(const CJavaString&) = delete;

    /// Replaces `text` by the string's characters up to the first zero. False, with `text` untouched, for Java's null,
    /// on a thread without environment, and where Java has no memory for the characters. Throws std::bad_alloc.
    [[nodiscard]] bool GetString(std::wstring& text) const;

    [[nodiscard]] jstring GetReference() const noexcept { return m_reference; }

private:
    CJavaVM& m_vm;
    const jstring m_reference;
    const bool m_isGlobal;
};
