#include "CJavaString.h"

#include "CJavaStringChars.h"
#include "CJavaVM.h"
#include "JavaArgument.h"

CJavaString::CJavaString(CJavaVM& vm, CJavaLocalRef<jstring>&& reference) noexcept
    : CJavaString(vm, reference.Detach(), false) {}

CJavaString::CJavaString(CJavaVM& vm, jstring reference, bool isGlobal) noexcept
    : m_vm(vm), m_reference(reference), m_isGlobal(isGlobal) {}

CJavaString::~CJavaString() {
    JNIEnv* const env = m_vm.GetEnvForRelease();
    if (!env || !m_reference) {
        return;
    }
    if (m_isGlobal) {
        env->DeleteGlobalRef(m_reference);
    } else {
        env->DeleteLocalRef(m_reference);
    }
}

bool CJavaString::GetString(std::wstring& text) const {
    JNIEnv* const env = m_vm.GetEnv();
    if (!env || !m_reference) {
        return false;
    }
    const CJavaStringChars chars(env, m_reference);
    if (!chars.Get()) {
        return false;
    }
    text = chars.Get();  // up to the first zero: hosts get texts, and a text ends there
    return true;
}

jstring JavaArgument::ToReference(const CJavaString& text) noexcept {
    return text.GetReference();
}
