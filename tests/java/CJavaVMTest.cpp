#include "CJavaVM.h"

#include <set>
#include <thread>
#include <vector>

#include "CJavaObject.h"
#include "CJavaString.h"
#include "CRealJvmTest.h"
#include "RunOnNewThread.h"
#include "TestClasses.h"

namespace {

class CJavaVMTest : public CRealJvmTest {};

constexpr JavaMethodBinding kNoRows[] = {{"", "", ""}};

TEST_F(CJavaVMTest, GetEnvOfTheCreatorIsAnEnvironmentOfTheMachine) {
    EXPECT_GE(Env()->GetVersion(), JNI_VERSION_1_6);
}

TEST_F(CJavaVMTest, GetEnvIsNullOnAThreadThatNeverAttached) {
    JNIEnv* env = Env();

    RunOnNewThread([&] { env = VM().GetEnv(); });

    EXPECT_EQ(env, nullptr);
}

TEST_F(CJavaVMTest, GetEnvKnowsOnlyAttachmentsOfItsOwn) {
    JNIEnv* env = Env();

    RunOnNewThread([&] {
        JavaVM* vm = nullptr;
        jsize count = 0;
        auto* const getMachines = reinterpret_cast<jint(JNICALL*)(JavaVM**, jsize, jsize*)>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"jvm.dll"), "JNI_GetCreatedJavaVMs")));
        ASSERT_EQ(getMachines(&vm, 1, &count), JNI_OK);
        void* foreign = nullptr;
        ASSERT_EQ(vm->AttachCurrentThread(&foreign, nullptr), JNI_OK);
        env = VM().GetEnv();
        ASSERT_EQ(vm->DetachCurrentThread(), JNI_OK);
    });

    EXPECT_EQ(env, nullptr);
}

TEST_F(CJavaVMTest, ASecondCreateReturnsZeroAndChangesNothing) {
    JNIEnv* const env = Env();

    EXPECT_EQ(VM().CreateJavaVM({"-Xno-such-option"}), 0);
    EXPECT_EQ(Env(), env);
}

TEST_F(CJavaVMTest, AttachingTheCreatorReturnsZero) {
    JNIEnv* const env = Env();

    EXPECT_EQ(VM().AttachCurrentThread(), 0);
    EXPECT_EQ(Env(), env);
}

TEST_F(CJavaVMTest, DetachingTheCreatorReturnsZeroAndKeepsItAttached) {
    EXPECT_EQ(VM().DetachCurrentThread(), 0);
    EXPECT_NE(Env()->GetVersion(), 0);
}

TEST_F(CJavaVMTest, AnAttachedThreadCallsJavaUntilItDetaches) {
    RunOnNewThread([] {
        EXPECT_EQ(VM().AttachCurrentThread(), 0);
        EXPECT_EQ(Read(VM().NewString(L"from a worker")), L"from a worker");

        EXPECT_EQ(VM().DetachCurrentThread(), 0);
        EXPECT_EQ(VM().GetEnv(), nullptr);
    });
}

TEST_F(CJavaVMTest, AttachingAnAttachedThreadKeepsItsEnvironment) {
    RunOnNewThread([] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);
        JNIEnv* const env = VM().GetEnv();

        EXPECT_EQ(VM().AttachCurrentThread(), 0);
        EXPECT_EQ(VM().GetEnv(), env);
        ASSERT_EQ(VM().DetachCurrentThread(), 0);
    });
}

TEST_F(CJavaVMTest, ADetachedThreadMayAttachAgain) {
    RunOnNewThread([] {
        for (int i = 0; i < 3; ++i) {
            ASSERT_EQ(VM().AttachCurrentThread(), 0);
            ASSERT_EQ(Read(VM().NewString(L"again")), L"again");
            ASSERT_EQ(VM().DetachCurrentThread(), 0);
        }
    });
}

TEST_F(CJavaVMTest, DetachingAThreadThatNeverAttachedReturnsZeroAsTheMachineDoes) {
    long detached = -1;

    RunOnNewThread([&] { detached = VM().DetachCurrentThread(); });

    EXPECT_EQ(detached, 0);
}

TEST_F(CJavaVMTest, NewStringKeepsEveryUnit) {
    const std::wstring hard(L"a\0b\xD83D\xDE00\xD83D\u4e2d", 7);
    const auto receivedClass = Load(Received::kClass, Received::kRows);
    ExpectKeptClasses(1);
    const auto object = receivedClass->NewObject(Received::kCtor);

    const auto text = VM().NewString(hard);

    EXPECT_EQ(Read(object->CallStringMethod(Received::kTellCodes, text)), L"0061 0000 0062 d83d de00 d83d 4e2d");
}

TEST_F(CJavaVMTest, NewStringOfNothingIsAnEmptyString) {
    EXPECT_EQ(Read(VM().NewString(L"")), L"");
}

TEST_F(CJavaVMTest, NewStringIsEmptyWithoutAnEnvironment) {
    RunOnNewThread([] { EXPECT_EQ(VM().NewString(L"there"), nullptr); });
}

TEST_F(CJavaVMTest, LoadClassReturnsTheCachedClassWhateverTheRows) {
    const auto first = Load(Received::kClass, Received::kRows);
    constexpr JavaMethodBinding missing[] = {{"x", "noSuchMethod", "()V"}};

    const auto second = Load(Received::kClass, missing);

    EXPECT_EQ(second, first);
    EXPECT_EQ(second->FindMethod("x"), nullptr);
}

TEST_F(CJavaVMTest, LoadClassWithoutRowsFindsTheClassAlone) {
    const auto loaded = VM().LoadClass("java/util/ArrayList", kNoRows, 0);
    ExpectKeptClasses(1);

    EXPECT_NE(loaded, nullptr);
    EXPECT_EQ(VM().GetClass("java/util/ArrayList"), loaded);
}

TEST_F(CJavaVMTest, AMissingClassLeavesItsErrorPendingAndNothingCached) {
    const auto loaded = VM().LoadClass("telvar/test/Missing", kNoRows, 0);

    EXPECT_EQ(loaded, nullptr);
    EXPECT_TRUE(Env()->ExceptionCheck());
    EXPECT_EQ(TakeException(), L"java.lang.NoClassDefFoundError: telvar/test/Missing");
    EXPECT_EQ(VM().GetClass("telvar/test/Missing"), nullptr);
}

TEST_F(CJavaVMTest, AMissingMethodLeavesItsErrorPendingAndNothingCached) {
    constexpr JavaMethodBinding rows[] = {{"ctor()", "<init>", "()V"}, {"none", "noSuchMethod", "()V"}};

    const auto loaded = Load("java/util/LinkedList", rows);

    EXPECT_EQ(loaded, nullptr);
    EXPECT_EQ(TakeException(), L"java.lang.NoSuchMethodError: noSuchMethod");
    EXPECT_EQ(VM().GetClass("java/util/LinkedList"), nullptr);
}

TEST_F(CJavaVMTest, AClassThatFailedToLoadCanBeLoadedLater) {
    constexpr JavaMethodBinding wrong[] = {{"none", "noSuchMethod", "()V"}};
    constexpr JavaMethodBinding right[] = {{"ctor()", "<init>", "()V"}};
    ASSERT_EQ(Load("java/util/TreeMap", wrong), nullptr);
    ASSERT_NE(TakeException(), L"none");

    EXPECT_NE(Load("java/util/TreeMap", right), nullptr);
    ExpectKeptClasses(1);
}

TEST_F(CJavaVMTest, LoadClassIsEmptyWithoutAnEnvironment) {
    std::shared_ptr<CJavaClass> loaded;

    RunOnNewThread([&] { loaded = VM().LoadClass("java/util/Vector", kNoRows, 0); });

    EXPECT_EQ(loaded, nullptr);
    EXPECT_EQ(VM().GetClass("java/util/Vector"), nullptr);
}

TEST_F(CJavaVMTest, GetClassIsEmptyForANameThatWasNeverLoaded) {
    EXPECT_EQ(VM().GetClass("java/lang/String"), nullptr);
    EXPECT_FALSE(Env()->ExceptionCheck());
}

TEST_F(CJavaVMTest, ThreadsThatLoadOneClassGetOneObject) {
    std::vector<std::shared_ptr<CJavaClass>> loaded(8);
    std::vector<std::thread> threads;
    threads.reserve(loaded.size());
    for (std::shared_ptr<CJavaClass>& mine : loaded) {
        threads.emplace_back([&mine] {
            ASSERT_EQ(VM().AttachCurrentThread(), 0);
            mine = VM().LoadClass("java/util/BitSet", kNoRows, 0);
            ASSERT_EQ(VM().DetachCurrentThread(), 0);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ExpectKeptClasses(1);

    EXPECT_EQ(std::set<std::shared_ptr<CJavaClass>>(loaded.begin(), loaded.end()).size(), 1U);
    EXPECT_NE(loaded[0], nullptr);
}

TEST_F(CJavaVMTest, EveryWrapperBearsAThreadWithoutEnvironment) {
    const auto receivedClass = Load(Received::kClass, Received::kRows);
    const auto object = receivedClass->NewObject(Received::kCtor);
    const auto text = VM().NewString(L"text");

    RunOnNewThread([&] {
        EXPECT_EQ(receivedClass->NewObject(Received::kCtor), nullptr);
        object->CallVoidMethod(Received::kTakeInt, 5);
        EXPECT_EQ(object->CallStringMethod(Received::kTell), nullptr);
        std::wstring told(L"earlier");
        EXPECT_FALSE(text->GetString(told));
        EXPECT_FALSE(VM().GetJavaException(told));
        EXPECT_EQ(told, L"earlier");
    });

    EXPECT_EQ(Read(object->CallStringMethod(Received::kTell)), L"nothing");
}

}  // namespace
