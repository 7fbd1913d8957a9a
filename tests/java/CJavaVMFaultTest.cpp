#include <algorithm>
#include <new>
#include <set>
#include <thread>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHresultException.h"
#include "CImportHook.h"
#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "RunOnNewThread.h"
#include "TestClasses.h"
#include "TestPaths.h"

namespace {

using Names = std::vector<std::string>;

class CJavaVMFaultTest : public CFakeJvmTest {
protected:
    template <std::size_t count>
    std::shared_ptr<CJavaClass> Load(const char* className, const JavaMethodBinding (&rows)[count]) {
        return VM().LoadClass(className, rows, count);
    }
};

constexpr JavaMethodBinding kTwoRows[] = {{"ctor()", "<init>", "()V"}, {"go", "go", "(I)V"}};

// ---- start ----------------------------------------------------------------------------------------------

TEST_F(CJavaVMFaultTest, TheOptionsAreHandedOverInTheirOrder) {
    EndMachine();
    CJavaVM vm(TestPaths::kFakeRuntime);

    ASSERT_EQ(vm.CreateJavaVM({"-Djava.class.path=a;b", "-Xrs", ""}), JNI_OK);

    EXPECT_EQ(Fake().GetRequestedVersion(), 0x00010006);
    EXPECT_FALSE(Fake().GetIgnoreUnrecognized());
    ASSERT_EQ(Fake().GetOptionCount(), 3);
    EXPECT_STREQ(Fake().GetOption(0), "-Djava.class.path=a;b");
    EXPECT_STREQ(Fake().GetOption(1), "-Xrs");
    EXPECT_STREQ(Fake().GetOption(2), "");
}

TEST_F(CJavaVMFaultTest, WithoutOptionsThereIsNoOptionArray) {
    EXPECT_EQ(Fake().GetOptionCount(), 0);
    EXPECT_TRUE(Fake().WasOptionsPointerNull());
}

TEST_F(CJavaVMFaultTest, AFailedStartReturnsJnisCodeAndLeavesNoEnvironment) {
    EndMachine();
    for (const jint code : {JNI_ERR, JNI_EVERSION, JNI_ENOMEM, JNI_EEXIST, JNI_EINVAL}) {
        Fake().SetCreateResult(code);
        CJavaVM vm(TestPaths::kFakeRuntime);

        EXPECT_EQ(vm.CreateJavaVM({"-Xrs"}), code);
        EXPECT_EQ(vm.GetEnv(), nullptr);
        EXPECT_EQ(vm.AttachCurrentThread(), JNI_ERR);
    }
}

TEST_F(CJavaVMFaultTest, AStartMaySucceedAfterOneThatFailed) {
    EndMachine();
    CJavaVM vm(TestPaths::kFakeRuntime);
    Fake().SetCreateResult(JNI_ENOMEM);
    ASSERT_EQ(vm.CreateJavaVM({}), JNI_ENOMEM);
    Fake().SetCreateResult(JNI_OK);

    EXPECT_EQ(vm.CreateJavaVM({}), JNI_OK);
    EXPECT_NE(vm.GetEnv(), nullptr);
}

TEST_F(CJavaVMFaultTest, ARuntimeThatGivesNoMachineIsBorne) {
    EndMachine();
    Fake().SetCreateGivesNoMachine(true);
    CJavaVM vm(TestPaths::kFakeRuntime);

    EXPECT_EQ(vm.CreateJavaVM({}), JNI_OK);
    EXPECT_EQ(vm.GetEnv(), nullptr);
    EXPECT_EQ(vm.LoadClass("java/x/Y", kTwoRows, 2), nullptr);
}

TEST_F(CJavaVMFaultTest, ASecondCreateDoesNotCallTheRuntime) {
    EXPECT_EQ(VM().CreateJavaVM({"-Xrs"}), 0);
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
}

BOOL WINAPI RefuseToInitialize(CRITICAL_SECTION*, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

int g_locksToMake = 0;
decltype(&InitializeCriticalSectionAndSpinCount) g_initialize = nullptr;
BOOL WINAPI RefuseTheSecond(CRITICAL_SECTION* section, DWORD spinCount) {
    return --g_locksToMake < 0 ? RefuseToInitialize(section, spinCount) : g_initialize(section, spinCount);
}

TEST_F(CJavaVMFaultTest, ALockThatCannotBeMadeIsThrownAndTheOtherIsGivenBack) {
    void** const slot = FindImportSlot(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount");
    g_initialize = reinterpret_cast<decltype(g_initialize)>(*slot);
    const CImportHook hook(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount",
                           AddressOf(&RefuseTheSecond));
    for (const int available : {0, 1}) {
        g_locksToMake = available;
        try {
            const CJavaVM vm(TestPaths::kFakeRuntime);
            FAIL() << "nothing was thrown";
        } catch (const CHresultException& exception) {
            EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80070008));
        }
    }
}

// ---- threads --------------------------------------------------------------------------------------------

TEST_F(CJavaVMFaultTest, GetEnvNeverAsksTheMachine) {
    EXPECT_NE(VM().GetEnv(), nullptr);
    RunOnNewThread([&] { EXPECT_EQ(VM().GetEnv(), nullptr); });

    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaVMFaultTest, SecondAttachReturnsZeroWithoutCallingTheMachine) {
    EXPECT_EQ(VM().AttachCurrentThread(), 0);
    RunOnNewThread([&] {
        EXPECT_EQ(VM().AttachCurrentThread(), 0);
        EXPECT_EQ(VM().AttachCurrentThread(), 0);
        EXPECT_EQ(VM().DetachCurrentThread(), 0);
    });

    EXPECT_EQ(Calls(), (Names{"AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(CJavaVMFaultTest, AFailedAttachIsReturnedUnchangedAndNothingIsRecorded) {
    Fake().Fail("AttachCurrentThread", 1, 1, FakeFaultMode::eWithoutException, JNI_ENOMEM);

    RunOnNewThread([&] {
        EXPECT_EQ(VM().AttachCurrentThread(), JNI_ENOMEM);
        EXPECT_EQ(VM().GetEnv(), nullptr);
    });
}

TEST_F(CJavaVMFaultTest, AFailedDetachIsReturnedUnchangedAndTheEnvironmentStays) {
    RunOnNewThread([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);
        JNIEnv* const env = VM().GetEnv();
        Fake().Fail("DetachCurrentThread", 1, 1, FakeFaultMode::eWithoutException, JNI_EVERSION);

        EXPECT_EQ(VM().DetachCurrentThread(), JNI_EVERSION);
        EXPECT_EQ(VM().GetEnv(), env);
        EXPECT_EQ(VM().DetachCurrentThread(), 0);
        EXPECT_EQ(VM().GetEnv(), nullptr);
    });
}

TEST_F(CJavaVMFaultTest, DetachingTheCreatorDoesNotCallTheMachine) {
    EXPECT_EQ(VM().DetachCurrentThread(), 0);
    EXPECT_NE(VM().GetEnv(), nullptr);
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaVMFaultTest, WithoutAMachineAttachAndDetachFailAndTouchNothing) {
    EndMachine();
    ForgetCalls();
    CJavaVM vm(TestPaths::kFakeRuntime);

    EXPECT_EQ(vm.AttachCurrentThread(), JNI_ERR);
    EXPECT_EQ(vm.DetachCurrentThread(), JNI_ERR);
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaVMFaultTest, AnAttachmentThatCannotBeRecordedIsUndone) {
    RunOnNewThread([&] {
        {
            const CAllocationFault fault(1);
            EXPECT_THROW(static_cast<void>(VM().AttachCurrentThread()), std::bad_alloc);
            EXPECT_TRUE(fault.HasFired());
        }
        EXPECT_EQ(VM().GetEnv(), nullptr);
        EXPECT_FALSE(Fake().IsThreadAttached());
    });
}

// ---- classes --------------------------------------------------------------------------------------------

TEST_F(CJavaVMFaultTest, LoadingAClassFindsItAndItsMethodsInTheirOrder) {
    ASSERT_NE(Load("java/x/Y", kTwoRows), nullptr);

    EXPECT_EQ(Calls(), (Names{"FindClass", "NewGlobalRef", "DeleteLocalRef", "GetMethodID", "GetMethodID"}));
}

TEST_F(CJavaVMFaultTest, LoadingAClassWithoutRowsFindsTheClassAlone) {
    ASSERT_NE(VM().LoadClass("java/x/Y", kTwoRows, 0), nullptr);

    EXPECT_EQ(Calls(), (Names{"FindClass", "NewGlobalRef", "DeleteLocalRef"}));
}

TEST_F(CJavaVMFaultTest, ACachedClassIsReturnedWithoutCallingTheMachine) {
    const auto loaded = Load("java/x/Y", kTwoRows);
    ForgetCalls();

    EXPECT_EQ(Load("java/x/Y", kTwoRows), loaded);
    EXPECT_EQ(VM().GetClass("java/x/Y"), loaded);
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaVMFaultTest, AClassOfWhichOneCallFailsIsNotKept) {
    for (const char* const function : {"FindClass", "NewGlobalRef", "GetMethodID"}) {
        for (const FakeFaultMode mode : {FakeFaultMode::eWithException, FakeFaultMode::eWithoutException}) {
            Fake().Fail(function, 1, 1, mode);

            EXPECT_EQ(Load("java/x/Y", kTwoRows), nullptr) << function;
            EXPECT_EQ(Fake().GetFaultsFired(), 1) << function;
            EXPECT_EQ(VM().GetClass("java/x/Y"), nullptr) << function;
            EXPECT_EQ(Fake().GetGlobalReferences(), 0) << function;
            Env()->ExceptionClear();
        }
    }
}

TEST_F(CJavaVMFaultTest, AMethodMissingFromTheSecondRowStopsTheBinding) {
    Fake().RemoveMethod("java/x/Y", "go", "(I)V");

    EXPECT_EQ(Load("java/x/Y", kTwoRows), nullptr);
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
    EXPECT_TRUE(Env()->ExceptionCheck());
    Env()->ExceptionClear();
}

TEST_F(CJavaVMFaultTest, LoadingBearsEveryFailedAllocation) {
    bool hasFired = true;
    for (long nth = 1; hasFired; ++nth) {
        const CAllocationFault fault(nth);
        try {
            ASSERT_NE(Load("java/x/Y", kTwoRows), nullptr);
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(VM().GetClass("java/x/Y"), nullptr);
            EXPECT_EQ(Fake().GetGlobalReferences(), 0);
        }
        hasFired = fault.HasFired();
    }
}

// Every lock that the calling thread holds at once, as far as this program takes them through its imports.
std::set<CRITICAL_SECTION*> g_held;
std::size_t g_mostHeld = 0;
DWORD g_watchedThread = 0;
decltype(&EnterCriticalSection) g_enter = nullptr;
decltype(&LeaveCriticalSection) g_leave = nullptr;
void WINAPI NoteEnter(CRITICAL_SECTION* section) {
    g_enter(section);
    if (GetCurrentThreadId() == g_watchedThread) {
        g_held.insert(section);
        g_mostHeld = std::max(g_mostHeld, g_held.size());
    }
}
void WINAPI NoteLeave(CRITICAL_SECTION* section) {
    if (GetCurrentThreadId() == g_watchedThread) {
        g_held.erase(section);
    }
    g_leave(section);
}

TEST_F(CJavaVMFaultTest, TheTwoLocksAreNeverHeldTogether) {
    const HMODULE program = GetModuleHandleW(nullptr);
    g_enter = reinterpret_cast<decltype(g_enter)>(*FindImportSlot(program, "EnterCriticalSection"));
    g_leave = reinterpret_cast<decltype(g_leave)>(*FindImportSlot(program, "LeaveCriticalSection"));
    g_watchedThread = GetCurrentThreadId();
    g_mostHeld = 0;
    const CImportHook enter(program, "EnterCriticalSection", AddressOf(&NoteEnter));
    const CImportHook leave(program, "LeaveCriticalSection", AddressOf(&NoteLeave));

    ASSERT_NE(Load("java/x/Y", kTwoRows), nullptr);
    Fake().RemoveMethod("java/x/Z", "go", "(I)V");
    ASSERT_EQ(Load("java/x/Z", kTwoRows), nullptr) << "which dies with a reference of its own";
    std::wstring text;
    ASSERT_TRUE(VM().GetJavaException(text));
    ExpectKeptLocals(1);
    VM().Shutdown(true);

    EXPECT_EQ(g_mostHeld, 1U);
    EXPECT_TRUE(g_held.empty());
    EXPECT_EQ(Fake().GetGlobalReferencesAtDestroy(), 0);
    ExpectKeptLocals(0);  // went with the machine
}

// ---- exceptions -----------------------------------------------------------------------------------------

FakeException Saying(const char* description) {
    FakeException exception;
    exception.description = description;
    return exception;
}

TEST_F(CJavaVMFaultTest, APendingExceptionsTextIsTaken) {
    ASSERT_TRUE(Fake().SetPendingException(Saying("java.lang.Error: why")));
    ExpectKeptLocals(1);

    EXPECT_EQ(VM().TakeExceptionText(), L"java.lang.Error: why");

    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(VM().TakeExceptionText(), L"") << "it is gone";
}

TEST_F(CJavaVMFaultTest, ADroppedExceptionIsNotLookedAtAndLeavesNoReference) {
    ASSERT_TRUE(Fake().SetPendingException(Saying("why")));
    ForgetCalls();

    VM().DropJavaException();

    EXPECT_EQ(Calls(), Names{"ExceptionClear"});
    EXPECT_FALSE(Fake().IsExceptionPending());
}

TEST_F(CJavaVMFaultTest, WithoutAnExceptionThereIsNothingToTakeOrDrop) {
    ForgetCalls();

    EXPECT_EQ(VM().TakeExceptionText(), L"");
    VM().DropJavaException();

    EXPECT_EQ(Calls(), (Names{"ExceptionOccurred", "ExceptionClear"}));
}

TEST_F(CJavaVMFaultTest, AThreadThatJavaDoesNotKnowTakesAndDropsNothing) {
    ASSERT_TRUE(Fake().SetPendingException(Saying("this thread's own")));
    ForgetCalls();

    RunOnNewThread([&] {
        EXPECT_EQ(VM().TakeExceptionText(), L"");
        VM().DropJavaException();
    });

    EXPECT_EQ(Calls(), Names{});
    EXPECT_TRUE(Fake().IsExceptionPending());
    VM().DropJavaException();
}

// ---- end ------------------------------------------------------------------------------------------------

TEST_F(CJavaVMFaultTest, TheEndReleasesTheClassesAndThenDestroysTheMachine) {
    ASSERT_NE(Load("java/x/Y", kTwoRows), nullptr);
    ForgetCalls();

    EndMachine();

    EXPECT_EQ(Calls(), (Names{"DeleteGlobalRef", "DestroyJavaVM"}));
    EXPECT_EQ(Fake().GetMachinesAlive(), 0);
}

TEST_F(CJavaVMFaultTest, ShutdownWithoutTheFlagAbandonsTheMachine) {
    ASSERT_NE(Load("java/x/Y", kTwoRows), nullptr);
    ForgetCalls();

    VM().Shutdown(false);

    EXPECT_EQ(Calls(), Names{"DeleteGlobalRef"});
    EXPECT_EQ(Fake().GetMachinesAlive(), 1);
    EXPECT_EQ(VM().GetEnv(), nullptr);
}

TEST_F(CJavaVMFaultTest, TheDestructorAfterAShutdownCallsNothing) {
    VM().Shutdown(false);
    ForgetCalls();

    EndMachine();

    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaVMFaultTest, AfterShutdownNoThreadHasAnEnvironment) {
    JNIEnv* ofWorker = nullptr;
    HANDLE attached = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE shutDown = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread worker([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);
        SetEvent(attached);
        WaitForSingleObject(shutDown, INFINITE);
        ofWorker = VM().GetEnv();
    });
    WaitForSingleObject(attached, INFINITE);

    VM().Shutdown(true);
    SetEvent(shutDown);
    worker.join();
    CloseHandle(attached);
    CloseHandle(shutDown);

    EXPECT_EQ(ofWorker, nullptr);
    EXPECT_EQ(VM().GetEnv(), nullptr);
}

}  // namespace
