#include "CJavaObject.h"

#include <cstdarg>
#include <utility>

#include "CJavaClass.h"
#include "CJavaLocalRef.h"
#include "CJavaString.h"

CJavaObject::CJavaObject(CJavaVM& vm, CJavaClass& javaClass, CJavaGlobalRef<jobject>&& reference) noexcept
    : m_vm(vm), m_class(javaClass), m_reference(std::move(reference)) {}

CJavaObject::~CJavaObject() = default;

void CJavaObject::CallVoidVariadic(std::uint64_t aliasNumber, ...) {
    const jmethodID method = m_class.FindMethod(aliasNumber);
    JNIEnv* const env = m_vm.GetEnv();
    if (!method || !env) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, aliasNumber);
    env->CallVoidMethodV(m_reference.Get(), method, arguments);
    va_end(arguments);
}

std::shared_ptr<CJavaString> CJavaObject::CallStringVariadic(std::uint64_t aliasNumber, ...) {
    const jmethodID method = m_class.FindMethod(aliasNumber);
    JNIEnv* const env = m_vm.GetEnv();
    if (!method || !env) {
        return {};
    }
    std::va_list arguments;
    va_start(arguments, aliasNumber);
    CJavaLocalRef<jstring> result(env,
                                  static_cast<jstring>(env->CallObjectMethodV(m_reference.Get(), method, arguments)));
    va_end(arguments);
    try {
        return m_vm.MakeWrapper<CJavaString>(m_vm, std::move(result));
    } catch (...) {
        env->ExceptionClear();  // what the method threw: nobody will ask for it now
        throw;
    }
}

jobject JavaArgument::ToReference(const CJavaObject& object) noexcept {
    return object.GetReference();
}
