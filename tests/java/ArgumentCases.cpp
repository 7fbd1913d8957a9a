// Calls that must not compile, one for each CASE; case 0 shows that the rest of this file does.

#include <cstddef>
#include <memory>

#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "JavaMethodBinding.h"

namespace {

constexpr JavaMethod<void(jint)> kTakeInt{"takeInt", "takeInt", "(I)V"};
constexpr JavaMethod<void(jlong)> kTakeLong{"takeLong", "takeLong", "(J)V"};
constexpr JavaMethod<void(jobject)> kTakeObject{"takeObject", "takeObject", "(Ljava/lang/Object;)V"};
constexpr JavaMethod<void(jstring)> kTakeText{"takeText", "takeText", "(Ljava/lang/String;)V"};
constexpr JavaMethod<jstring()> kTell{"tell", "tell", "()Ljava/lang/String;"};
constexpr JavaConstructor<jint> kCtor{"ctor(number)", "(I)V"};

[[maybe_unused]] void Call(CJavaClass& javaClass, CJavaObject& object, const std::shared_ptr<CJavaString>& text,
                           const wchar_t* characters, long long wide, std::size_t size) {
    object.CallVoidMethod(kTakeInt, 5);
    object.CallVoidMethod(kTakeLong, wide);
    object.CallVoidMethod(kTakeObject, text);
    object.CallVoidMethod(kTakeText, nullptr);
    static_cast<void>(object.CallStringMethod(kTell));
    static_cast<void>(javaClass.NewObject(kCtor, 5));
    static_cast<void>(characters);
    static_cast<void>(size);
#if CASE == 1
    object.CallVoidMethod(kTakeInt, wide);
#elif CASE == 2
    object.CallVoidMethod(kTakeObject, characters);
#elif CASE == 3
    object.CallVoidMethod(kTakeText, object);
#elif CASE == 4
    object.CallVoidMethod(kTakeInt, size);
#elif CASE == 5
    object.CallVoidMethod(kTakeInt);
#elif CASE == 6
    object.CallVoidMethod(kTakeInt, 5, 6);
#elif CASE == 7
    static_cast<void>(javaClass.NewObject(kCtor, wide));
#elif CASE == 8
    static_cast<void>(javaClass.NewObject(kCtor, text));
#elif CASE == 9
    object.CallVoidMethod(kTakeInt, nullptr);
#elif CASE == 10
    object.CallVoidMethod(kTell);
#elif CASE == 11
    static_cast<void>(object.CallStringMethod(kTakeInt, 5));
#elif CASE == 12
    object.CallVoidMethod(kTakeText, L"literal");
#elif CASE == 13
    constexpr JavaMethod<void(jlong)> wrong{"takeInt", "takeInt", "(I)V"};
    static_cast<void>(wrong);
#elif CASE == 14
    object.CallVoidMethod(kTakeLong, 0.5);
#elif CASE == 15
    object.CallVoidMethod(kTakeObject, wide);
#endif
}

}  // namespace
