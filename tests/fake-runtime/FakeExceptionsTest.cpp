#include "FakeRuntimeFixture.h"

#include <thread>

TEST_F(FakeRuntimeTest, ReportsCallsWithAnExceptionPending) {
    const jstring text = NewText(u"abc");
    runtime.SetPendingException({"java/x/YException", "y"});

    EXPECT_EQ(env->FindClass("java/x/Y"), nullptr);
    EXPECT_EQ(env->NewLocalRef(text), nullptr);

    EXPECT_EQ(Misuses(), (Texts{"FindClass: exception pending: java/x/YException",
                                "NewLocalRef: exception pending: java/x/YException"}));
    EXPECT_TRUE(runtime.IsExceptionPending());
}

TEST_F(FakeRuntimeTest, AllowsWhatJniAllowsWithAnExceptionPending) {
    const jstring text = NewText(u"abc");
    const jobject global = env->NewGlobalRef(text);
    const jchar* const units = env->GetStringChars(text, nullptr);
    const char* const bytes = env->GetStringUTFChars(text, nullptr);
    runtime.SetPendingException({});

    env->ReleaseStringChars(text, units);
    env->ReleaseStringUTFChars(text, bytes);
    EXPECT_EQ(env->PushLocalFrame(8), JNI_OK);
    env->PopLocalFrame(nullptr);
    env->DeleteLocalRef(text);
    env->DeleteGlobalRef(global);
    EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
    env->DeleteLocalRef(env->ExceptionOccurred());
    env->ExceptionClear();

    EXPECT_EQ(Misuses(), Texts{});
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(env->ExceptionOccurred(), nullptr);
    EXPECT_EQ(runtime.GetLocalReferences(), 0);
}

TEST_F(FakeRuntimeTest, DescribingAnExceptionClearsIt) {
    runtime.SetPendingException({});

    env->ExceptionDescribe();

    EXPECT_FALSE(runtime.IsExceptionPending());
}

TEST_F(FakeRuntimeTest, ExceptionsArePendingOnTheirThreadAlone) {
    runtime.SetPendingException({});

    OnAttachedThread([](JNIEnv* other) { EXPECT_EQ(other->ExceptionCheck(), JNI_FALSE); });

    EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
}

TEST_F(FakeRuntimeTest, NoExceptionCanBePendingOnAThreadNotAttached) {
    std::thread([this] { EXPECT_FALSE(runtime.SetPendingException({})); }).join();
}

TEST_F(FakeRuntimeTest, ThrowsExceptions) {
    EXPECT_EQ(env->ThrowNew(env->FindClass("java/x/YException"), "why"), JNI_OK);
    EXPECT_EQ(TakeException(), "java.x.YException: why");

    EXPECT_EQ(env->Throw(static_cast<jthrowable>(NewObject("java/x/YException"))), JNI_OK);
    EXPECT_EQ(TakeException(), "java.x.YException");
}

TEST_F(FakeRuntimeTest, ExceptionsTellTheirFrames) {
    const FakeFrame frames[] = {
        {"a.B.c(B.java:1)"}, {"", FakeAnswer::eValue, true}, {"", FakeAnswer::eNull}, {"", FakeAnswer::eThrows}};
    runtime.SetPendingException({"java/x/YException", "what", frames, 4});
    const jthrowable exception = env->ExceptionOccurred();
    env->ExceptionClear();

    const auto trace = static_cast<jobjectArray>(env->CallObjectMethod(
        exception, env->GetMethodID(env->GetObjectClass(exception), "getStackTrace", kStackTraceGetter)));

    EXPECT_EQ(CallText(exception, "toString"), "what");
    EXPECT_EQ(env->GetArrayLength(trace), 4);
    EXPECT_EQ(CallText(env->GetObjectArrayElement(trace, 0), "toString"), "a.B.c(B.java:1)");
    EXPECT_EQ(env->GetObjectArrayElement(trace, 1), nullptr);
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(CallText(env->GetObjectArrayElement(trace, 2), "toString"), "(null)");
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
    const jobject last = env->GetObjectArrayElement(trace, 3);
    EXPECT_EQ(env->CallObjectMethod(last, Method("java/lang/StackTraceElement", "toString", kStringGetter)), nullptr);
    EXPECT_EQ(TakeException(), "java.lang.RuntimeException: ordered");
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ArraysThrowForAnIndexOutOfBounds) {
    runtime.SetPendingException({});
    const jthrowable exception = env->ExceptionOccurred();
    env->ExceptionClear();
    const auto trace = static_cast<jobjectArray>(env->CallObjectMethod(
        exception, env->GetMethodID(env->GetObjectClass(exception), "getStackTrace", kStackTraceGetter)));
    EXPECT_EQ(env->GetArrayLength(trace), 0);

    EXPECT_EQ(env->GetObjectArrayElement(trace, 0), nullptr);

    EXPECT_EQ(TakeException(), "java.lang.ArrayIndexOutOfBoundsException: 0");
}

TEST_F(FakeRuntimeTest, ExceptionsMayHaveNoDescription) {
    runtime.SetPendingException({});
    EXPECT_EQ(TakeException(), "(null)");

    runtime.SetPendingException({"java/x/YException", "what", nullptr, 0, FakeAnswer::eNull});
    EXPECT_EQ(TakeException(), "(null)");
    EXPECT_FALSE(runtime.IsExceptionPending());

    runtime.SetPendingException({"java/x/YException", "what", nullptr, 0, FakeAnswer::eThrows});
    EXPECT_EQ(TakeException(), "(null)");
    EXPECT_TRUE(runtime.IsExceptionPending());
}

TEST_F(FakeRuntimeTest, ExceptionsMayHaveNoStackTrace) {
    for (const FakeAnswer answer : {FakeAnswer::eNull, FakeAnswer::eThrows}) {
        runtime.SetPendingException({"java/x/YException", "what", nullptr, 0, FakeAnswer::eValue, answer});
        const jthrowable exception = env->ExceptionOccurred();
        env->ExceptionClear();
        const jmethodID getter = env->GetMethodID(env->GetObjectClass(exception), "getStackTrace", kStackTraceGetter);

        EXPECT_EQ(env->CallObjectMethod(exception, getter), nullptr);

        EXPECT_EQ(runtime.IsExceptionPending(), answer == FakeAnswer::eThrows);
        env->ExceptionClear();
    }
}

TEST_F(FakeRuntimeTest, ExceptionsOfTheRuntimeHaveTheOrderedFrames) {
    runtime.SetThrowableFrames(2);
    runtime.Fail("NewString", 1);
    NewText(u"abc");
    const jthrowable exception = env->ExceptionOccurred();
    env->ExceptionClear();

    const auto trace = static_cast<jobjectArray>(env->CallObjectMethod(
        exception, env->GetMethodID(env->GetObjectClass(exception), "getStackTrace", kStackTraceGetter)));

    EXPECT_EQ(env->GetArrayLength(trace), 2);
    EXPECT_EQ(CallText(env->GetObjectArrayElement(trace, 1), "toString"), "fake.Source.method1(Source.java:2)");
}
