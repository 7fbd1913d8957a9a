#include "CFakeJvmTest.h"

#include "LoadedFakeRuntime.h"
#include "TestPaths.h"

void CFakeJvmTest::SetUpTestSuite() {
    static_cast<void>(Fake());  // loaded before the first account is taken
}

IFakeRuntime& CFakeJvmTest::Fake() {
    return LoadedFakeRuntime();
}

void CFakeJvmTest::SetUp() {
    CLeakCheckedTest::SetUp();
    Fake().Reset();
    m_vm = std::make_unique<CJavaVM>(TestPaths::kFakeRuntime);
    ASSERT_EQ(m_vm->CreateJavaVM({}), JNI_OK);
    ForgetCalls();
}

void CFakeJvmTest::TearDown() {
    if (m_vm) {
        EXPECT_FALSE(Fake().IsExceptionPending());
        EndMachine();
    }
    for (long i = 0; i < Fake().GetMisuseCount(); ++i) {
        ADD_FAILURE() << "broken rule: " << Fake().GetMisuse(i);
    }
    CLeakCheckedTest::TearDown();
}

void CFakeJvmTest::EndMachine() {
    EXPECT_EQ(Fake().GetLocalReferences(), m_keptLocals);
    EXPECT_EQ(Fake().GetOpenFrames(), 0);
    EXPECT_EQ(Fake().GetAttachedThreads(), 0);
    EXPECT_EQ(Fake().GetPinnedStrings(), 0);

    Fake().ClearFaults();
    m_vm.reset();

    EXPECT_EQ(Fake().GetGlobalReferencesAtDestroy(), 0);
}

std::vector<std::string> CFakeJvmTest::Calls() const {
    std::vector<std::string> calls;
    for (long i = m_forgottenCalls; i < Fake().GetCallLogSize(); ++i) {
        calls.emplace_back(Fake().GetCallLogEntry(i));
    }
    return calls;
}

void CFakeJvmTest::ForgetCalls() {
    m_forgottenCalls = Fake().GetCallLogSize();
}
