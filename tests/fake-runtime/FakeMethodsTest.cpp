#include "FakeRuntimeFixture.h"

#include <string>

TEST_F(FakeRuntimeTest, RecordsConstructorsAndMethodsWithTheirArguments) {
    const jclass javaClass = env->FindClass("java/x/Y");
    const jmethodID constructor = env->GetMethodID(javaClass, "<init>", "(J)V");
    const jmethodID put = env->GetMethodID(javaClass, "put", "(Ljava/lang/String;I)V");

    const jobject object = env->NewObject(javaClass, constructor, jlong{-5000000000});
    env->CallVoidMethod(object, put, NewText(u"abc"), jint{5});

    EXPECT_EQ(Methods(), (Texts{"java/x/Y.<init>(J)V(-5000000000)", "java/x/Y.put(Ljava/lang/String;I)V(\"abc\", 5)"}));
}

TEST_F(FakeRuntimeTest, ForgetsTheMethodsThatWereCalledAndGoesOn) {
    const jobject object = NewObject("java/x/Y");
    runtime.ForgetMethodLog();
    EXPECT_EQ(Methods(), Texts{});
    EXPECT_EQ(runtime.GetMethodLogEntry(0), nullptr);

    env->CallVoidMethod(object, Method("java/x/Y", "m", "()V"));

    EXPECT_EQ(Methods(), Texts{"java/x/Y.m()V()"});
}

TEST_F(FakeRuntimeTest, DecodesArgumentsOfEveryType) {
    const jobject object = NewObject("java/x/Y");
    const jmethodID numbers = Method("java/x/Y", "n", "(ZZBCSIJFD)V");
    const jmethodID references = Method("java/x/Y", "r", "(Ljava/lang/Object;Ljava/x/Y;[ILjava/lang/Class;)V");

    env->CallVoidMethod(object, numbers, JNI_TRUE, JNI_FALSE, jbyte{-128}, jchar{u'A'}, jshort{-32768},
                        jint{2147483647}, jlong{0x7fffffffffffffff}, static_cast<double>(0.1f), 0.1);
    env->CallVoidMethod(object, references, NewText(u"x"), object, nullptr, env->FindClass("java/x/Z"));

    EXPECT_EQ(Methods().at(1),
              "java/x/Y.n(ZZBCSIJFD)V(true, false, -128, \"A\", -32768, 2147483647, 9223372036854775807, 0.1, 0.1)");
    EXPECT_EQ(Methods().at(2),
              "java/x/Y.r(Ljava/lang/Object;Ljava/x/Y;[ILjava/lang/Class;)V"
              "(\"x\", java/x/Y@instance, null, class java/x/Z)");
}

TEST_F(FakeRuntimeTest, WritesArgumentsInAscii) {
    const jobject object = NewObject("java/x/Y");

    env->CallVoidMethod(object, Method("java/x/Y", "m", "(Ljava/lang/String;)V"),
                        NewText(std::u16string(u"a\0\u00fc\"\\\U0001f600", 7)));

    EXPECT_EQ(Methods().back(), "java/x/Y.m(Ljava/lang/String;)V(\"a\\u0000\\u00fc\\u0022\\u005c\\ud83d\\ude00\")");
}

TEST_F(FakeRuntimeTest, ReportsBadArguments) {
    const jobject object = NewObject("java/x/Y");
    const jmethodID method = Method("java/x/Y", "m", "(Ljava/lang/String;)V");
    const jstring dead = NewText(u"abc");
    env->DeleteLocalRef(dead);

    env->CallVoidMethod(object, method, dead);
    env->CallVoidMethod(object, method, object);

    EXPECT_EQ(Misuses(), (Texts{"CallVoidMethodV: reference used after deletion", "CallVoidMethodV: not a string"}));
    EXPECT_EQ(runtime.GetMethodLogSize(), 1);
}

TEST_F(FakeRuntimeTest, MethodsReturnTheirDefaults) {
    const jobject object = NewObject("java/x/Y");

    EXPECT_EQ(CallText(object, "toString"), "java/x/Y@instance");
    EXPECT_EQ(CallText(object, "getName"), "result");
    EXPECT_EQ(CallText(object, "getObject", "()Ljava/lang/Object;"), "(null)");
    EXPECT_EQ(CallText(NewText(u"abc"), "toString"), "abc");
    EXPECT_EQ(CallText(env->FindClass("java/x/Z"), "toString"), "class java/x/Z");
}

TEST_F(FakeRuntimeTest, MethodsReturnWhatWasOrdered) {
    const jobject object = NewObject("java/x/Y");
    runtime.MakeMethodReturnNull("java/x/Y", "getName");
    runtime.MakeMethodReturnText("java/x/Y", "toString", "\xc3\xbc");

    EXPECT_EQ(CallText(object, "getName"), "(null)");
    EXPECT_EQ(CallText(object, "toString"), "\xc3\xbc");
    EXPECT_FALSE(runtime.IsExceptionPending());
}

TEST_F(FakeRuntimeTest, MethodsThrowWhatWasOrdered) {
    const jobject object = NewObject("java/x/Y");
    const jmethodID constructor = Method("java/x/Y", "<init>", "()V");
    const jmethodID put = Method("java/x/Y", "put", "()V");
    const jmethodID get = Method("java/x/Y", "get", kStringGetter);
    runtime.MakeMethodThrow("java/x/Y", "<init>", {"java/x/InitException", "no object"});
    runtime.MakeMethodThrow("java/x/Y", "put", {"java/x/PutException", "no put"});
    runtime.MakeMethodThrow("java/x/Y", "get", {"java/x/GetException", "no get"});

    EXPECT_EQ(env->NewObject(env->FindClass("java/x/Y"), constructor), nullptr);
    EXPECT_EQ(TakeException(), "no object");
    env->CallVoidMethod(object, put);
    EXPECT_EQ(TakeException(), "no put");
    EXPECT_EQ(env->CallObjectMethod(object, get), nullptr);
    EXPECT_EQ(TakeException(), "no get");
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ReportsMethodIdsThatDoNotFit) {
    const jclass javaClass = env->FindClass("java/x/Y");
    const jobject object = NewObject("java/x/Y");
    const jmethodID ofAnother = Method("java/x/Z", "put", "()V");
    const jmethodID constructorOfAnother = Method("java/x/Z", "<init>", "()V");
    const jmethodID put = Method("java/x/Y", "put", "()V");
    const jmethodID getNumber = Method("java/x/Y", "getNumber", "()I");

    env->CallVoidMethod(object, ofAnother);
    env->CallVoidMethod(object, nullptr);
    env->CallVoidMethod(object, getNumber);
    env->CallObjectMethod(object, put);
    env->NewObject(javaClass, constructorOfAnother);
    env->NewObject(javaClass, put);

    EXPECT_EQ(Misuses(), (Texts{"CallVoidMethodV: method ID of another class: java/x/Z.put()V",
                                "CallVoidMethodV: unknown method ID",
                                "CallVoidMethodV: method ID of another kind: java/x/Y.getNumber()I",
                                "CallObjectMethodV: method ID of another kind: java/x/Y.put()V",
                                "NewObjectV: method ID of another class: java/x/Z.<init>()V",
                                "NewObjectV: method ID of another kind: java/x/Y.put()V"}));
}

TEST_F(FakeRuntimeTest, MethodsOfObjectServeEveryObject) {
    const jobject object = NewObject("java/x/Y");

    EXPECT_EQ(Bytes(env->CallObjectMethod(object, Method("java/lang/Object", "toString", kStringGetter))),
              "java/x/Y@instance");

    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ReportsCallsNotInTheFormWithAList) {
    const jclass javaClass = env->FindClass("java/x/Y");
    const jobject object = NewObject("java/x/Y");
    const jmethodID put = Method("java/x/Y", "put", "()V");

    EXPECT_EQ(env->functions->NewObject(env, javaClass, put), nullptr);
    EXPECT_EQ(env->functions->NewObjectA(env, javaClass, put, nullptr), nullptr);
    env->functions->CallVoidMethod(env, object, put);
    env->functions->CallVoidMethodA(env, object, put, nullptr);
    EXPECT_EQ(env->functions->CallObjectMethod(env, object, put), nullptr);
    EXPECT_EQ(env->functions->CallObjectMethodA(env, object, put, nullptr), nullptr);

    EXPECT_EQ(Misuses(), (Texts{"not the V form: NewObject", "not the V form: NewObjectA",
                                "not the V form: CallVoidMethod", "not the V form: CallVoidMethodA",
                                "not the V form: CallObjectMethod", "not the V form: CallObjectMethodA"}));
}

TEST_F(FakeRuntimeTest, ReportsFunctionsThatNobodyShouldCall) {
    const jobject object = NewObject("java/x/Y");

    EXPECT_EQ(env->CallDoubleMethod(object, nullptr), 0.0);
    EXPECT_EQ(env->GetFloatField(object, nullptr), 0.0f);
    EXPECT_EQ(env->GetStaticMethodID(nullptr, "m", "()V"), nullptr);
    EXPECT_EQ(env->MonitorEnter(object), 0);

    EXPECT_EQ(Misuses(), (Texts{"unexpected call: CallDoubleMethodV", "unexpected call: GetFloatField",
                                "unexpected call: GetStaticMethodID", "unexpected call: MonitorEnter"}));
    EXPECT_EQ(runtime.GetCallCount("GetFloatField"), 1);
}

/// Every slot but the reserved ones is called through a function without parameters but the environment: those really
/// there refuse at once with an exception pending, or have nothing to do.
TEST_F(FakeRuntimeTest, EverySlotIsCallable) {
    constexpr std::size_t kSlots = sizeof(JNINativeInterface_) / sizeof(void*);
    const auto* const slots = reinterpret_cast<void* const*>(env->functions);
    runtime.SetPendingException({});

    for (std::size_t i = 4; i < kSlots; ++i) {
        reinterpret_cast<void*(JNICALL*)(JNIEnv*, void*, void*, void*)>(slots[i])(env, nullptr, nullptr, nullptr);
    }

    EXPECT_EQ(runtime.GetCallLogSize(), static_cast<long>(kSlots - 4 + 1));
    EXPECT_STREQ(runtime.GetCallLogEntry(1), "GetVersion");
    EXPECT_STREQ(runtime.GetCallLogEntry(runtime.GetCallLogSize() - 1), "IsVirtualThread");
}
