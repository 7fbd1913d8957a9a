#include "FakeRuntimeFixture.h"

TEST_F(FakeRuntimeTest, CountsReferencesAndTheirPeaks) {
    const jclass local = env->FindClass("java/x/Y");
    const jobject second = env->NewLocalRef(local);
    const jobject global = env->NewGlobalRef(local);
    env->DeleteLocalRef(second);

    EXPECT_EQ(runtime.GetLocalReferences(), 1);
    EXPECT_EQ(runtime.GetPeakLocalReferences(), 2);
    EXPECT_EQ(runtime.GetLocalReferencesOfThread(), 1);
    EXPECT_EQ(runtime.GetGlobalReferences(), 1);
    OnAttachedThread([this](JNIEnv*) { EXPECT_EQ(runtime.GetLocalReferencesOfThread(), 0); });

    env->DeleteGlobalRef(global);
    EXPECT_EQ(runtime.GetGlobalReferences(), 0);
    EXPECT_EQ(runtime.GetPeakGlobalReferences(), 1);
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, NeverReusesAReference) {
    const jobject first = NewText(u"abc");
    env->DeleteLocalRef(first);

    EXPECT_NE(NewText(u"abc"), first);
}

TEST_F(FakeRuntimeTest, PopsAFrameWithItsReferencesButTheResult) {
    const jstring outer = NewText(u"outer");
    EXPECT_EQ(env->PushLocalFrame(8), JNI_OK);
    NewText(u"inner");
    const jstring result = NewText(u"result");
    EXPECT_EQ(runtime.GetOpenFrames(), 1);

    const jobject kept = env->PopLocalFrame(result);

    EXPECT_EQ(Bytes(kept), "result");
    EXPECT_EQ(Bytes(outer), "outer");
    EXPECT_EQ(runtime.GetLocalReferences(), 2);
    EXPECT_EQ(runtime.GetOpenFrames(), 0);
}

TEST_F(FakeRuntimeTest, AllowsTheDeletionOfNull) {
    env->DeleteLocalRef(nullptr);
    env->DeleteGlobalRef(nullptr);

    EXPECT_EQ(env->NewGlobalRef(nullptr), nullptr);
    EXPECT_EQ(env->NewLocalRef(nullptr), nullptr);
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ReportsANullReference) {
    EXPECT_EQ(env->GetObjectClass(nullptr), nullptr);

    EXPECT_EQ(Misuses(), Texts{"GetObjectClass: null reference"});
}

TEST_F(FakeRuntimeTest, ReportsAnUnknownReference) {
    int notAReference = 0;

    EXPECT_EQ(env->NewGlobalRef(reinterpret_cast<jobject>(&notAReference)), nullptr);
    env->DeleteLocalRef(reinterpret_cast<jobject>(&notAReference));

    EXPECT_EQ(Misuses(), (Texts{"NewGlobalRef: unknown reference", "DeleteLocalRef: unknown reference"}));
}

TEST_F(FakeRuntimeTest, ReportsAReferenceUsedAfterDeletion) {
    const jstring local = NewText(u"abc");
    env->DeleteLocalRef(local);

    EXPECT_EQ(env->GetStringLength(local), 0);

    EXPECT_EQ(Misuses(), Texts{"GetStringLength: reference used after deletion"});
}

TEST_F(FakeRuntimeTest, ReportsAReferenceUsedAfterItsFrame) {
    env->PushLocalFrame(8);
    const jstring local = NewText(u"abc");
    env->PopLocalFrame(nullptr);

    EXPECT_EQ(env->NewLocalRef(local), nullptr);
    env->DeleteLocalRef(local);

    EXPECT_EQ(Misuses(), (Texts{"NewLocalRef: reference used after its frame was popped",
                                "DeleteLocalRef: reference used after its frame was popped"}));
}

TEST_F(FakeRuntimeTest, ReportsAReferenceUsedAfterReset) {
    const jstring local = NewText(u"abc");
    runtime.Reset();
    EXPECT_EQ(Create(), JNI_OK);

    env->DeleteLocalRef(local);

    EXPECT_EQ(Misuses(), Texts{"DeleteLocalRef: reference used after Reset"});
}

TEST_F(FakeRuntimeTest, ReportsALocalReferenceOfAnotherThread) {
    const jstring local = NewText(u"abc");

    OnAttachedThread([&](JNIEnv* other) {
        EXPECT_EQ(other->NewGlobalRef(local), nullptr);
        other->DeleteLocalRef(local);
    });

    EXPECT_EQ(Misuses(), (Texts{"NewGlobalRef: local reference of another thread",
                                "DeleteLocalRef: local reference of another thread"}));
    EXPECT_EQ(runtime.GetLocalReferences(), 1);
}

TEST_F(FakeRuntimeTest, GlobalReferencesServeEveryThread) {
    const auto global = static_cast<jstring>(env->NewGlobalRef(NewText(u"abc")));

    OnAttachedThread([&](JNIEnv* other) {
        EXPECT_EQ(other->GetStringLength(global), 3);
        other->DeleteGlobalRef(global);
    });

    EXPECT_EQ(Misuses(), Texts{});
    EXPECT_EQ(runtime.GetGlobalReferences(), 0);
}

TEST_F(FakeRuntimeTest, ReportsALocalReferenceDeletedAsAGlobalOne) {
    env->DeleteGlobalRef(NewText(u"abc"));

    EXPECT_EQ(Misuses(), Texts{"DeleteGlobalRef: local reference deleted as a global one"});
    EXPECT_EQ(runtime.GetLocalReferences(), 1);
}

TEST_F(FakeRuntimeTest, ReportsAGlobalReferenceDeletedAsALocalOne) {
    env->DeleteLocalRef(env->NewGlobalRef(NewText(u"abc")));

    EXPECT_EQ(Misuses(), Texts{"DeleteLocalRef: global reference deleted as a local one"});
    EXPECT_EQ(runtime.GetGlobalReferences(), 1);
}

TEST_F(FakeRuntimeTest, ReportsADoubleDeletion) {
    const jstring local = NewText(u"abc");
    const jobject global = env->NewGlobalRef(local);

    env->DeleteLocalRef(local);
    env->DeleteLocalRef(local);
    env->DeleteGlobalRef(global);
    env->DeleteGlobalRef(global);

    EXPECT_EQ(Misuses(),
              (Texts{"DeleteLocalRef: reference deleted twice", "DeleteGlobalRef: reference deleted twice"}));
}

TEST_F(FakeRuntimeTest, ReportsAFrameThatWasNotPushed) {
    EXPECT_EQ(env->PopLocalFrame(nullptr), nullptr);

    EXPECT_EQ(Misuses(), Texts{"PopLocalFrame: no frame to pop"});
}

TEST_F(FakeRuntimeTest, ReportsANegativeCapacity) {
    env->PushLocalFrame(-1);
    env->EnsureLocalCapacity(-1);

    EXPECT_EQ(Misuses(), (Texts{"PushLocalFrame: negative capacity", "EnsureLocalCapacity: negative capacity"}));
}

TEST_F(FakeRuntimeTest, ComparesObjectsNotReferences) {
    const jstring text = NewText(u"abc");

    EXPECT_EQ(env->IsSameObject(text, env->NewGlobalRef(text)), JNI_TRUE);
    EXPECT_EQ(env->IsSameObject(text, NewText(u"abc")), JNI_FALSE);
    EXPECT_EQ(env->IsSameObject(nullptr, nullptr), JNI_TRUE);
    EXPECT_EQ(env->IsSameObject(text, nullptr), JNI_FALSE);
}
