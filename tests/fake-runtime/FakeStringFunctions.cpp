#include <utility>

#include "CFakeCall.h"
#include "FakeJniTable.h"
#include "FakeText.h"

namespace {

void SetIsCopy(jboolean* isCopy) {
    if (isCopy) {
        *isCopy = JNI_TRUE;
    }
}

jstring JNICALL NewString(JNIEnv* env, const jchar* units, jsize length) {
    static constexpr FakeFunction function("NewString");
    CFakeCall call(env, function);
    if (!call.MayRun() || (length != 0 && !call.IsGiven(units))) {
        return nullptr;
    }
    if (length < 0) {
        call.ReportMisuse("negative length");
        return nullptr;
    }
    std::u16string copy(reinterpret_cast<const char16_t*>(units), static_cast<std::size_t>(length));
    return call.MakeLocal<jstring>(call.State().classes.MakeString(std::move(copy)));
}

jstring JNICALL NewStringUTF(JNIEnv* env, const char* bytes) {
    static constexpr FakeFunction function("NewStringUTF");
    CFakeCall call(env, function);
    if (!call.MayRun() || !call.IsGiven(bytes)) {
        return nullptr;
    }
    return call.MakeLocal<jstring>(call.State().classes.MakeString(DecodeModifiedUtf8(bytes)));
}

jsize JNICALL GetStringLength(JNIEnv* env, jstring string) {
    static constexpr FakeFunction function("GetStringLength");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    return resolved ? static_cast<jsize>(resolved->units.length()) : 0;
}

jsize JNICALL GetStringUTFLength(JNIEnv* env, jstring string) {
    static constexpr FakeFunction function("GetStringUTFLength");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    return resolved ? static_cast<jsize>(EncodeModifiedUtf8(resolved->units).length()) : 0;
}

const jchar* JNICALL GetStringChars(JNIEnv* env, jstring string, jboolean* isCopy) {
    static constexpr FakeFunction function("GetStringChars");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    if (!resolved) {
        return nullptr;
    }
    SetIsCopy(isCopy);
    return call.State().pins.PinUnits(resolved);
}

const char* JNICALL GetStringUTFChars(JNIEnv* env, jstring string, jboolean* isCopy) {
    static constexpr FakeFunction function("GetStringUTFChars");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    if (!resolved) {
        return nullptr;
    }
    SetIsCopy(isCopy);
    return call.State().pins.PinBytes(resolved);
}

void JNICALL ReleaseStringChars(JNIEnv* env, jstring string, const jchar* units) {
    static constexpr FakeFunction function("ReleaseStringChars");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    const char* const problem = resolved ? call.State().pins.ReleaseUnits(*resolved, units) : nullptr;
    if (problem) {
        call.ReportMisuse(problem);
    }
}

void JNICALL ReleaseStringUTFChars(JNIEnv* env, jstring string, const char* bytes) {
    static constexpr FakeFunction function("ReleaseStringUTFChars");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeString>(string, kNotAString) : nullptr;
    const char* const problem = resolved ? call.State().pins.ReleaseBytes(*resolved, bytes) : nullptr;
    if (problem) {
        call.ReportMisuse(problem);
    }
}

}  // namespace

void InstallStringFunctions(JNINativeInterface_& table) {
    table.NewString = &NewString;
    table.NewStringUTF = &NewStringUTF;
    table.GetStringLength = &GetStringLength;
    table.GetStringUTFLength = &GetStringUTFLength;
    table.GetStringChars = &GetStringChars;
    table.GetStringUTFChars = &GetStringUTFChars;
    table.ReleaseStringChars = &ReleaseStringChars;
    table.ReleaseStringUTFChars = &ReleaseStringUTFChars;
}
