#include "FakeRuntimeFixture.h"

TEST_F(FakeRuntimeTest, FailsTheNthCallAndAsManyAsOrdered) {
    runtime.Fail("NewString", 2, 2);

    EXPECT_NE(NewText(u"1"), nullptr);
    EXPECT_EQ(runtime.GetFaultsFired(), 0);
    EXPECT_EQ(runtime.GetFailedFunction(), nullptr);
    EXPECT_EQ(NewText(u"2"), nullptr);
    EXPECT_EQ(TakeException(), "java.lang.OutOfMemoryError: injected");
    EXPECT_EQ(NewText(u"3"), nullptr);
    env->ExceptionClear();
    EXPECT_NE(NewText(u"4"), nullptr);
    EXPECT_EQ(runtime.GetFaultsFired(), 2);
    EXPECT_STREQ(runtime.GetFailedFunction(), "NewString");
}

TEST_F(FakeRuntimeTest, FailsForEver) {
    runtime.Fail("NewString", 1, -1, FakeFaultMode::eWithoutException);

    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(NewText(u"abc"), nullptr);
    }

    EXPECT_EQ(runtime.GetFaultsFired(), 100);
    EXPECT_FALSE(runtime.IsExceptionPending());
}

TEST_F(FakeRuntimeTest, CountsFromTheOrderOn) {
    NewText(u"1");
    NewText(u"2");

    runtime.Fail("NewString", 1);

    EXPECT_EQ(NewText(u"3"), nullptr);
}

TEST_F(FakeRuntimeTest, ClearedFaultsDoNotFire) {
    runtime.Fail("NewString", 1);
    runtime.ClearFaults();

    EXPECT_NE(NewText(u"abc"), nullptr);
    EXPECT_EQ(runtime.GetFaultsFired(), 0);
}

TEST_F(FakeRuntimeTest, OrdersAddUp) {
    runtime.Fail("NewString", 1);
    runtime.Fail("NewString", 2);

    EXPECT_EQ(NewText(u"1"), nullptr);
    env->ExceptionClear();
    EXPECT_EQ(NewText(u"2"), nullptr);
    env->ExceptionClear();
    EXPECT_NE(NewText(u"3"), nullptr);
    EXPECT_EQ(runtime.GetFaultsFired(), 1);
}

TEST_F(FakeRuntimeTest, FailedLookupsLeaveTheirOwnExceptions) {
    const jclass javaClass = env->FindClass("java/x/Y");

    runtime.Fail("FindClass", 1);
    EXPECT_EQ(env->FindClass("java/x/Z"), nullptr);
    EXPECT_EQ(TakeException(), "java.lang.NoClassDefFoundError: java/x/Z");
    runtime.Fail("GetMethodID", 1);
    EXPECT_EQ(env->GetMethodID(javaClass, "put", "()V"), nullptr);
    EXPECT_EQ(TakeException(), "java.lang.NoSuchMethodError: put");
}

TEST_F(FakeRuntimeTest, FailedFunctionsReturnTheErrorCode) {
    runtime.Fail("PushLocalFrame", 1, 1, FakeFaultMode::eWithException, JNI_ENOMEM);
    runtime.Fail("EnsureLocalCapacity", 1, 1, FakeFaultMode::eWithoutException);

    EXPECT_EQ(env->PushLocalFrame(8), JNI_ENOMEM);
    EXPECT_EQ(TakeException(), "java.lang.OutOfMemoryError: injected");
    EXPECT_EQ(env->EnsureLocalCapacity(8), JNI_ERR);
    EXPECT_EQ(runtime.GetOpenFrames(), 0);
}

TEST_F(FakeRuntimeTest, FailedMethodsAreNotRun) {
    const jobject object = NewObject("java/x/Y");
    const jmethodID put = Method("java/x/Y", "put", "()V");
    runtime.Fail("CallVoidMethodV", 1);

    env->CallVoidMethod(object, put);

    EXPECT_EQ(TakeException(), "java.lang.OutOfMemoryError: injected");
    EXPECT_EQ(Methods(), (Texts{"java/x/Y.<init>()V()", "java/lang/OutOfMemoryError.toString()Ljava/lang/String;()"}));
}

TEST_F(FakeRuntimeTest, AStarFailsTheNthCallOfAnyFunctionThatMayFail) {
    runtime.Fail("*", 3);

    const jstring text = NewText(u"abc");            // first
    const jobject global = env->NewGlobalRef(text);  // second
    env->ExceptionCheck();
    env->ExceptionOccurred();
    env->ExceptionClear();
    env->DeleteLocalRef(text);
    env->PopLocalFrame(nullptr);                      // a misuse; does not count either
    const jobject failed = env->NewLocalRef(global);  // third

    EXPECT_EQ(failed, nullptr);
    EXPECT_STREQ(runtime.GetFailedFunction(), "NewLocalRef");
    env->DeleteGlobalRef(global);
    EXPECT_EQ(TakeException(), "java.lang.OutOfMemoryError: injected");
    EXPECT_EQ(runtime.GetFaultsFired(), 1);
}

TEST_F(FakeRuntimeTest, ReportsAnOrderForAFunctionThatJniDoesNotHave) {
    runtime.Fail("NewText", 1);

    EXPECT_EQ(Misuses(), Texts{"Fail: JNI has no function NewText"});
    EXPECT_EQ(runtime.GetCallCount("NewText"), -1);
}
