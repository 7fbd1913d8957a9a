#include "PhaseMeasurements.h"

#include <windows.h>

#include <jni.h>
#include <objbase.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "BenchPaths.h"
#include "BindingTable.h"
#include "BridgeCalls.h"
#include "CItemReader.h"
#include "CLeanHost.h"
#include "CStopwatch.h"
#include "CreatedMachine.h"
#include "DataType.h"
#include "JavaIds.h"
#include "PlainJava.h"
#include "RuntimeDiscovery.h"
#include "RuntimeLibrary.h"
#include "Statistics.h"

namespace {

constexpr int kThreads = 20;
constexpr SampleSize kFirstSample{10, 1, 5};

/// Never deleted: the library holds objects of it until the process has ended.
CLeanHost& MakeHost() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    return *new CLeanHost;
}

JNIEnv* CreateMachine(CreateJavaVMFunction create, std::vector<std::string> options) {
    std::vector<JavaVMOption> optionArray;
    optionArray.reserve(options.size());
    for (std::string& option : options) {
        optionArray.push_back({option.data(), nullptr});
    }
    JavaVMInitArgs arguments{JNI_VERSION_1_6, static_cast<jint>(optionArray.size()), optionArray.data(), JNI_FALSE};
    JavaVM* machine = nullptr;
    void* env = nullptr;
    if (create(&machine, &env, &arguments) != JNI_OK) {
        throw std::runtime_error("Java does not start");
    }
    return static_cast<JNIEnv*>(env);
}

void BindByHand(JNIEnv* env) {
    constexpr const char* kClasses[] = {
        Binding::DesktopMessageClient::kClass, Binding::DesktopConnection::kClass, Binding::DesktopInformation::kClass,
        Binding::NetworkInterface::kClass,     Binding::BaseUserSession::kClass,   Binding::BaseSample::kClass,
        Binding::BaseMetric::kClass,           Binding::BaseRemoteApp::kClass,     Binding::HashMap::kClass,
        Binding::InstanceLoggerFactory::kClass};
    for (const char* const className : kClasses) {
        const jclass found = env->FindClass(className);
        const Binding::ClassRows rows = Binding::FindRows(className);
        for (std::size_t i = 0; i < rows.rowCount; ++i) {
            if (!found || !env->GetMethodID(found, rows.firstRow[i].name, rows.firstRow[i].signature)) {
                throw std::runtime_error(std::string("Java does not know ") + className);
            }
        }
    }
}

}  // namespace

nlohmann::json MeasureFloorStart() {
    CLeanHost& host = MakeHost();
    IUnknown& sample = host.MakeSample(kFirstSample);
    std::string classPath;
    std::wstring home;
    if (FAILED(GetJavaHome(CBridgeLog(), home)) || FAILED(GetClassPath(CBridgeLog(), classPath))) {
        throw std::runtime_error("there is no Java in the registry");
    }

    const CStopwatch total;
    CModule runtime;
    if (FAILED(LoadRuntimeLibrary(home + L"bin", home + L"bin\\server\\jvm.dll", runtime))) {
        throw std::runtime_error("Java's library does not load");
    }
    const double loaded = total.GetMicroseconds();
    JNIEnv* const env = CreateMachine(FindCreateJavaVM(runtime), MakeJavaOptions(classPath));
    const double created = total.GetMicroseconds();
    BindByHand(env);
    const double bound = total.GetMicroseconds();
    static_cast<void>(runtime.Detach());  // Java's threads run in it to the end

    const JavaIds ids = FindJavaIds(env);
    const CItemReader<CPlainJava> reader(CPlainJava(env), ids, host.System(), kAuthToken);
    const CStopwatch first;
    reader.Send(eSample, kItemId, &sample);
    const double firstSample = first.GetMicroseconds();
    return {{"total", bound},
            {"library", loaded},
            {"machine", created - loaded},
            {"binding", bound - created},
            {"first sample", firstSample}};
}

nlohmann::json MeasureBridgeStart() {
    IUnknown& sample = MakeHost().MakeSample(kFirstSample);

    const CStopwatch total;
    DumpNothing();
    const double started = total.GetMicroseconds();
    const CStopwatch first;
    DumpItem(eSample, &sample);
    return {{"total", started}, {"first sample", first.GetMicroseconds()}};
}

nlohmann::json MeasureLibraryLoad() {
    const CStopwatch total;
    if (!LoadLibraryW(BenchPaths::kProduct)) {
        throw std::runtime_error("the library does not load");
    }
    return {{"total", total.GetMicroseconds()}};
}

nlohmann::json MeasureAttach() {
    static_cast<void>(MakeHost());
    DumpNothing();
    JavaVM& machine = FindCreatedMachine();
    std::vector<double> firstCalls;
    std::vector<double> secondCalls;
    std::vector<double> byHand;
    for (int i = 0; i < kThreads; ++i) {
        std::thread([&] {
            const CStopwatch first;
            DumpNothing();
            firstCalls.push_back(first.GetMicroseconds());
            const CStopwatch second;
            DumpNothing();
            secondCalls.push_back(second.GetMicroseconds());
        }).join();
        std::thread([&] {
            const CStopwatch attach;
            void* env = nullptr;
            machine.AttachCurrentThread(&env, nullptr);
            byHand.push_back(attach.GetMicroseconds());
            machine.DetachCurrentThread();
        }).join();
    }
    return {{"first call", FindSpread(firstCalls).median},
            {"second call", FindSpread(secondCalls).median},
            {"by hand", FindSpread(byHand).median}};
}
