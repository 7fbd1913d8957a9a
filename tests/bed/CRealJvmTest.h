#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "CJavaClass.h"
#include "CJavaVM.h"
#include "CLeakCheckedTest.h"

/// Options with which the tests start the real machine.
[[nodiscard]] std::vector<std::string> MakeTestOptions();

/// Fixture on the real Java runtime. All suites of a program share one machine, made by the main thread at the first
/// one and left to the process's end. After each test Java holds as many global references and threads as before.
class CRealJvmTest : public CLeakCheckedTest {
protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] static CJavaVM& VM();
    [[nodiscard]] static JNIEnv* Env() { return VM().GetEnv(); }

    /// The text of the exception that is pending on this thread, which is cleared; "none" where there is none.
    [[nodiscard]] static std::wstring TakeException();

    /// The characters of a string that a method has just returned, or "no text"; an exception of that method's fails
    /// the test and is cleared.
    [[nodiscard]] static std::wstring Read(const std::shared_ptr<CJavaString>& string);

    /// States that the class cache keeps `count` more references after this test.
    void ExpectKeptClasses(int count) { m_keptClasses = count; }

    template <std::size_t count>
    [[nodiscard]] static std::shared_ptr<CJavaClass> Load(const char* className,
                                                          const JavaMethodBinding (&rows)[count]) {
        return VM().LoadClass(className, rows, count);
    }

private:
    int m_keptClasses = 0;
    int m_globalReferences = 0;
    int m_threads = 0;
};
