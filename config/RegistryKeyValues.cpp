#include "RegistryKeyValues.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "CBstr.h"
#include "SystemHandles.h"
#include "ThrowResult.h"

namespace {

/// The longest name of a value, in characters, without its zero (registry element size limits, Windows).
constexpr DWORD kLongestName = 16383;
constexpr std::size_t kFirstDataSize = 4096;
/// No server's texts are longer: whoever goes on asking for more room does not get it.
constexpr std::size_t kMostData = std::size_t{1} << 28;

/// One value as the registry has it.
struct RawValue {
    std::wstring name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

/// All whole characters of the data.
std::wstring ToText(const std::vector<BYTE>& data) {
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) {  // memcpy takes no null pointer
        std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
    }
    return text;
}

/// The texts between the zeros; those that close the list, as many as there are, are not parts of it.
std::vector<std::wstring_view> SplitMultiText(std::wstring_view text) {
    text = text.substr(0, text.find_last_not_of(L'\0') + 1);
    std::vector<std::wstring_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\0'), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

void SetTextArray(CVariant& value, const std::vector<std::wstring_view>& texts) {
    CSafeArray array(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size())));
    if (!array) {
        ThrowResult(E_OUTOFMEMORY);
    }
    auto* element = static_cast<BSTR*>(array.Get()->pvData);
    for (const std::wstring_view text : texts) {
        *element++ = CBstr::Make(text).Detach();
    }
    VARIANT& receiving = *value.Receive();
    receiving.vt = VT_ARRAY | VT_BSTR;
    receiving.parray = array.Detach();
}

/// False for a value of a type that is left out, or a number that is too short to be one.
bool SetValue(CVariant& value, const RawValue& raw) {
    switch (raw.type) {
        case REG_SZ:
        case REG_EXPAND_SZ: {
            const std::wstring text = ToText(raw.data);
            value.SetText(std::wstring_view(text).substr(0, text.find(L'\0')));
            return true;
        }
        case REG_MULTI_SZ: {
            const std::wstring text = ToText(raw.data);
            SetTextArray(value, SplitMultiText(text));
            return true;
        }
        case REG_DWORD: {
            if (raw.data.size() < sizeof(LONG)) {
                return false;
            }
            VARIANT& receiving = *value.Receive();
            receiving.vt = VT_I4;
            std::memcpy(&receiving.lVal, raw.data.data(), sizeof(LONG));
            return true;
        }
        default:
            return false;
    }
}

/// Reads the value at `index`. The room for its data grows until it is enough: a value may be written anew at any time.
LSTATUS ReadValue(const CRegistryKey& key, DWORD index, RawValue& raw) {
    raw.data.resize(kFirstDataSize);
    for (;;) {
        raw.name.resize(kLongestName + 1);
        auto nameLength = static_cast<DWORD>(raw.name.size());
        auto dataSize = static_cast<DWORD>(raw.data.size());
        const LSTATUS status = RegEnumValueW(key.Get(), index, raw.name.data(), &nameLength, nullptr, &raw.type,
                                             raw.data.data(), &dataSize);
        if (status == ERROR_MORE_DATA && raw.data.size() < kMostData) {
            raw.data.resize(std::max<std::size_t>(dataSize, raw.data.size() * 2));
            continue;
        }
        if (status == ERROR_SUCCESS) {
            raw.name.resize(nameLength);
            raw.data.resize(dataSize);
        }
        return status;
    }
}

}  // namespace

bool RegistryNameLess::operator()(const std::wstring& left, const std::wstring& right) const noexcept {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

HRESULT ReadRegistryKeyValues(HKEY root, const std::wstring& keyPath, RegistryValues& values) {
    CRegistryKey key;
    const LSTATUS opened = RegOpenKeyExW(root, keyPath.c_str(), 0, KEY_READ, key.Receive());
    if (opened != ERROR_SUCCESS) {
        return HRESULT_FROM_WIN32(opened);
    }
    RegistryValues found;
    RawValue raw;
    for (DWORD index = 0;; ++index) {
        const LSTATUS read = ReadValue(key, index, raw);
        if (read == ERROR_NO_MORE_ITEMS) {
            break;
        }
        if (read != ERROR_SUCCESS) {
            return HRESULT_FROM_WIN32(read);
        }
        CVariant& value = found[raw.name];
        if (!SetValue(value, raw)) {
            found.erase(raw.name);
        }
    }
    values.swap(found);
    return S_OK;
}
