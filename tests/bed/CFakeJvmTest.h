#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CJavaVM.h"
#include "CLeakCheckedTest.h"
#include "IFakeRuntime.h"

/// Fixture on the fake Java runtime, for faults that a real one does not produce on demand and for exact accounts. Each
/// test has a machine of its own, started on the test's thread. After each test every reference, frame, attachment and
/// pinned string is given back, and no rule of JNI's was broken.
class CFakeJvmTest : public CLeakCheckedTest {
protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] static IFakeRuntime& Fake();

    [[nodiscard]] CJavaVM& VM() { return *m_vm; }
    [[nodiscard]] JNIEnv* Env() { return m_vm->GetEnv(); }

    /// Ends this test's machine before the test ends.
    void EndMachine();

    /// The names of the functions that JNI was called by since the last ForgetCalls, in their order.
    [[nodiscard]] std::vector<std::string> Calls() const;
    void ForgetCalls();

    /// States that `count` local references are left to the frame around: one for each exception that was read.
    void ExpectKeptLocals(long count) { m_keptLocals = count; }

private:
    std::unique_ptr<CJavaVM> m_vm;
    long m_forgottenCalls = 0;
    long m_keptLocals = 0;
};
