#include "AgentRegistry.h"

#include "ProcessHeap.h"
#include "ProductName.h"
#include "SystemHandles.h"

namespace {

constexpr wchar_t kMakerKey[] = L"Software\\Orvane, Inc.\\";
constexpr wchar_t kMakerPolicyKey[] = L"Software\\Policies\\Orvane, Inc.\\";
constexpr wchar_t kAgentSubkey[] = L"\\Desktop Agent";

constexpr HRESULT kInvalidData = __HRESULT_FROM_WIN32(ERROR_INVALID_DATA);

bool IsTextType(DWORD type) noexcept {
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

/// Whether the bytes are whole characters, the last of them a zero. No bytes at all are an empty text.
bool IsWellFormed(const wchar_t* characters, DWORD bytes) noexcept {
    return bytes == 0 || (bytes % sizeof(wchar_t) == 0 && characters[bytes / sizeof(wchar_t) - 1] == L'\0');
}

HRESULT QueryTextSize(const CRegistryKey& key, const wchar_t* valueName, DWORD& bytes) {
    DWORD type = REG_NONE;
    const LSTATUS status = RegQueryValueExW(key.Get(), valueName, nullptr, &type, nullptr, &bytes);
    if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) {
        return HRESULT_FROM_WIN32(status);
    }
    return IsTextType(type) ? S_OK : kInvalidData;
}

HRESULT ReadText(const CRegistryKey& key, const wchar_t* valueName, DWORD bytes, std::wstring& text) {
    // One character more than is asked for: it closes a text that does not close itself.
    CHeapArray<wchar_t> characters(bytes / sizeof(wchar_t) + 2);
    DWORD type = REG_NONE;
    const LSTATUS status =
        RegQueryValueExW(key.Get(), valueName, nullptr, &type, reinterpret_cast<BYTE*>(characters.Get()), &bytes);
    if (status != ERROR_SUCCESS) {
        return HRESULT_FROM_WIN32(status);
    }
    if (!IsTextType(type)) {
        return kInvalidData;  // written anew since its size was asked for
    }
    text = characters.Get();
    return IsWellFormed(characters.Get(), bytes) ? S_OK : kInvalidData;
}

}  // namespace

std::wstring AgentKeyPath() {
    return kMakerKey + ProductName() + kAgentSubkey;
}

std::wstring PolicyKeyPath() {
    return kMakerPolicyKey + ProductName() + kAgentSubkey;
}

HRESULT ReadAgentRegistryString(const std::wstring& keyPath, const wchar_t* valueName, std::wstring& text) {
    CRegistryKey key;
    const LSTATUS opened = RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyPath.c_str(), 0, KEY_READ, key.Receive());
    if (opened != ERROR_SUCCESS) {
        return HRESULT_FROM_WIN32(opened);
    }
    DWORD bytes = 0;
    const HRESULT sized = QueryTextSize(key, valueName, bytes);
    return sized == S_OK ? ReadText(key, valueName, bytes, text) : sized;
}
