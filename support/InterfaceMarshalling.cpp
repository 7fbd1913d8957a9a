#include "InterfaceMarshalling.h"

#include <objbase.h>

#include <cstddef>
#include <cwchar>

#include "ThrowResult.h"
#include "SystemHandles.h"

namespace {

constexpr REGSAM kKeyAccess = KEY_READ | KEY_WRITE;

// The class of the OLE Automation (type library) marshaller.
constexpr wchar_t kAutomationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

constexpr const wchar_t* kMarshallerKeys[] = {L"ProxyStubClsid", L"ProxyStubClsid32"};

constexpr wchar_t kInterfacesPath[] = L"Interface\\";
// kInterfacesPath, an interface ID, a separator and the longer key name, with room to spare.
constexpr std::size_t kPathCharacters = 96;

bool OpenOrCreateKey(const wchar_t* path, CRegistryKey& key) {
    return RegOpenKeyExW(HKEY_CLASSES_ROOT, path, 0, kKeyAccess, key.Receive()) == ERROR_SUCCESS ||
           RegCreateKeyExW(HKEY_CLASSES_ROOT, path, 0, nullptr, REG_OPTION_NON_VOLATILE, kKeyAccess, nullptr,
                           key.Receive(), nullptr) == ERROR_SUCCESS;
}

bool LacksDefaultValue(const CRegistryKey& key) {
    DWORD size = 0;
    const LSTATUS status = RegQueryValueExW(key.Get(), nullptr, nullptr, nullptr, nullptr, &size);
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_NOT_FOUND;
}

LSTATUS WriteMarshaller(const CRegistryKey& key) {
    return RegSetValueExW(key.Get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(kAutomationMarshaller),
                          sizeof(kAutomationMarshaller));
}

}  // namespace

HRESULT RegisterInterfaceMarshalling(REFIID interfaceId) {
    CCoTaskMemText idText;
    if (FAILED(StringFromCLSID(interfaceId, idText.Receive()))) {
        return S_OK;  // kept: the caller's retry then tells that nothing was registered
    }
    wchar_t prefix[kPathCharacters];
    wcscpy_s(prefix, kPathCharacters, kInterfacesPath);
    wcscat_s(prefix, kPathCharacters, idText.Get());
    wcscat_s(prefix, kPathCharacters, L"\\");

    for (const wchar_t* const keyName : kMarshallerKeys) {
        wchar_t path[kPathCharacters];
        wcscpy_s(path, kPathCharacters, prefix);
        wcscat_s(path, kPathCharacters, keyName);

        CRegistryKey key;
        if (!OpenOrCreateKey(path, key)) {
            return LastErrorResult();  // kept: the thread's last error, whatever the registry functions returned
        }
        if (LacksDefaultValue(key)) {
            const LSTATUS written = WriteMarshaller(key);
            if (written != ERROR_SUCCESS) {
                return HRESULT_FROM_WIN32(written);
            }
        }
    }
    return S_OK;
}
