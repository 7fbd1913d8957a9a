#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "CVariant.h"

/// Registry names are the same whatever their letters' case.
struct RegistryNameLess {
    [[nodiscard]] bool operator()(const std::wstring& left, const std::wstring& right) const noexcept;
};

/// The values of a key by their names: REG_SZ and REG_EXPAND_SZ, not expanded, as VT_BSTR up to the first zero,
/// REG_DWORD as VT_I4, REG_MULTI_SZ as an array of VT_BSTR, one element per text, empty ones between others included.
using RegistryValues = std::map<std::wstring, CVariant, RegistryNameLess>;

/// Reads all values of a key but those of other types, which nobody asks for.
/// @param values replaced on success, else untouched
/// @return S_OK or the registry's error as HRESULT
/// Throws `_com_error`, CHresultException or std::bad_alloc when memory is exhausted.
[[nodiscard]] HRESULT ReadRegistryKeyValues(HKEY root, const std::wstring& keyPath, RegistryValues& values);
