#include "CJavaLocalFrame.h"

CJavaLocalFrame::CJavaLocalFrame(JNIEnv* env, jint capacity) noexcept : m_env(env) {
    if (m_env && m_env->PushLocalFrame(capacity) != JNI_OK) {
        m_env->ExceptionClear();
        m_env = nullptr;
    }
}

CJavaLocalFrame::~CJavaLocalFrame() {
    if (m_env) {
        m_env->PopLocalFrame(nullptr);
    }
}
