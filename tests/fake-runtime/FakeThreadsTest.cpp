#include "FakeRuntimeFixture.h"

#include <thread>

TEST_F(FakeRuntimeTest, AttachesEachThreadWithAnEnvironmentOfItsOwn) {
    OnAttachedThread([this](JNIEnv* other) {
        void* again = nullptr;

        EXPECT_EQ(vm->AttachCurrentThread(&again, nullptr), JNI_OK);

        EXPECT_EQ(again, other);
        EXPECT_NE(other, env);
        EXPECT_EQ(runtime.GetAttachedThreads(), 1);
        EXPECT_TRUE(runtime.IsCreatorAttached());
        EXPECT_TRUE(runtime.IsThreadAttached());
    });
    EXPECT_EQ(runtime.GetAttachedThreads(), 0);
    EXPECT_EQ(Calls(),
              (Texts{"JNI_CreateJavaVM", "AttachCurrentThread", "AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(FakeRuntimeTest, DetachingAThreadThatIsNotAttachedFails) {
    std::thread([this] { EXPECT_EQ(vm->DetachCurrentThread(), JNI_EDETACHED); }).join();

    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, TheCreatorMayDetach) {
    EXPECT_EQ(vm->DetachCurrentThread(), JNI_OK);

    EXPECT_FALSE(runtime.IsCreatorAttached());
    EXPECT_FALSE(runtime.IsThreadAttached());
}

TEST_F(FakeRuntimeTest, CountsAThreadThatEndedAttached) {
    for (int i = 0; i < 3; ++i) {
        std::thread([this] {
            void* other = nullptr;
            vm->AttachCurrentThread(&other, nullptr);
        }).join();
    }

    EXPECT_EQ(runtime.GetAttachedThreads(), 3);
}

TEST_F(FakeRuntimeTest, DetachingReleasesReferencesAndFrames) {
    jobject local = nullptr;
    OnAttachedThread([&](JNIEnv* other) {
        other->PushLocalFrame(8);
        local = other->FindClass("java/x/Y");
        EXPECT_EQ(runtime.GetLocalReferencesOfThread(), 1);
        EXPECT_EQ(runtime.GetOpenFrames(), 1);
    });

    env->DeleteLocalRef(local);

    EXPECT_EQ(runtime.GetLocalReferences(), 0);
    EXPECT_EQ(runtime.GetOpenFrames(), 0);
    EXPECT_EQ(Misuses(), Texts{"DeleteLocalRef: reference used after its thread was detached"});
}

TEST_F(FakeRuntimeTest, ReportsTheEnvironmentOfAnotherThread) {
    std::thread([this] { EXPECT_EQ(env->FindClass("java/x/Y"), nullptr); }).join();

    EXPECT_EQ(Misuses(), Texts{"FindClass: environment of another thread"});
}

TEST_F(FakeRuntimeTest, ReportsTheEnvironmentOfADetachedThread) {
    JNIEnv* stale = nullptr;
    OnAttachedThread([&](JNIEnv* other) { stale = other; });

    EXPECT_EQ(stale->ExceptionCheck(), JNI_FALSE);

    EXPECT_EQ(Misuses(), Texts{"ExceptionCheck: environment of a thread that is detached"});
}

TEST_F(FakeRuntimeTest, AttachmentFailsByOrderWithItsCode) {
    runtime.Fail("AttachCurrentThread", 1, 1, FakeFaultMode::eWithException, JNI_ENOMEM);
    std::thread([this] {
        void* other = nullptr;

        EXPECT_EQ(vm->AttachCurrentThread(&other, nullptr), JNI_ENOMEM);

        EXPECT_EQ(other, nullptr);
        EXPECT_FALSE(runtime.IsThreadAttached());
    }).join();
}

TEST_F(FakeRuntimeTest, DetachmentFailsByOrder) {
    runtime.Fail("DetachCurrentThread", 1);

    OnAttachedThread([](JNIEnv*) {});

    EXPECT_EQ(runtime.GetAttachedThreads(), 1);
    EXPECT_EQ(runtime.GetFaultsFired(), 1);
}
