#include "JavaBridge.h"

#include <utility>

#include "BindingTable.h"
#include "CConversionBuffer.h"
#include "CJavaClass.h"
#include "CJavaLocalFrame.h"
#include "CJavaString.h"
#include "JavaMessages.h"
#include "RuntimeDiscovery.h"

namespace {

constexpr wchar_t kNoMachine[] = L"Failed to create a Java virtual machine instance.";
// The spellings and the two blanks at the end are kept: hosts compare these texts.
constexpr wchar_t kNoLogFolder[] = L"Failed to retrieve the log foler path.  ";
constexpr wchar_t kLoggerInitialized[] = L"SUCCESSFULLY initialized the Message Logger.";
constexpr wchar_t kNoLoggerFactory[] = L"Failed to Initialize the Message Server Logger.  %s";
constexpr wchar_t kNoMessageClient[] = L"Failed to create a new message client.  %s";
constexpr wchar_t kInitialized[] = L"Initialized communication manager.";
constexpr wchar_t kNoClass[] = L"Failed to load class %s.  %s";
constexpr wchar_t kClassLoaded[] = L"Loaded class %s.";

/// The classes behind the message client, in the order in which they are loaded.
constexpr const char* kDataModelClasses[] = {
    Binding::DesktopConnection::kClass, Binding::DesktopInformation::kClass,
    Binding::NetworkInterface::kClass,  Binding::BaseUserSession::kClass,
    Binding::BaseSample::kClass,        Binding::BaseMetric::kClass,
    Binding::BaseRemoteApp::kClass,     Binding::HashMap::kClass,
};

/// The class with its rows of the binding table; empty, and logged, when it cannot be loaded.
std::shared_ptr<CJavaClass> LoadJavaClass(const CBridgeLog& log, CJavaVM& vm, const char* className) {
    const CWideFromNarrow wideName(className);
    const Binding::ClassRows rows = Binding::FindRows(className);
    std::shared_ptr<CJavaClass> loaded = vm.LoadClass(className, rows.firstRow, rows.rowCount);
    if (loaded) {
        log.Verbose(kClassLoaded, wideName.Get());
    } else {
        log.Error(kNoClass, wideName.Get(), vm.TakeExceptionText().c_str());
    }
    return loaded;
}

HRESULT StartMachine(const CBridgeLog& log, JavaBridge& bridge) {
    // Neither result counts: without a runtime the start fails, without a class path the first class does.
    std::wstring runtimeDirectory;
    std::string classPath;
    static_cast<void>(GetJavaHome(log, runtimeDirectory));
    static_cast<void>(GetClassPath(log, classPath));

    bridge.vm = std::make_shared<CJavaVM>(runtimeDirectory);
    const long created = bridge.vm->CreateJavaVM(MakeJavaOptions(classPath));
    if (created != JNI_OK) {
        log.ErrorWithResult(created, kNoMachine);
        return E_FAIL;
    }
    return S_OK;
}

HRESULT MakeLoggerFactory(const CBridgeLog& log, JavaBridge& bridge, CJavaClass& factoryClass,
                          const std::wstring& folder) {
    const std::shared_ptr<CJavaString> folderString = bridge.vm->NewString(folder);
    if (!folderString) {
        bridge.vm->DropJavaException();
        log.Error(kNoJavaString, folder.c_str(), folder.c_str());  // kept: the folder stands in both places
        return E_FAIL;
    }
    bridge.loggerFactory = factoryClass.NewObject(Binding::InstanceLoggerFactory::kCtorFolder, folderString);
    if (!bridge.loggerFactory) {
        log.Error(kNoLoggerFactory, bridge.vm->TakeExceptionText().c_str());
        return E_FAIL;
    }
    log.Info(kLoggerInitialized);
    return S_OK;
}

/// The Java side's own log is optional: without its class or its folder the start goes on.
HRESULT SetUpJavaLog(const CBridgeLog& log, JavaBridge& bridge) {
    const std::shared_ptr<CJavaClass> factoryClass =
        LoadJavaClass(log, *bridge.vm, Binding::InstanceLoggerFactory::kClass);
    if (!factoryClass) {
        return S_OK;
    }
    std::wstring folder;
    const HRESULT read = GetLogDirectory(folder);
    if (FAILED(read)) {
        log.WarningWithCode(read, kNoLogFolder);
        log.Info(kLoggerInitialized);  // kept: this entry follows the warning all the same
        return S_OK;
    }
    return MakeLoggerFactory(log, bridge, *factoryClass, folder);
}

/// Loads the message client's class and all those behind it, up to the first that fails.
HRESULT LoadClasses(const CBridgeLog& log, JavaBridge& bridge, std::shared_ptr<CJavaClass>& clientClass) {
    clientClass = LoadJavaClass(log, *bridge.vm, Binding::DesktopMessageClient::kClass);
    if (!clientClass) {
        return E_FAIL;
    }
    for (const char* const className : kDataModelClasses) {
        if (!LoadJavaClass(log, *bridge.vm, className)) {
            return E_FAIL;
        }
    }
    return S_OK;
}

HRESULT MakeMessageClient(const CBridgeLog& log, JavaBridge& bridge, CJavaClass& clientClass) {
    bridge.messageClient = clientClass.NewObject(Binding::DesktopMessageClient::kCtor);
    if (!bridge.messageClient) {
        log.Error(kNoMessageClient, bridge.vm->TakeExceptionText().c_str());
        return E_FAIL;
    }
    log.Info(kInitialized);
    return S_OK;
}

void DisposeMessageClient(JavaBridge& bridge) noexcept {
    if (!bridge.messageClient) {
        return;
    }
    const CJavaLocalFrame frame(bridge.vm->GetEnv());
    bridge.messageClient->CallVoidMethod(Binding::DesktopMessageClient::kDispose);
    bridge.vm->DropJavaException();  // nobody is left to be told
}

}  // namespace

HRESULT StartJavaBridge(const CBridgeLog& log, JavaBridge& bridge) {
    const HRESULT started = StartMachine(log, bridge);
    if (FAILED(started)) {
        return started;
    }
    const CJavaLocalFrame frame(bridge.vm->GetEnv());

    const HRESULT logging = SetUpJavaLog(log, bridge);
    if (FAILED(logging)) {
        return logging;
    }
    std::shared_ptr<CJavaClass> clientClass;
    const HRESULT loaded = LoadClasses(log, bridge, clientClass);
    if (FAILED(loaded)) {
        return loaded;
    }
    return MakeMessageClient(log, bridge, *clientClass);
}

void StopJavaBridge(JavaBridge& bridge) noexcept {
    DisposeMessageClient(bridge);
    // Each is out of reach before its reference goes.
    std::exchange(bridge.loggerFactory, nullptr).reset();
    std::exchange(bridge.messageClient, nullptr).reset();
    if (bridge.vm) {
        bridge.vm->Shutdown(false);
        std::exchange(bridge.vm, nullptr).reset();
    }
}

void AbandonJavaBridge(JavaBridge& bridge) noexcept {
    if (bridge.vm) {
        bridge.vm->Abandon();
    }
    bridge.loggerFactory.reset();
    bridge.messageClient.reset();
    bridge.vm.reset();
}
