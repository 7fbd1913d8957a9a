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
        Remember(AliasNumber(rows[i].alias), method);
    }
    return true;
}

void CJavaClass::Remember(std::uint64_t aliasNumber, jmethodID method) {
    for (BoundMethod& bound : m_methods) {
        if (bound.aliasNumber == aliasNumber) {
            bound.method = method;
            return;
        }
    }
    m_methods.push_back({aliasNumber, method});
}

std::shared_ptr<CJavaObject> CJavaClass::NewObjectVariadic(std::uint64_t aliasNumber, ...) {
    const jmethodID constructor = FindMethod(aliasNumber);
    JNIEnv* const env = m_vm.GetEnv();
    if (!constructor || !env) {
        return {};
    }

    std::va_list arguments;
    va_start(arguments, aliasNumber);
    CJavaLocalRef<jobject> local(env, env->NewObjectV(m_class.Get(), constructor, arguments));
    va_end(arguments);
    if (!local) {
        return {};
    }
    CJavaGlobalRef<jobject> global(m_vm, env, local);
    if (!global) {
        return {};
    }
    return m_vm.MakeWrapper<CJavaObject>(m_vm, *this, std::move(global));
}
