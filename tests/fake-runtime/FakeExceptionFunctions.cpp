#include "CFakeCall.h"
#include "FakeJniTable.h"

namespace {

jint JNICALL Throw(JNIEnv* env, jthrowable throwable) {
    static constexpr FakeFunction function("Throw");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return call.GetErrorCode();
    }
    const auto resolved = call.ResolveAs<FakeThrowable>(throwable, kNotAThrowable);
    if (resolved) {
        call.Env().pending = resolved;
    }
    return JNI_OK;
}

jint JNICALL ThrowNew(JNIEnv* env, jclass throwableClass, const char* message) {
    static constexpr FakeFunction function("ThrowNew");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return call.GetErrorCode();
    }
    const auto resolved = call.ResolveAs<FakeClass>(throwableClass, kNotAClass);
    if (resolved) {
        call.State().Throw(call.Env(), resolved->name.c_str(), message ? message : "null");
    }
    return JNI_OK;
}

jthrowable JNICALL ExceptionOccurred(JNIEnv* env) {
    static constexpr FakeFunction function("ExceptionOccurred");
    CFakeCall call(env, function);
    return call.MayRun() ? call.MakeLocal<jthrowable>(call.Env().pending) : nullptr;
}

jboolean JNICALL ExceptionCheck(JNIEnv* env) {
    static constexpr FakeFunction function("ExceptionCheck");
    CFakeCall call(env, function);
    return call.MayRun() && call.Env().pending ? JNI_TRUE : JNI_FALSE;
}

void JNICALL ExceptionClear(JNIEnv* env) {
    static constexpr FakeFunction function("ExceptionClear");
    CFakeCall call(env, function);
    if (call.MayRun()) {
        call.Env().pending.reset();
    }
}

/// Prints nothing, but clears the exception as a real machine does.
void JNICALL ExceptionDescribe(JNIEnv* env) {
    static constexpr FakeFunction function("ExceptionDescribe");
    CFakeCall call(env, function);
    if (call.MayRun()) {
        call.Env().pending.reset();
    }
}

}  // namespace

void InstallExceptionFunctions(JNINativeInterface_& table) {
    table.Throw = &Throw;
    table.ThrowNew = &ThrowNew;
    table.ExceptionOccurred = &ExceptionOccurred;
    table.ExceptionCheck = &ExceptionCheck;
    table.ExceptionClear = &ExceptionClear;
    table.ExceptionDescribe = &ExceptionDescribe;
}
