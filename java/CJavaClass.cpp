#include "CJavaClass.h"

#include <cstdarg>
#include <utility>

#include "CJavaLocalRef.h"
#include "CJavaObject.h"

CJavaClass::CJavaClass(CJavaVM& vm, std::string_view className) : m_vm(vm), m_name(className) {}

CJavaClass::~CJavaClass() = default;

bool CJavaClass::Bind(JNIEnv* env, const JavaMethodBinding* rows, std::size_t rowCount) {
    {
        const CJavaLocalRef<jclass> found(env, env->FindClass(m_name.c_str()));
        if (!found) {
            return false;
        }
        m_class = CJavaGlobalRef<jclass>(m_vm, env, found);
    }
    if (!m_class) {
        return false;
    }
    for (std::size_t i = 0; i < rowCount; ++i) {
        const jmethodID method = env->GetMethodID(m_class.Get(), rows[i].name, rows[i].signature);
        if (!method) {
            return false;
        }
        m_methods.insert_or_assign(rows[i].alias, method);
    }
    return true;
}

jmethodID CJavaClass::FindMethod(std::string_view alias) const noexcept {
    const auto found = m_methods.find(alias);
    return found == m_methods.end() ? nullptr : found->second;
}

std::shared_ptr<CJavaObject> CJavaClass::NewObjectVariadic(const char* alias, ...) {
    const jmethodID constructor = FindMethod(alias);
    JNIEnv* const env = m_vm.GetEnv();
    if (!constructor || !env) {
        return {};
    }

    std::va_list arguments;
    va_start(arguments, alias);
    CJavaLocalRef<jobject> local(env, env->NewObjectV(m_class.Get(), constructor, arguments));
    va_end(arguments);
    if (!local) {
        return {};
    }
    CJavaGlobalRef<jobject> global(m_vm, env, local);
    if (!global) {
        return {};
    }
    return std::shared_ptr<CJavaObject>(new CJavaObject(m_vm, *this, std::move(global)));
}
