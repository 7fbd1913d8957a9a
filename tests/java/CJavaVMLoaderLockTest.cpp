// Under the loader lock Java is not called: builds with assertions end the process there.

#ifndef NDEBUG

#include "CFakeJvmTest.h"
#include "CLoaderLockScope.h"
#include "LoaderLockRule.h"
#include "TestPaths.h"

namespace {

constexpr char kUnderTheLoaderLock[] = "Java is called under the loader lock";

class CJavaVMLoaderLockDeathTest : public CFakeJvmTest {};

TEST_F(CJavaVMLoaderLockDeathTest, AskingForAnEnvironmentEndsTheProcess) {
    EXPECT_EXIT(
        {
            const CLoaderLockScope loaderLock;
            static_cast<void>(VM().NewString(L"text"));
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(CJavaVMLoaderLockDeathTest, AttachingEndsTheProcess) {
    EXPECT_EXIT(
        {
            VM().ForgetCurrentThread();
            const CLoaderLockScope loaderLock;
            static_cast<void>(VM().AttachCurrentThread());
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(CJavaVMLoaderLockDeathTest, StartingAMachineEndsTheProcess) {
    EXPECT_EXIT(
        {
            EndMachine();
            CJavaVM vm(TestPaths::kFakeRuntime);
            const CLoaderLockScope loaderLock;
            static_cast<void>(vm.CreateJavaVM({}));
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(CJavaVMLoaderLockDeathTest, DestroyingTheMachineEndsTheProcess) {
    EXPECT_EXIT(
        {
            const CLoaderLockScope loaderLock;
            VM().Shutdown(true);
        },
        testing::ExitedWithCode(3), kUnderTheLoaderLock);
}

TEST_F(CJavaVMLoaderLockDeathTest, WithAnExemptionJavaIsCalled) {
    const CLoaderLockScope loaderLock;
    const CLoaderLockExemption exemption;

    EXPECT_NE(VM().GetEnv(), nullptr);
}

TEST_F(CJavaVMLoaderLockDeathTest, AThreadThatJavaDoesNotKnowMayAskForItsEnvironment) {
    VM().ForgetCurrentThread();
    {
        const CLoaderLockScope loaderLock;
        EXPECT_EQ(VM().GetEnv(), nullptr);
    }
    EXPECT_EQ(VM().AttachCurrentThread(), JNI_OK);
}

}  // namespace

#endif
