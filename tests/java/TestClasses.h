#pragma once

#include "JavaMethodBinding.h"

// The Java classes of tests/java-classes, as far as tests call them.

namespace Received {
inline constexpr char kClass[] = "telvar/test/Received";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kCtorText{"ctor(text)", "(Ljava/lang/String;)V"};
inline constexpr JavaConstructor<jint> kCtorNumber{"ctor(number)", "(I)V"};
inline constexpr JavaConstructor<jstring, jint> kCtorIdNumber{"ctor(id,number)", "(Ljava/lang/String;I)V"};
inline constexpr JavaConstructor<jint, jstring, jstring, jstring, jboolean> kCtorMany{
    "ctor(id,sid,user,domain,connected)", "(ILjava/lang/String;Ljava/lang/String;Ljava/lang/String;Z)V"};
inline constexpr JavaConstructor<jlong, jdouble, jboolean, jobject> kCtorWide{"ctor(number,fraction,flag,object)",
                                                                              "(JDZLjava/lang/Object;)V"};
inline constexpr JavaMethod<void(jstring)> kTakeText{"takeText", "takeText", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jint)> kTakeInt{"takeInt", "takeInt", "(I)V"};
inline constexpr JavaMethod<void(jlong)> kTakeLong{"takeLong", "takeLong", "(J)V"};
inline constexpr JavaMethod<void(jdouble)> kTakeDouble{"takeDouble", "takeDouble", "(D)V"};
inline constexpr JavaMethod<void(jboolean)> kTakeBoolean{"takeBoolean", "takeBoolean", "(Z)V"};
inline constexpr JavaMethod<void(jobject)> kTakeObject{"takeObject", "takeObject", "(Ljava/lang/Object;)V"};
inline constexpr JavaMethod<jstring()> kTell{"tell", "tell", "()Ljava/lang/String;"};
inline constexpr JavaMethod<jstring(jstring)> kTellCodes{"tellCharacterCodes", "tellCharacterCodes",
                                                         "(Ljava/lang/String;)Ljava/lang/String;"};
inline constexpr JavaMethod<jstring(jstring, jint, jobject)> kJoin{
    "join", "join", "(Ljava/lang/String;ILtelvar/test/Received;)Ljava/lang/String;"};
inline constexpr JavaMethod<jobject()> kTellNoString{"tellNoString", "tellNoString", "()Ljava/util/Map;"};

inline constexpr JavaMethodBinding kRows[] = {
    kCtor,     kCtorText,   kCtorNumber,  kCtorIdNumber, kCtorMany, kCtorWide,  kTakeText, kTakeInt,
    kTakeLong, kTakeDouble, kTakeBoolean, kTakeObject,   kTell,     kTellCodes, kJoin,     kTellNoString};

/// A method that the class has but that `kRows` does not bind.
inline constexpr JavaMethod<jstring()> kNotBound{"toString", "toString", "()Ljava/lang/String;"};
}  // namespace Received

namespace Texts {
inline constexpr char kClass[] = "telvar/test/Texts";

using Getter = JavaMethod<jstring()>;
inline constexpr char kSignature[] = "()Ljava/lang/String;";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr Getter kPlain{"plain", "plain", kSignature};
inline constexpr Getter kEmpty{"empty", "empty", kSignature};
inline constexpr Getter kNone{"none", "none", kSignature};
inline constexpr Getter kWithZero{"withZero", "withZero", kSignature};
inline constexpr Getter kOutsideTheBasicPlane{"outsideTheBasicPlane", "outsideTheBasicPlane", kSignature};
inline constexpr Getter kLoneSurrogate{"loneSurrogate", "loneSurrogate", kSignature};
inline constexpr Getter kMegabyte{"megabyte", "megabyte", kSignature};
inline constexpr Getter kThrowing{"throwing", "throwing", kSignature};

inline constexpr JavaMethodBinding kRows[] = {
    kCtor, kPlain, kEmpty, kNone, kWithZero, kOutsideTheBasicPlane, kLoneSurrogate, kMegabyte, kThrowing};
}  // namespace Texts

namespace Throwing {
inline constexpr char kClass[] = "telvar/test/Throwing";

using Thrower = JavaMethod<void()>;
using ThrowerOf = JavaMethod<void(jint)>;

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kFailingCtor{"ctor(message)", "(Ljava/lang/String;)V"};
inline constexpr ThrowerOf kWithFrames{"withFrames", "withFrames", "(I)V"};
inline constexpr Thrower kWithoutFrames{"withoutFrames", "withoutFrames", "()V"};
inline constexpr Thrower kWithNullTrace{"withNullTrace", "withNullTrace", "()V"};
inline constexpr Thrower kWithThrowingTrace{"withThrowingTrace", "withThrowingTrace", "()V"};
inline constexpr Thrower kWithNullFrame{"withNullFrame", "withNullFrame", "()V"};
inline constexpr Thrower kWithNullDescription{"withNullDescription", "withNullDescription", "()V"};
inline constexpr Thrower kWithThrowingDescription{"withThrowingDescription", "withThrowingDescription", "()V"};
inline constexpr Thrower kWithEmptyDescription{"withEmptyDescription", "withEmptyDescription", "()V"};
inline constexpr Thrower kWithCause{"withCause", "withCause", "()V"};
inline constexpr JavaMethod<void(jstring)> kWithDescription{"withDescription", "withDescription",
                                                            "(Ljava/lang/String;)V"};
inline constexpr ThrowerOf kThroughRealFrames{"throughRealFrames", "throughRealFrames", "(I)V"};
inline constexpr JavaMethod<jstring(jint)> kFramesOf{"framesOf", "framesOf", "(I)Ljava/lang/String;"};

inline constexpr JavaMethodBinding kRows[] = {kCtor,
                                              kFailingCtor,
                                              kWithFrames,
                                              kWithoutFrames,
                                              kWithNullTrace,
                                              kWithThrowingTrace,
                                              kWithNullFrame,
                                              kWithNullDescription,
                                              kWithThrowingDescription,
                                              kWithEmptyDescription,
                                              kWithCause,
                                              kWithDescription,
                                              kThroughRealFrames,
                                              kFramesOf};
}  // namespace Throwing
