#include "JavaException.h"

#include "CConversionBuffer.h"
#include "CJavaLocalRef.h"
#include "CJavaStringChars.h"

namespace {

constexpr char kToString[] = "toString";
constexpr char kToStringSignature[] = "()Ljava/lang/String;";
constexpr char kGetStackTrace[] = "getStackTrace";
constexpr char kGetStackTraceSignature[] = "()[Ljava/lang/StackTraceElement;";
constexpr wchar_t kFrameIntroduction[] = L"\r\n\t";

/// Leaves the thread without a pending exception: from here on, so that Java may be called, and at the end of the
/// scope.
class CExceptionCleared {
public:
    explicit CExceptionCleared(JNIEnv* env) noexcept : m_env(env) { m_env->ExceptionClear(); }
    ~CExceptionCleared() { m_env->ExceptionClear(); }

    CExceptionCleared(const CExceptionCleared&) = delete;
    CExceptionCleared& operator=(const CExceptionCleared&) = delete;

private:
    JNIEnv* const m_env;
};

/// Calls a method without parameters that returns an object. Empty when there is no such method, when it throws, and
/// when it returns null; nothing is pending afterwards.
template <typename T>
CJavaLocalRef<T> CallGetter(JNIEnv* env, jobject object, jclass objectClass, const char* name, const char* signature) {
    const jmethodID method = env->GetMethodID(objectClass, name, signature);
    if (!method) {
        env->ExceptionClear();
        return {};
    }
    const jobject result = env->CallObjectMethod(object, method);
    if (env->ExceptionCheck()) {
        env->ExceptionClear();
        return {};
    }
    return {env, static_cast<T>(result)};
}

/// Appends what `toString` of the object returns, in front of it `introduction`. Appends nothing, and returns false,
/// where that fails.
bool AppendDescription(JNIEnv* env, jobject object, jclass objectClass, const wchar_t* introduction,
                       std::wstring& text) {
    const auto description = CallGetter<jstring>(env, object, objectClass, kToString, kToStringSignature);
    if (!description) {
        return false;
    }
    const CJavaStringUtfChars bytes(env, description.Get());
    if (!bytes.Get()) {
        env->ExceptionClear();
        return false;
    }
    text.append(introduction).append(CWideFromNarrow(bytes.Get()).GetView());
    return true;
}

void AppendFrame(JNIEnv* env, const SharedLocalRef& frame, std::wstring& text) {
    const CJavaLocalRef<jclass> frameClass(env, env->GetObjectClass(frame.get()));
    if (!frameClass) {
        env->ExceptionClear();
        return;
    }
    AppendDescription(env, frame.get(), frameClass.Get(), kFrameIntroduction, text);
}

void AppendStackTrace(JNIEnv* env, jobject exception, jclass exceptionClass, std::wstring& text) {
    const auto frames =
        CallGetter<jobjectArray>(env, exception, exceptionClass, kGetStackTrace, kGetStackTraceSignature);
    if (!frames) {
        return;
    }
    const jsize count = env->GetArrayLength(frames.Get());
    for (jsize i = 0; i < count; ++i) {
        const SharedLocalRef frame = AdoptSharedLocalRef(env, env->GetObjectArrayElement(frames.Get(), i));
        if (frame) {
            AppendFrame(env, frame, text);
        } else {
            env->ExceptionClear();
        }
    }
}

}  // namespace

bool TakeJavaException(JNIEnv* env, std::wstring& text) {
    const jthrowable exception = env->ExceptionOccurred();
    if (!exception) {
        return false;
    }
    // Taken, then cleared, then read: with an exception pending hardly any JNI function may be called.
    const CExceptionCleared cleared(env);

    const CJavaLocalRef<jclass> exceptionClass(env, env->GetObjectClass(exception));
    if (!exceptionClass) {
        return true;
    }
    std::wstring description;
    if (AppendDescription(env, exception, exceptionClass.Get(), L"", description)) {
        text = description;
    }
    AppendStackTrace(env, exception, exceptionClass.Get(), text);
    return true;
}
