#include "ServerSwitch.h"

#include <string>

#include "BindingTable.h"
#include "CJavaLocalFrame.h"
#include "CJavaString.h"
#include "CThreadSlots.h"
#include "JavaMessages.h"
#include "RuntimeDiscovery.h"

namespace {

namespace Client = Binding::DesktopMessageClient;

constexpr wchar_t kNoCertificateString[] = L"Failed to create a new Java string for the certificate.  %s";
constexpr wchar_t kUrlNotSet[] = L"Failed to set the message server URL in the Java client.  %s";
constexpr wchar_t kUrlSet[] = L"Updated the message server URL in the Java client to %s.";
constexpr wchar_t kNotInitialized[] = L"Failed to initialize RMI in the Java client.  %s";

/// Logs that `text` could not become a Java string.
void LogNoString(const CBridgeLog& log, CJavaVM& vm, const std::wstring& text) {
    log.Error(kNoJavaString, text.c_str(), vm.TakeExceptionText().c_str());
}

HRESULT SetProviderUrl(const CBridgeLog& log, const JavaBridge& bridge, const std::wstring& url) {
    const std::shared_ptr<CJavaString> urlString = bridge.vm->NewString(url);
    if (!urlString) {
        LogNoString(log, *bridge.vm, url);
        return E_FAIL;
    }
    bridge.messageClient->CallVoidMethod(Client::kSetProviderUrl, urlString);
    std::wstring exceptionText;
    if (bridge.vm->GetJavaException(exceptionText)) {
        log.Error(kUrlNotSet, exceptionText.c_str());
        return E_FAIL;
    }
    log.Info(kUrlSet, url.c_str());
    return S_OK;
}

HRESULT InitializeClient(const CBridgeLog& log, const JavaBridge& bridge, const std::wstring& configDirectory,
                         const std::wstring& certificate) {
    const std::shared_ptr<CJavaString> directoryString = bridge.vm->NewString(configDirectory);
    if (!directoryString) {
        LogNoString(log, *bridge.vm, configDirectory);
        return E_FAIL;
    }
    const std::shared_ptr<CJavaString> certificateString = bridge.vm->NewString(certificate);
    if (!certificateString) {
        log.Error(kNoCertificateString, bridge.vm->TakeExceptionText().c_str());
        return E_FAIL;
    }
    bridge.messageClient->CallVoidMethod(Client::kInitialize, directoryString, certificateString);
    std::wstring exceptionText;
    if (bridge.vm->GetJavaException(exceptionText)) {
        log.Error(kNotInitialized, exceptionText.c_str());
        return E_FAIL;
    }
    return S_OK;
}

}  // namespace

HRESULT SwitchMessageServer(const CBridgeLog& log, const JavaBridge& bridge, CThreadSlots& slots,
                            const ServerConfig& server) {
    if (!bridge.vm) {
        return OLE_E_BLANK;
    }
    std::wstring configDirectory;
    const HRESULT read = GetConfigDirectory(configDirectory);
    if (FAILED(read)) {
        return read;
    }
    slots.AttachThread(bridge.vm);
    const CJavaLocalFrame frame(bridge.vm->GetEnv());

    const HRESULT urlSet = SetProviderUrl(log, bridge, server.url);
    if (FAILED(urlSet)) {
        return urlSet;
    }
    return InitializeClient(log, bridge, configDirectory, server.certificate);
}
