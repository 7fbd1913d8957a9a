#include "CFakeCall.h"
#include "FakeJniTable.h"

namespace {

jobject JNICALL NewGlobalRef(JNIEnv* env, jobject object) {
    static constexpr FakeFunction function("NewGlobalRef");
    CFakeCall call(env, function);
    bool isGood = false;
    return call.MayRun() ? call.State().references.MakeGlobal(call.ResolveOrNull(object, isGood)) : nullptr;
}

jobject JNICALL NewLocalRef(JNIEnv* env, jobject object) {
    static constexpr FakeFunction function("NewLocalRef");
    CFakeCall call(env, function);
    bool isGood = false;
    return call.MayRun() ? call.MakeLocal(call.ResolveOrNull(object, isGood)) : nullptr;
}

void JNICALL DeleteGlobalRef(JNIEnv* env, jobject object) {
    static constexpr FakeFunction function("DeleteGlobalRef");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return;
    }
    if (const char* const problem = call.State().references.DeleteGlobal(object)) {
        call.ReportMisuse(problem);
    }
}

void JNICALL DeleteLocalRef(JNIEnv* env, jobject object) {
    static constexpr FakeFunction function("DeleteLocalRef");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return;
    }
    if (const char* const problem = call.State().references.DeleteLocal(call.Env().locals, object)) {
        call.ReportMisuse(problem);
    }
}

jint JNICALL PushLocalFrame(JNIEnv* env, jint capacity) {
    static constexpr FakeFunction function("PushLocalFrame");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return call.GetErrorCode();
    }
    if (capacity < 0) {
        call.ReportMisuse("negative capacity");
        return 0;
    }
    call.State().references.PushFrame(call.Env().locals);
    return JNI_OK;
}

jobject JNICALL PopLocalFrame(JNIEnv* env, jobject result) {
    static constexpr FakeFunction function("PopLocalFrame");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return nullptr;
    }
    bool isGood = false;
    const FakeObjectPtr object = call.ResolveOrNull(result, isGood);
    if (!isGood) {
        return nullptr;
    }
    if (!call.State().references.PopFrame(call.Env().locals)) {
        call.ReportMisuse("no frame to pop");
        return nullptr;
    }
    return call.MakeLocal(object);
}

jint JNICALL EnsureLocalCapacity(JNIEnv* env, jint capacity) {
    static constexpr FakeFunction function("EnsureLocalCapacity");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return call.GetErrorCode();
    }
    if (capacity < 0) {
        call.ReportMisuse("negative capacity");
        return 0;
    }
    return JNI_OK;
}

jboolean JNICALL IsSameObject(JNIEnv* env, jobject first, jobject second) {
    static constexpr FakeFunction function("IsSameObject");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return JNI_FALSE;
    }
    bool isFirstGood = false;
    bool isSecondGood = false;
    const FakeObjectPtr firstObject = call.ResolveOrNull(first, isFirstGood);
    const FakeObjectPtr secondObject = call.ResolveOrNull(second, isSecondGood);
    return isFirstGood && isSecondGood && firstObject == secondObject ? JNI_TRUE : JNI_FALSE;
}

}  // namespace

void InstallReferenceFunctions(JNINativeInterface_& table) {
    table.NewGlobalRef = &NewGlobalRef;
    table.NewLocalRef = &NewLocalRef;
    table.DeleteGlobalRef = &DeleteGlobalRef;
    table.DeleteLocalRef = &DeleteLocalRef;
    table.PushLocalFrame = &PushLocalFrame;
    table.PopLocalFrame = &PopLocalFrame;
    table.EnsureLocalCapacity = &EnsureLocalCapacity;
    table.IsSameObject = &IsSameObject;
}
