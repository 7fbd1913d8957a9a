#include "CRealJvmTest.h"

#include <windows.h>

#include <stdexcept>
#include <string_view>

#include "CJavaString.h"
#include "RunOnNewThread.h"

namespace {

CJavaVM* g_vm = nullptr;  // never deleted: a machine that waits for its end at process exit could hang it
const char* g_archive = nullptr;

/// What the machine counts, asked by plain JNI so that the product's own wrappers are not part of the measurement.
class CJavaAccounts {
public:
    static int Ask(JNIEnv* env, const char* method) {
        static const CJavaAccounts accounts(env);
        const int count = static_cast<int>(env->CallStaticIntMethod(
            accounts.m_class, env->GetStaticMethodID(accounts.m_class, method, "()I"), nullptr));
        if (env->ExceptionCheck()) {
            env->ExceptionDescribe();
            env->ExceptionClear();
            throw std::runtime_error("Java cannot tell its accounts");
        }
        return count;
    }

private:
    explicit CJavaAccounts(JNIEnv* env) {
        const jclass found = env->FindClass("telvar/test/Accounts");
        m_class = static_cast<jclass>(env->NewGlobalRef(found));
        env->DeleteLocalRef(found);
    }

    jclass m_class;
};

void StartSharedMachine(const char* archive) {
    g_vm = new CJavaVM(TestPaths::kRealRuntime);
    g_archive = archive;
    const long status = g_vm->CreateJavaVM(MakeTestOptions(archive));
    if (status != JNI_OK) {
        throw std::runtime_error("the real Java runtime does not start: " + std::to_string(status));
    }
    // Asked once unmeasured: what Java itself loads and keeps on the way then counts as there from the start.
    CJavaAccounts::Ask(g_vm->GetEnv(), "globalReferences");
    CJavaAccounts::Ask(g_vm->GetEnv(), "threads");
}

}  // namespace

std::vector<std::string> MakeTestOptions(const std::string& archive) {
    return {std::string("-Djava.class.path=") + TestPaths::kTestClasses + ";" + archive, "-Xrs", "-Xmx100M"};
}

void RunOnNewThread(const std::function<void()>& work) {
    std::thread(work).join();
}

void CRealJvmTest::SetUpTestSuite() {
    StartWith(TestPaths::kContractArchive);
}

void CRealJvmTest::StartWith(const char* archive) {
    if (!g_vm) {
        StartSharedMachine(archive);
    } else if (std::string_view(g_archive) != archive) {
        throw std::logic_error("one program, one archive: the Java machine has another one on its class path");
    }
}

int CRealJvmTest::CountUsedHeap() {
    return CJavaAccounts::Ask(Env(), "usedHeap");
}

void CRealJvmTest::SetUp() {
    CLeakCheckedTest::SetUp();
    m_globalReferences = CJavaAccounts::Ask(Env(), "globalReferences");
    m_threads = CJavaAccounts::Ask(Env(), "threads");
}

void CRealJvmTest::TearDown() {
    EXPECT_FALSE(Env()->ExceptionCheck()) << "the test leaves a Java exception pending";
    Env()->ExceptionClear();
    EXPECT_EQ(CJavaAccounts::Ask(Env(), "globalReferences"), m_globalReferences + m_keptClasses);
    EXPECT_EQ(CJavaAccounts::Ask(Env(), "threads"), m_threads);
    CLeakCheckedTest::TearDown();
}

CJavaVM& CRealJvmTest::VM() {
    return *g_vm;
}

std::wstring CRealJvmTest::TakeException() {
    std::wstring text;
    return VM().GetJavaException(text) ? text : L"none";
}

std::wstring CRealJvmTest::Read(const std::shared_ptr<CJavaString>& string) {
    EXPECT_EQ(TakeException(), L"none");
    std::wstring text;
    return string && string->GetString(text) ? text : L"no text";
}
