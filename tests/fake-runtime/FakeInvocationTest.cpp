#include "FakeRuntimeFixture.h"

#include <string>
#include <thread>

TEST_F(FakeInvocationTest, RemembersTheArgumentsOfTheCreation) {
    char first[] = "-Xrs";
    char second[] = "-Dx=y";
    JavaVMOption options[] = {{first, nullptr}, {second, nullptr}};
    arguments = {JNI_VERSION_1_8, 2, options, JNI_TRUE};

    EXPECT_EQ(Create(), JNI_OK);

    EXPECT_EQ(ReadAll(runtime, &IFakeRuntime::GetOption), (Texts{"-Xrs", "-Dx=y"}));
    EXPECT_EQ(runtime.GetOptionCount(), 2);
    EXPECT_EQ(runtime.GetRequestedVersion(), JNI_VERSION_1_8);
    EXPECT_TRUE(runtime.GetIgnoreUnrecognized());
    EXPECT_FALSE(runtime.WasOptionsPointerNull());
}

TEST_F(FakeInvocationTest, TellsThatTheOptionsPointerWasNull) {
    EXPECT_EQ(Create(), JNI_OK);

    EXPECT_TRUE(runtime.WasOptionsPointerNull());
    EXPECT_FALSE(runtime.GetIgnoreUnrecognized());
    EXPECT_EQ(runtime.GetOptionCount(), 0);
}

TEST_F(FakeInvocationTest, ReportsOptionsThatAreMissing) {
    arguments.nOptions = 1;

    EXPECT_EQ(Create(), JNI_EINVAL);

    EXPECT_EQ(Misuses(), Texts{"JNI_CreateJavaVM: no options where some are announced"});
}

TEST_F(FakeInvocationTest, RefusesAnUnknownVersion) {
    arguments.version = 77;

    EXPECT_EQ(Create(), JNI_EVERSION);

    EXPECT_EQ(runtime.GetMachinesAlive(), 0);
}

TEST_F(FakeInvocationTest, CreationReturnsTheOrderedResult) {
    runtime.SetCreateResult(JNI_ENOMEM);

    EXPECT_EQ(Create(), JNI_ENOMEM);

    EXPECT_EQ(vm, nullptr);
    EXPECT_EQ(runtime.GetMachinesAlive(), 0);
    EXPECT_FALSE(runtime.IsCreatorAttached());
}

TEST_F(FakeInvocationTest, CreationFailsByOrderWithItsCode) {
    runtime.Fail("JNI_CreateJavaVM", 1, 1, FakeFaultMode::eWithException, JNI_EINVAL);

    EXPECT_EQ(Create(), JNI_EINVAL);
    EXPECT_EQ(Create(), JNI_OK);
}

TEST_F(FakeInvocationTest, CreationGivesNoMachineByOrder) {
    runtime.SetCreateGivesNoMachine(true);

    EXPECT_EQ(Create(), JNI_OK);

    EXPECT_EQ(vm, nullptr);
    EXPECT_EQ(env, nullptr);
    EXPECT_EQ(runtime.GetMachinesAlive(), 0);
}

TEST_F(FakeInvocationTest, RefusesASecondMachineWhileOneIsAlive) {
    EXPECT_EQ(Create(), JNI_OK);

    EXPECT_EQ(Create(), JNI_EEXIST);

    EXPECT_EQ(runtime.GetMachinesAlive(), 1);
}

TEST_F(FakeInvocationTest, MakesMachinesOneAfterAnother) {
    EXPECT_EQ(Create(), JNI_OK);
    JavaVM* const first = vm;
    EXPECT_EQ(first->DestroyJavaVM(), JNI_OK);

    EXPECT_EQ(Create(), JNI_OK);

    EXPECT_NE(vm, first);
    EXPECT_EQ(runtime.GetMachinesAlive(), 1);
    EXPECT_EQ(runtime.GetCallCount("DestroyJavaVM"), 1);
}

TEST_F(FakeInvocationTest, ListsTheMachineThatIsAlive) {
    const auto list = FindExport<jint(JNICALL*)(JavaVM**, jsize, jsize*)>("JNI_GetCreatedJavaVMs");
    EXPECT_EQ(Create(), JNI_OK);
    JavaVM* listed = nullptr;
    jsize count = 0;

    EXPECT_EQ(list(&listed, 1, &count), JNI_OK);

    EXPECT_EQ(count, 1);
    EXPECT_EQ(listed, vm);
}

TEST_F(FakeRuntimeTest, ReportsTheUseOfADestroyedMachine) {
    EXPECT_EQ(vm->DestroyJavaVM(), JNI_OK);
    void* attached = nullptr;

    EXPECT_EQ(vm->AttachCurrentThread(&attached, nullptr), JNI_ERR);
    EXPECT_EQ(env->FindClass("java/x/Y"), nullptr);

    EXPECT_EQ(Misuses(), (Texts{"AttachCurrentThread: a machine that is destroyed",
                                "FindClass: environment of a thread that is detached"}));
    EXPECT_EQ(runtime.GetMachinesAlive(), 0);
}

TEST_F(FakeRuntimeTest, KeepsTheMachineWhenItsEndFailsByOrder) {
    runtime.Fail("DestroyJavaVM", 1, 1, FakeFaultMode::eWithException, JNI_ERR);

    EXPECT_EQ(vm->DestroyJavaVM(), JNI_ERR);

    EXPECT_EQ(runtime.GetMachinesAlive(), 1);
}

TEST_F(FakeRuntimeTest, KeepsWhatWasLeftWhenTheMachineWasDestroyed) {
    const jstring text = NewText(u"abc");
    env->NewGlobalRef(text);
    env->GetStringChars(text, nullptr);
    std::thread([this] {
        void* other = nullptr;
        vm->AttachCurrentThread(&other, nullptr);
    }).join();

    EXPECT_EQ(vm->DestroyJavaVM(), JNI_OK);

    EXPECT_EQ(runtime.GetGlobalReferencesAtDestroy(), 1);
    EXPECT_EQ(runtime.GetPinnedStringsAtDestroy(), 1);
    EXPECT_EQ(runtime.GetAttachedThreadsAtDestroy(), 1);
    EXPECT_EQ(runtime.GetGlobalReferences(), 0);
    EXPECT_EQ(runtime.GetLocalReferences(), 0);
    EXPECT_EQ(runtime.GetPinnedStrings(), 0);
    EXPECT_EQ(runtime.GetAttachedThreads(), 0);
    EXPECT_FALSE(runtime.IsCreatorAttached());
}

TEST_F(FakeRuntimeTest, ReportsAReferenceOfADestroyedMachine) {
    const jobject global = env->NewGlobalRef(NewText(u"abc"));
    EXPECT_EQ(vm->DestroyJavaVM(), JNI_OK);
    EXPECT_EQ(Create(), JNI_OK);

    env->DeleteGlobalRef(global);

    EXPECT_EQ(Misuses(), Texts{"DeleteGlobalRef: reference used after the machine was destroyed"});
}

TEST_F(FakeRuntimeTest, GetEnvKnowsAttachedThreadsAndVersions) {
    void* found = nullptr;

    EXPECT_EQ(vm->GetEnv(&found, JNI_VERSION_1_6), JNI_OK);
    EXPECT_EQ(found, env);
    EXPECT_EQ(vm->GetEnv(&found, 77), JNI_EVERSION);
    EXPECT_EQ(found, nullptr);
    std::thread([this] {
        void* other = nullptr;
        EXPECT_EQ(vm->GetEnv(&other, JNI_VERSION_1_6), JNI_EDETACHED);
        EXPECT_EQ(other, nullptr);
    }).join();
}
