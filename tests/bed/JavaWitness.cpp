#include "JavaWitness.h"

#include <windows.h>

#include <jni.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace {

using GetCreatedJavaVMsFunction = jint(JNICALL*)(JavaVM**, jsize, jsize*);

JavaVM* FindMachine() {
    HMODULE const library = GetModuleHandleW(L"jvm.dll");
    void* const function =
        library ? reinterpret_cast<void*>(GetProcAddress(library, "JNI_GetCreatedJavaVMs")) : nullptr;
    JavaVM* machine = nullptr;
    jsize count = 0;
    if (!function || reinterpret_cast<GetCreatedJavaVMsFunction>(function)(&machine, 1, &count) != JNI_OK ||
        count != 1) {
        throw std::runtime_error("no Java machine runs in this process");
    }
    return machine;
}

/// The calling thread's environment; a thread that had none is detached again.
class CWitnessThread {
public:
    CWitnessThread() : m_machine(FindMachine()) {
        void* env = nullptr;
        if (m_machine->GetEnv(&env, JNI_VERSION_1_6) == JNI_EDETACHED) {
            m_isOurs = m_machine->AttachCurrentThread(&env, nullptr) == JNI_OK;
        }
        m_env = static_cast<JNIEnv*>(env);
        if (!m_env || m_env->PushLocalFrame(16) != JNI_OK) {
            throw std::runtime_error("the Java machine does not take this thread");
        }
    }
    ~CWitnessThread() {
        m_env->PopLocalFrame(nullptr);
        if (m_isOurs) {
            m_machine->DetachCurrentThread();
        }
    }

    CWitnessThread(const CWitnessThread&) = delete;
    CWitnessThread& operator=(const CWitnessThread&) = delete;

    JNIEnv* operator->() const { return m_env; }

    /// To be called after each call that may throw.
    void Check() const {
        if (m_env->ExceptionCheck()) {
            m_env->ExceptionDescribe();
            m_env->ExceptionClear();
            throw std::runtime_error("the witness's own call throws");
        }
    }

private:
    JavaVM* const m_machine;
    JNIEnv* m_env = nullptr;
    bool m_isOurs = false;
};

std::string ReadText(const CWitnessThread& java, jobject object) {
    const auto told = static_cast<jstring>(object);
    std::string text(static_cast<std::size_t>(java->GetStringUTFLength(told)), '\0');
    java->GetStringUTFRegion(told, 0, java->GetStringLength(told), text.data());
    java.Check();
    return text;
}

/// The dump of all threads, which ends in the number of references.
std::string TellThreads(const CWitnessThread& java) {
    const jclass factory = java->FindClass("java/lang/management/ManagementFactory");
    java.Check();
    const jobject server = java->CallStaticObjectMethod(
        factory, java->GetStaticMethodID(factory, "getPlatformMBeanServer", "()Ljavax/management/MBeanServer;"));
    java.Check();
    const jclass nameClass = java->FindClass("javax/management/ObjectName");
    java.Check();
    const jobject name = java->NewObject(nameClass, java->GetMethodID(nameClass, "<init>", "(Ljava/lang/String;)V"),
                                         java->NewStringUTF("com.sun.management:type=DiagnosticCommand"));
    java.Check();
    // The command takes the arguments of a command line, of which there are none.
    const jclass textClass = java->FindClass("java/lang/String");
    java.Check();
    const jobjectArray none = java->NewObjectArray(0, textClass, nullptr);
    java.Check();
    const jobjectArray arguments = java->NewObjectArray(1, java->FindClass("java/lang/Object"), none);
    java.Check();
    const jobjectArray signature = java->NewObjectArray(1, textClass, java->NewStringUTF("[Ljava.lang.String;"));
    java.Check();
    const jclass serverClass = java->FindClass("javax/management/MBeanServer");
    java.Check();
    const jmethodID invoke = java->GetMethodID(
        serverClass, "invoke",
        "(Ljavax/management/ObjectName;Ljava/lang/String;[Ljava/lang/Object;[Ljava/lang/String;)Ljava/lang/Object;");
    const jobject dump =
        java->CallObjectMethod(server, invoke, name, java->NewStringUTF("threadPrint"), arguments, signature);
    java.Check();
    return ReadText(java, dump);
}

}  // namespace

std::vector<std::string> TellJavaCalls() {
    const CWitnessThread java;
    const jclass calls = java->FindClass("com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/Calls");
    java.Check();
    const jobject object = java->NewObject(calls, java->GetMethodID(calls, "<init>", "()V"));
    java.Check();
    const jobject told = java->CallObjectMethod(object, java->GetMethodID(calls, "tell", "()Ljava/lang/String;"));
    java.Check();
    const std::string text = ReadText(java, told);

    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

long CountJavaCalls(const std::string& beginning) {
    const std::vector<std::string> calls = TellJavaCalls();
    return static_cast<long>(std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
        return call.compare(0, beginning.size(), beginning) == 0;
    }));
}

int CountJavaThreads() {
    const CWitnessThread java;
    const jclass thread = java->FindClass("java/lang/Thread");
    java.Check();
    const jmethodID activeCount = java->GetStaticMethodID(thread, "activeCount", "()I");
    java.Check();
    const jint count = java->CallStaticIntMethod(thread, activeCount);
    java.Check();
    return count;
}

long long CountJavaHeap() {
    const CWitnessThread java;
    const jclass system = java->FindClass("java/lang/System");
    java.Check();
    java->CallStaticVoidMethod(system, java->GetStaticMethodID(system, "gc", "()V"));
    java.Check();
    const jclass runtimeClass = java->FindClass("java/lang/Runtime");
    java.Check();
    const jobject runtime = java->CallStaticObjectMethod(
        runtimeClass, java->GetStaticMethodID(runtimeClass, "getRuntime", "()Ljava/lang/Runtime;"));
    java.Check();
    const jlong total = java->CallLongMethod(runtime, java->GetMethodID(runtimeClass, "totalMemory", "()J"));
    java.Check();
    const jlong free = java->CallLongMethod(runtime, java->GetMethodID(runtimeClass, "freeMemory", "()J"));
    java.Check();
    return total - free;
}

int CountJavaGlobalReferences() {
    constexpr std::string_view kLabel = "JNI global refs: ";
    const CWitnessThread java;
    const std::string threads = TellThreads(java);
    const std::size_t at = threads.rfind(kLabel);
    if (at == std::string::npos) {
        throw std::runtime_error("Java does not tell its global references");
    }
    return std::stoi(threads.substr(at + kLabel.size()));
}
