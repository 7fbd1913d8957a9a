#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "CJavaClass.h"
#include "CJavaVM.h"
#include "CLeakCheckedTest.h"
#include "TestPaths.h"

/// Options with which the tests start the real machine, whose class path holds their own classes and `archive`.
[[nodiscard]] std::vector<std::string> MakeTestOptions(const std::string& archive = TestPaths::kContractArchive);

/// Fixture on the real Java runtime. All suites of a program share one machine, made by the main thread at the first
/// one and left to the process's end. After each test Java holds as many global references and threads as before.
class CRealJvmTest : public CLeakCheckedTest {
protected:
    /// Starts the machine with the contract's stand-ins.
    static void SetUpTestSuite();
    /// In place of it, for programs on another archive. Throws where the program's machine has one already that is not
    /// this.
    static void StartWith(const char* archive);
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] static CJavaVM& VM();
    [[nodiscard]] static JNIEnv* Env() { return VM().GetEnv(); }

    /// The text of the exception that is pending on this thread, which is cleared; "none" where there is none.
    [[nodiscard]] static std::wstring TakeException();

    /// The characters of a string that a method has just returned, or "no text"; an exception of that method's fails
    /// the test and is cleared.
    [[nodiscard]] static std::wstring Read(const std::shared_ptr<CJavaString>& string);

    /// Bytes of Java's heap that are in use when what nobody refers to has been collected.
    [[nodiscard]] static int CountUsedHeap();

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
