#include "CFakeCall.h"
#include "FakeJniTable.h"

namespace {

jint JNICALL GetVersion(JNIEnv* env) {
    static constexpr FakeFunction function("GetVersion");
    CFakeCall call(env, function);
    return call.MayRun() ? JNI_VERSION_10 : call.GetErrorCode();
}

jint JNICALL GetJavaVM(JNIEnv* env, JavaVM** vm) {
    static constexpr FakeFunction function("GetJavaVM");
    CFakeCall call(env, function);
    if (!call.MayRun()) {
        return call.GetErrorCode();
    }
    if (!call.IsGiven(vm)) {
        return 0;
    }
    *vm = call.State().machines.GetAlive();
    return JNI_OK;
}

jclass JNICALL FindClass(JNIEnv* env, const char* name) {
    static constexpr FakeFunction function("FindClass");
    CFakeCall call(env, function, {kNoClassDefFoundError, name});
    if (!call.MayRun() || !call.IsGiven(name)) {
        return nullptr;
    }
    if (call.State().behaviour.IsClassRemoved(name)) {
        call.State().Throw(call.Env(), kNoClassDefFoundError, name);
        return nullptr;
    }
    return call.MakeLocal<jclass>(call.State().classes.Get(name));
}

jclass JNICALL GetObjectClass(JNIEnv* env, jobject object) {
    static constexpr FakeFunction function("GetObjectClass");
    CFakeCall call(env, function);
    const FakeObjectPtr resolved = call.MayRun() ? call.Resolve(object) : nullptr;
    return resolved ? call.MakeLocal<jclass>(call.State().classes.GetClassOf(*resolved)) : nullptr;
}

jboolean JNICALL IsInstanceOf(JNIEnv* env, jobject object, jclass javaClass) {
    static constexpr FakeFunction function("IsInstanceOf");
    CFakeCall call(env, function);
    bool isGood = false;
    const FakeObjectPtr resolved = call.MayRun() ? call.ResolveOrNull(object, isGood) : nullptr;
    const auto resolvedClass = isGood ? call.ResolveAs<FakeClass>(javaClass, kNotAClass) : nullptr;
    if (!resolvedClass) {
        return JNI_FALSE;
    }
    const bool isInstance = !resolved || call.State().classes.IsInstance(*resolved, *resolvedClass);  // null is of all
    return isInstance ? JNI_TRUE : JNI_FALSE;
}

jmethodID JNICALL GetMethodID(JNIEnv* env, jclass javaClass, const char* name, const char* signature) {
    static constexpr FakeFunction function("GetMethodID");
    CFakeCall call(env, function, {kNoSuchMethodError, name});
    if (!call.MayRun() || !call.IsGiven(name) || !call.IsGiven(signature)) {
        return nullptr;
    }
    const auto owner = call.ResolveAs<FakeClass>(javaClass, kNotAClass);
    if (!owner) {
        return nullptr;
    }
    const auto parsed = ParseSignature(signature);
    if (!parsed) {
        call.ReportMisuse(std::string("not a signature: ") + signature);
        return nullptr;
    }
    if (call.State().behaviour.IsMethodRemoved(owner->name, name, signature)) {
        call.State().Throw(call.Env(), kNoSuchMethodError, name);
        return nullptr;
    }
    return call.State().classes.GetMethod(owner, name, *parsed);
}

}  // namespace

void InstallClassFunctions(JNINativeInterface_& table) {
    table.GetVersion = &GetVersion;
    table.GetJavaVM = &GetJavaVM;
    table.FindClass = &FindClass;
    table.GetObjectClass = &GetObjectClass;
    table.IsInstanceOf = &IsInstanceOf;
    table.GetMethodID = &GetMethodID;
}
