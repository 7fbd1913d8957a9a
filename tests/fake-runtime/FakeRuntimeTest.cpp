#include "FakeRuntimeFixture.h"

#include <thread>
#include <vector>

TEST_F(FakeRuntimeTest, LogsCallsInOrder) {
    env->FindClass("java/x/Y");
    env->ExceptionCheck();
    vm->DetachCurrentThread();
    vm->DestroyJavaVM();

    EXPECT_EQ(Calls(),
              (Texts{"JNI_CreateJavaVM", "FindClass", "ExceptionCheck", "DetachCurrentThread", "DestroyJavaVM"}));
    EXPECT_EQ(runtime.GetCallCount("FindClass"), 1);
    EXPECT_EQ(runtime.GetCallCount("NewString"), 0);
}

TEST_F(FakeRuntimeTest, CountsWithoutLogging) {
    runtime.SetCallLogEnabled(false);

    env->ExceptionCheck();

    EXPECT_EQ(Calls(), Texts{"JNI_CreateJavaVM"});
    EXPECT_EQ(runtime.GetCallCount("ExceptionCheck"), 1);
}

TEST_F(FakeRuntimeTest, BearsHundredsOfThousandsOfCalls) {
    constexpr int kRounds = 200000;

    for (int i = 0; i < kRounds; ++i) {
        env->DeleteLocalRef(env->FindClass("java/x/Y"));
    }

    EXPECT_EQ(runtime.GetCallCount("FindClass"), kRounds);
    EXPECT_EQ(runtime.GetCallLogSize(), 100000);
    EXPECT_EQ(runtime.GetLocalReferences(), 0);
    EXPECT_EQ(runtime.GetPeakLocalReferences(), 1);
}

TEST_F(FakeRuntimeTest, ServesManyThreadsAtOnce) {
    constexpr int kRounds = 2000;
    const auto work = [this] {
        void* attached = nullptr;
        vm->AttachCurrentThread(&attached, nullptr);
        auto* const own = static_cast<JNIEnv*>(attached);
        for (int i = 0; i < kRounds; ++i) {
            own->DeleteGlobalRef(own->NewGlobalRef(own->FindClass("java/x/Y")));
        }
        vm->DetachCurrentThread();
    };
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(runtime.GetCallCount("NewGlobalRef"), 8 * kRounds);
    EXPECT_EQ(runtime.GetGlobalReferences(), 0);
    EXPECT_EQ(runtime.GetLocalReferences(), 0);
    EXPECT_EQ(runtime.GetAttachedThreads(), 0);
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ResetForgetsEverything) {
    runtime.RemoveClass("java/x/Y");
    runtime.SetCreateResult(JNI_ERR);
    runtime.SetCreateGivesNoMachine(true);
    runtime.Fail("*", 1, -1);
    runtime.SetCallLogEnabled(false);
    env->PushLocalFrame(8);
    env->DeleteLocalRef(env->NewGlobalRef(nullptr));
    JNIEnv* const stale = env;

    runtime.Reset();

    EXPECT_EQ(runtime.GetMachinesAlive(), 0);
    EXPECT_EQ(runtime.GetLocalReferences() + runtime.GetPeakLocalReferences() + runtime.GetGlobalReferences(), 0);
    EXPECT_EQ(runtime.GetOpenFrames() + runtime.GetPinnedStrings() + runtime.GetAttachedThreads(), 0);
    EXPECT_EQ(runtime.GetCallLogSize() + runtime.GetMethodLogSize() + runtime.GetMisuseCount(), 0);
    EXPECT_FALSE(runtime.IsThreadAttached());
    EXPECT_EQ(Create(), JNI_OK);
    EXPECT_NE(env->FindClass("java/x/Y"), nullptr);
    EXPECT_EQ(Calls(), (Texts{"JNI_CreateJavaVM", "FindClass"}));
    EXPECT_EQ(stale->FindClass("java/x/Y"), nullptr);
    EXPECT_EQ(Misuses(), Texts{"FindClass: environment of a thread that is detached"});
}

TEST(OtherRuntimesTest, OneIsALibraryThatIsNoRuntime) {
    const HMODULE library = LoadRuntime(TestPaths::kNotJavaRuntime);

    EXPECT_NE(library, nullptr);
    EXPECT_EQ(GetProcAddress(library, "JNI_CreateJavaVM"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    FreeLibrary(library);
}

TEST(OtherRuntimesTest, OneIsNoLibrary) {
    EXPECT_EQ(LoadRuntime(TestPaths::kDamagedRuntime), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
}
