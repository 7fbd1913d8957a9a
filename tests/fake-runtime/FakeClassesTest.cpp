#include "FakeRuntimeFixture.h"

#include <string>

TEST_F(FakeRuntimeTest, ReportsObjectsOfAWrongKind) {
    const jobject object = NewObject("java/x/Y");

    EXPECT_EQ(env->GetMethodID(static_cast<jclass>(object), "m", "()V"), nullptr);
    EXPECT_EQ(env->GetStringChars(static_cast<jstring>(object), nullptr), nullptr);
    EXPECT_EQ(env->GetArrayLength(static_cast<jarray>(object)), 0);
    env->Throw(static_cast<jthrowable>(object));

    EXPECT_EQ(Misuses(), (Texts{"GetMethodID: not a class", "GetStringChars: not a string",
                                "GetArrayLength: not an array", "Throw: not a throwable"}));
}

TEST_F(FakeRuntimeTest, KnowsInstancesOfClasses) {
    const jobject object = NewObject("java/x/Y");

    EXPECT_EQ(env->IsInstanceOf(object, env->FindClass("java/x/Y")), JNI_TRUE);
    EXPECT_EQ(env->IsInstanceOf(object, env->FindClass("java/lang/Object")), JNI_TRUE);
    EXPECT_EQ(env->IsInstanceOf(object, env->FindClass("java/x/Z")), JNI_FALSE);
    EXPECT_EQ(env->IsInstanceOf(object, env->FindClass("java/lang/Throwable")), JNI_FALSE);
    EXPECT_EQ(env->IsInstanceOf(nullptr, env->FindClass("java/x/Z")), JNI_TRUE);
    EXPECT_EQ(env->IsInstanceOf(NewObject("java/x/YException"), env->FindClass("java/lang/Throwable")), JNI_TRUE);
    EXPECT_EQ(env->IsSameObject(env->GetObjectClass(object), env->FindClass("java/x/Y")), JNI_TRUE);
}

TEST_F(FakeRuntimeTest, MethodIdsAreStable) {
    EXPECT_EQ(Method("java/x/Y", "m", "()V"), Method("java/x/Y", "m", "()V"));
    EXPECT_NE(Method("java/x/Y", "m", "()V"), Method("java/x/Y", "m", "(I)V"));
    EXPECT_NE(Method("java/x/Y", "m", "()V"), Method("java/x/Z", "m", "()V"));
}

TEST_F(FakeRuntimeTest, RemovedClassesAreNotFound) {
    runtime.RemoveClass("java/x/Y");

    EXPECT_EQ(env->FindClass("java/x/Y"), nullptr);

    EXPECT_EQ(TakeException(), "java.lang.NoClassDefFoundError: java/x/Y");
}

TEST_F(FakeRuntimeTest, RemovedMethodsAreNotFound) {
    runtime.RemoveMethod("java/x/Y", "put", "(I)V");

    EXPECT_EQ(Method("java/x/Y", "put", "(I)V"), nullptr);

    EXPECT_EQ(TakeException(), "java.lang.NoSuchMethodError: put");
    EXPECT_NE(Method("java/x/Y", "put", "()V"), nullptr);
}

TEST_F(FakeRuntimeTest, ReportsNullArguments) {
    const jclass javaClass = env->FindClass("java/x/Y");

    EXPECT_EQ(env->FindClass(nullptr), nullptr);
    EXPECT_EQ(env->GetMethodID(javaClass, nullptr, "()V"), nullptr);
    EXPECT_EQ(env->GetMethodID(javaClass, "m", nullptr), nullptr);
    EXPECT_EQ(env->NewStringUTF(nullptr), nullptr);

    EXPECT_EQ(Misuses(), (Texts{"FindClass: null argument", "GetMethodID: null argument", "GetMethodID: null argument",
                                "NewStringUTF: null argument"}));
}

TEST_F(FakeRuntimeTest, ReportsAMalformedSignature) {
    for (const char* const signature : {"", "V", "(", "()", "(X)V", "(Ljava/x/Y)V", "()VV", "([)V"}) {
        EXPECT_EQ(Method("java/x/Y", "m", signature), nullptr);
        const Texts misuses = Misuses();
        EXPECT_EQ(misuses.empty() ? "" : misuses.back(), std::string("GetMethodID: not a signature: ") + signature);
    }
    EXPECT_EQ(runtime.GetMisuseCount(), 8);
}
