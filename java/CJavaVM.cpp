#include "CJavaVM.h"

#include <limits>
#include <utility>

#include "ThrowResult.h"
#include "CJavaClass.h"
#include "CJavaLocalRef.h"
#include "CJavaString.h"
#include "JavaException.h"
#include "LoaderLockRule.h"
#include "ProcessEnd.h"
#include "ProcessHeap.h"
#include "RuntimeLibrary.h"

namespace {

constexpr wchar_t kBinDirectory[] = L"bin";
constexpr wchar_t kLibraryPath[] = L"bin\\server\\jvm.dll";

/// The options as JNI takes them. The texts stay those of `options`.
CHeapArray<JavaVMOption> MakeOptionArray(std::vector<std::string>& options) {
    if (options.empty()) {
        return {};
    }
    CHeapArray<JavaVMOption> array(options.size());
    for (std::size_t i = 0; i < options.size(); ++i) {
        array[i].optionString = options[i].data();
    }
    return array;
}

}  // namespace

CJavaVM::CJavaVM(const std::wstring& jreDirectory)
    : m_binDirectory(jreDirectory + kBinDirectory), m_libraryPath(jreDirectory + kLibraryPath) {}

CJavaVM::~CJavaVM() {
    Shutdown(true);
}

long CJavaVM::CreateJavaVM(std::vector<std::string> options) {
    if (m_vm) {
        return JNI_OK;
    }
    const long loaded = LoadLibraryIfNeeded();
    if (!m_library) {
        return loaded;
    }
    return StartMachine(options);
}

long CJavaVM::LoadLibraryIfNeeded() {
    if (m_library) {
        return S_OK;
    }
    return LoadRuntimeLibrary(m_binDirectory, m_libraryPath, m_library);
}

long CJavaVM::StartMachine(std::vector<std::string>& options) {
    CreateJavaVMFunction const createJavaVM = FindCreateJavaVM(m_library);
    if (!createJavaVM) {
        return LastErrorResult();
    }
    if (!PinRuntimeLibrary(createJavaVM)) {
        return LastErrorResult();
    }

    CHeapArray<JavaVMOption> optionArray = MakeOptionArray(options);
    JavaVMInitArgs arguments{};
    arguments.version = JNI_VERSION_1_6;
    arguments.nOptions = static_cast<jint>(options.size());
    arguments.options = optionArray.Get();
    arguments.ignoreUnrecognized = JNI_FALSE;

    JavaVM* vm = nullptr;
    void* env = nullptr;
    AssertOutsideLoaderLock();
    const jint result = createJavaVM(&vm, &env, &arguments);
    if (result == JNI_OK) {
        m_vm = vm;
        m_creatorThreadId = GetCurrentThreadId();
        RememberEnv(static_cast<JNIEnv*>(env));
    }
    return result;
}

void CJavaVM::Shutdown(bool destroy) noexcept {
    if (IsProcessEnding()) {
        m_vm = nullptr;
        static_cast<void>(m_library.Detach());
        return;
    }

    m_classes.clear();  // before the environments: a class releases its reference through one
    ForgetEnvs();
    JavaVM* const vm = m_vm.exchange(nullptr);
    if (vm && destroy) {
        AssertOutsideLoaderLock();
        vm->DestroyJavaVM();
    }
    m_library.Reset();
}

void CJavaVM::Abandon() noexcept {
    m_vm = nullptr;
    ForgetEnvs();
}

JNIEnv* CJavaVM::GetEnv() const noexcept {
    const CCriticalSectionLock lock(m_envLock);
    const auto found = m_envs.find(GetCurrentThreadId());
    if (found == m_envs.end()) {
        return nullptr;
    }
    AssertOutsideLoaderLock();  // who asks for an environment calls Java by it
    return found->second;
}

JNIEnv* CJavaVM::GetEnvForRelease() const noexcept {
    return IsProcessEnding() ? nullptr : GetEnv();
}

long CJavaVM::AttachCurrentThread() {
    if (GetEnv()) {
        return JNI_OK;
    }
    JavaVM* const vm = m_vm;
    if (!vm) {
        return JNI_ERR;
    }
    void* env = nullptr;
    AssertOutsideLoaderLock();
    const jint result = vm->AttachCurrentThread(&env, nullptr);
    if (result != JNI_OK) {
        return result;
    }
    try {
        RememberEnv(static_cast<JNIEnv*>(env));
    } catch (...) {
        vm->DetachCurrentThread();  // nobody would know that it has to be done
        throw;
    }
    return JNI_OK;
}

long CJavaVM::DetachCurrentThread() noexcept {
    JavaVM* const vm = m_vm;
    if (!vm) {
        return JNI_ERR;
    }
    if (GetCurrentThreadId() == m_creatorThreadId) {
        return JNI_OK;
    }
    // Not asserted to be outside the loader lock: at the end of a thread that nobody watched there is no other moment.
    const jint result = vm->DetachCurrentThread();
    if (result == JNI_OK) {
        ForgetCurrentThread();
    }
    return result;
}

void CJavaVM::ForgetCurrentThread() noexcept {
    const CCriticalSectionLock lock(m_envLock);
    m_envs.erase(GetCurrentThreadId());
}

void CJavaVM::RememberEnv(JNIEnv* env) {
    const CCriticalSectionLock lock(m_envLock);
    m_envs[GetCurrentThreadId()] = env;
}

void CJavaVM::ForgetEnvs() noexcept {
    const CCriticalSectionLock lock(m_envLock);
    m_envs.clear();
}

std::shared_ptr<CJavaString> CJavaVM::NewString(std::wstring_view text) {
    JNIEnv* const env = GetEnv();
    if (!env || text.length() > static_cast<std::size_t>(std::numeric_limits<jsize>::max())) {
        return {};
    }
    const auto* const units = reinterpret_cast<const jchar*>(text.empty() ? L"" : text.data());  // never null
    CJavaLocalRef<jstring> string(env, env->NewString(units, static_cast<jsize>(text.length())));
    if (!string) {
        return {};
    }
    return MakeWrapper<CJavaString>(*this, std::move(string));
}

std::shared_ptr<CJavaClass> CJavaVM::LoadClass(std::string_view className, const JavaMethodBinding* rows,
                                               std::size_t rowCount) {
    // Both before the class lock: looking up the environment takes the other lock, and so does the end of a class that
    // failed to bind.
    JNIEnv* const env = GetEnv();
    std::shared_ptr<CJavaClass> loading;

    const CCriticalSectionLock lock(m_classLock);
    const auto found = m_classes.find(className);
    if (found != m_classes.end()) {
        return found->second;
    }
    if (!env) {
        return {};
    }
    loading = std::shared_ptr<CJavaClass>(new CJavaClass(*this, className));
    if (!loading->Bind(env, rows, rowCount)) {
        return {};
    }
    m_classes.emplace(className, loading);
    return loading;
}

std::shared_ptr<CJavaClass> CJavaVM::GetClass(std::string_view className) const {
    const CCriticalSectionLock lock(m_classLock);
    const auto found = m_classes.find(className);
    return found == m_classes.end() ? nullptr : found->second;
}

bool CJavaVM::GetJavaException(std::wstring& text) {
    JNIEnv* const env = GetEnv();
    return env && TakeJavaException(env, text);
}

std::wstring CJavaVM::TakeExceptionText() {
    std::wstring text;
    static_cast<void>(GetJavaException(text));
    return text;
}

void CJavaVM::DropJavaException() noexcept {
    if (JNIEnv* const env = GetEnv()) {
        env->ExceptionClear();
    }
}
