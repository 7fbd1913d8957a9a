#include "CRMIConfigLoader.h"

#include "AgentRegistry.h"
#include "CServerInfoReader.h"
#include "CVariant.h"
#include "ConfigDocument.h"
#include "HostInterface.h"
#include "IHostLogger.h"
#include "ProcessEnd.h"

namespace {

// The signature is part of the texts, and so is that the policy key's failure is told as the legacy one's, misspelt:
// hosts compare these.
constexpr wchar_t kGetServerInfo[] =
    L"long __cdecl CRMIConfigLoader::GetServerInfo(struct tagVARIANT,wchar_t **,wchar_t **,wchar_t **)";
constexpr wchar_t kNotLoaded[] = L"Failed to load server config in function %s";
constexpr wchar_t kLegacyNotLoaded[] = L"Failed to load legancy server config in function %s";

/// The host's log; one that says nothing where the host gives none.
CBridgeLog FetchLog() {
    Microsoft::WRL::ComPtr<IHostLogger> logger;
    return SUCCEEDED(GetHostInterface(logger)) ? CBridgeLog(std::move(logger)) : CBridgeLog();
}

}  // namespace

long CRMIConfigLoader::GetServerInfo(VARIANT configuration, wchar_t** url, wchar_t** secondValue,
                                     wchar_t** certificate) {
    if (IsProcessEnding()) {
        return E_FAIL;
    }
    const CBridgeLog log = FetchLog();
    CServerInfoReader reader(log, url, secondValue, certificate);
    if (SUCCEEDED(reader.loadLegancyServerInfo())) {
        return S_OK;
    }
    CBstr path;
    if (SUCCEEDED(ReadServerConfigRegistryPath(configuration, path))) {
        const HRESULT loaded = reader.loadCommonServerInfo(std::wstring(path.GetView()));
        if (SUCCEEDED(loaded)) {
            return loaded;
        }
        log.ErrorWithResult(loaded, kNotLoaded, kGetServerInfo);
    }
    const HRESULT loaded = reader.loadCommonServerInfo(PolicyKeyPath());
    if (FAILED(loaded)) {
        log.ErrorWithResult(loaded, kLegacyNotLoaded, kGetServerInfo);
    }
    return loaded;
}

long CRMIConfigLoader::GetConfigContent(VARIANT configuration, VARIANT* content) {
    if (!content) {
        return E_POINTER;
    }
    if (IsProcessEnding()) {
        return E_FAIL;
    }
    CBstr path;
    const HRESULT read = ReadServerConfigRegistryPath(configuration, path);
    if (FAILED(read)) {
        return read;
    }
    // By its bytes: a text may hold zeros. The copy that VariantCopy makes is the caller's.
    CVariant text;
    VARIANT& value = *text.Receive();
    value.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(path.Get()), SysStringByteLen(path.Get()));
    value.vt = VT_BSTR;
    if (!value.bstrVal) {
        value.vt = VT_ERROR;
        value.scode = E_OUTOFMEMORY;
    }
    return VariantCopy(content, &text);
}
