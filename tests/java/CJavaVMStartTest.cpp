#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "CJavaVM.h"
#include "CLeakCheckedTest.h"
#include "CRealJvmTest.h"
#include "TestClasses.h"
#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;

// Each of these tests starts and ends the real machine, and so has a process of its own.
class CJavaVMStartTest : public CLeakCheckedTest {
protected:
    static std::wstring DllDirectory() {
        wchar_t directory[MAX_PATH] = L"unknown";
        return {directory, GetDllDirectoryW(MAX_PATH, directory)};
    }

    /// Starts the real machine.
    void Start(CJavaVM& vm) {
        ASSERT_EQ(vm.CreateJavaVM(MakeTestOptions()), 0);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
    }

    static bool IsRuntimeMapped() { return GetModuleHandleW(L"jvm.dll") != nullptr; }
};

TEST_F(CJavaVMStartTest, NothingIsLoadedBeforeTheStart) {
    CJavaVM vm(TestPaths::kRealRuntime);

    EXPECT_FALSE(IsRuntimeMapped());
    EXPECT_EQ(vm.GetEnv(), nullptr);
}

TEST_F(CJavaVMStartTest, TheStartGivesTheCreatorAnEnvironment) {
    CJavaVM vm(TestPaths::kRealRuntime);

    Start(vm);

    ASSERT_NE(vm.GetEnv(), nullptr);
    EXPECT_GE(vm.GetEnv()->GetVersion(), JNI_VERSION_1_6);
    vm.Shutdown(false);
}

TEST_F(CJavaVMStartTest, TheOptionsReachTheMachine) {
    CJavaVM vm(TestPaths::kRealRuntime);

    Start(vm);

    {
        const auto received = vm.LoadClass(Received::kClass, Received::kRows, std::size(Received::kRows));
        EXPECT_NE(received, nullptr) << "the class path";
    }
    vm.Shutdown(false);
}

TEST_F(CJavaVMStartTest, AnUnknownOptionMakesTheStartFail) {
    CJavaVM vm(TestPaths::kRealRuntime);

    EXPECT_EQ(vm.CreateJavaVM({"-Xno-such-option"}), JNI_ERR);
    EXPECT_EQ(vm.GetEnv(), nullptr);
}

TEST_F(CJavaVMStartTest, TheDllDirectoryIsResetAfterTheLoad) {
    SetDllDirectoryW(L"C:\\windows");
    CJavaVM vm(TestPaths::kRealRuntime);

    Start(vm);

    EXPECT_EQ(DllDirectory(), L"");
    vm.Shutdown(false);
}

TEST_F(CJavaVMStartTest, AMissingRuntimeIsAModuleNotFound) {
    SetDllDirectoryW(L"C:\\windows");
    CJavaVM vm(L"C:\\no\\such\\runtime\\");

    EXPECT_EQ(vm.CreateJavaVM(MakeTestOptions()), static_cast<long>(0x8007007E));
    EXPECT_EQ(DllDirectory(), L"");
    EXPECT_EQ(vm.GetEnv(), nullptr);
}

TEST_F(CJavaVMStartTest, ADirectoryWithoutItsBackslashGluesBinToItsName) {
    std::wstring directory(TestPaths::kRealRuntime);
    directory.pop_back();
    CJavaVM vm(directory);

    EXPECT_EQ(vm.CreateJavaVM(MakeTestOptions()), static_cast<long>(0x8007007E));
    EXPECT_FALSE(IsRuntimeMapped());
}

TEST_F(CJavaVMStartTest, AnEmptyDirectoryLoadsNothingFromTheCurrentOne) {
    const fs::path before = fs::current_path();
    fs::current_path(TestPaths::kFakeRuntime);  // where "bin\server\jvm.dll" would be found
    CJavaVM vm(L"");

    const long status = vm.CreateJavaVM(MakeTestOptions());
    fs::current_path(before);

    EXPECT_EQ(status, static_cast<long>(0x8007007E));
    EXPECT_FALSE(IsRuntimeMapped());
}

TEST_F(CJavaVMStartTest, AnAbandonedMachineIsForgottenAndStaysMapped) {
    {
        CJavaVM vm(TestPaths::kRealRuntime);
        Start(vm);

        vm.Shutdown(false);

        EXPECT_EQ(vm.GetEnv(), nullptr);
        EXPECT_EQ(vm.AttachCurrentThread(), JNI_ERR);
        EXPECT_EQ(vm.DetachCurrentThread(), JNI_ERR);
    }

    EXPECT_TRUE(IsRuntimeMapped());
}

TEST_F(CJavaVMStartTest, ASecondMachineAfterAnAbandonedOneIsRefusedByTheRuntime) {
    CJavaVM first(TestPaths::kRealRuntime);
    Start(first);
    first.Shutdown(false);

    EXPECT_EQ(first.CreateJavaVM(MakeTestOptions()), JNI_EEXIST);
    EXPECT_EQ(CJavaVM(TestPaths::kRealRuntime).CreateJavaVM(MakeTestOptions()), JNI_EEXIST);
}

TEST_F(CJavaVMStartTest, AMachineLeftToItsObjectIsDestroyedWithIt) {
    {
        CJavaVM vm(TestPaths::kRealRuntime);
        Start(vm);
    }

    // What a destroyed machine, unlike a running one, answers to a second start.
    EXPECT_EQ(CJavaVM(TestPaths::kRealRuntime).CreateJavaVM(MakeTestOptions()), JNI_ERR);
    EXPECT_TRUE(IsRuntimeMapped());
}

TEST_F(CJavaVMStartTest, ShutdownReleasesTheCachedClasses) {
    CJavaVM vm(TestPaths::kRealRuntime);
    Start(vm);
    const std::weak_ptr<CJavaClass> cached =
        vm.LoadClass(Received::kClass, Received::kRows, std::size(Received::kRows));
    ASSERT_FALSE(cached.expired());

    vm.Shutdown(false);

    EXPECT_TRUE(cached.expired());
    EXPECT_EQ(vm.GetClass(Received::kClass), nullptr);
}

TEST_F(CJavaVMStartTest, WrappersThatOutliveTheMachineFallSilently) {
    CJavaVM vm(TestPaths::kRealRuntime);
    Start(vm);
    auto received = vm.LoadClass(Received::kClass, Received::kRows, std::size(Received::kRows));
    auto object = received->NewObject(Received::kCtor);
    auto text = vm.NewString(L"text");

    vm.Shutdown(false);

    object->CallVoidMethod(Received::kTakeInt, 1);
    EXPECT_EQ(object->CallStringMethod(Received::kTell), nullptr);
    EXPECT_EQ(received->NewObject(Received::kCtor), nullptr);
    EXPECT_EQ(vm.NewString(L"text"), nullptr);
    std::wstring told(L"earlier");
    EXPECT_FALSE(text->GetString(told));
    EXPECT_FALSE(vm.GetJavaException(told));
    EXPECT_EQ(told, L"earlier");
    text.reset();
    object.reset();
    received.reset();
}

TEST_F(CJavaVMStartTest, AProcessEndsWithItsOwnCodeWhileTheMachineRuns) {
    EXPECT_EXIT(
        {
            static CJavaVM vm(TestPaths::kRealRuntime);  // destroyed on the way out, its machine still running
            static_cast<void>(vm.CreateJavaVM(MakeTestOptions()));
            std::exit(vm.GetEnv() ? 42 : 1);
        },
        testing::ExitedWithCode(42), "");
}

}  // namespace
