#include "CFakeCall.h"
#include "FakeJniTable.h"

namespace {

jsize JNICALL GetArrayLength(JNIEnv* env, jarray array) {
    static constexpr FakeFunction function("GetArrayLength");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeArray>(array, kNotAnArray) : nullptr;
    return resolved ? static_cast<jsize>(resolved->elements.size()) : 0;
}

jobject JNICALL GetObjectArrayElement(JNIEnv* env, jobjectArray array, jsize index) {
    static constexpr FakeFunction function("GetObjectArrayElement");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeArray>(array, kNotAnArray) : nullptr;
    if (!resolved) {
        return nullptr;
    }
    if (index < 0 || static_cast<std::size_t>(index) >= resolved->elements.size()) {
        call.State().Throw(call.Env(), kIndexOutOfBounds, std::to_string(index));
        return nullptr;
    }
    return call.MakeLocal(resolved->elements[static_cast<std::size_t>(index)]);
}

}  // namespace

void InstallArrayFunctions(JNINativeInterface_& table) {
    table.GetArrayLength = &GetArrayLength;
    table.GetObjectArrayElement = &GetObjectArrayElement;
}
