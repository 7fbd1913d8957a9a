#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "CRandom.h"
#include "HostileText.h"

/// A registry value as somebody's tool, or somebody's mistake, has left it.
struct StoredValue {
    DWORD type;
    std::vector<BYTE> bytes;
};

/// Of any type and size: texts that are closed, not closed, cut in the middle of a character, or empty; numbers; bytes.
[[nodiscard]] inline StoredValue MakeStoredValue(CRandom& random, std::size_t longestText) {
    static constexpr DWORD kTypes[] = {
        REG_SZ,       REG_SZ,    REG_SZ,   REG_SZ,     REG_SZ,   REG_EXPAND_SZ,        REG_EXPAND_SZ, REG_MULTI_SZ,
        REG_MULTI_SZ, REG_DWORD, REG_NONE, REG_BINARY, REG_LINK, REG_DWORD_BIG_ENDIAN, REG_QWORD};
    static constexpr std::wstring_view kFavourites(L"\0\0%\\;|", 6);
    StoredValue value{random.OneIn(50) ? static_cast<DWORD>(random.Next()) : random.Pick(kTypes), {}};
    std::wstring text = HostileText(random, kFavourites, longestText);
    text.append(random.OneIn(2) ? 1 : random.Below(4), L'\0');
    const auto* const bytes = reinterpret_cast<const BYTE*>(text.data());
    value.bytes.assign(bytes, bytes + text.size() * sizeof(wchar_t));
    switch (random.Below(8)) {
        case 0:
            value.bytes.push_back(static_cast<BYTE>(random.Below(256)));
            break;
        case 1:
            value.bytes.resize(random.Below(value.bytes.size() + 1));
            break;
        case 2:
            value.bytes.resize(random.Below(10));
            break;
        default:
            break;
    }
    return value;
}

inline void Store(HKEY key, const std::wstring& name, const StoredValue& value) {
    // Windows looks behind a text without its closing zero and takes one that it finds there along; no zero is there.
    std::vector<BYTE> guarded(value.bytes);
    guarded.insert(guarded.end(), {0xAB, 0xAB});
    if (RegSetValueExW(key, name.c_str(), 0, value.type, guarded.data(), static_cast<DWORD>(value.bytes.size())) !=
        ERROR_SUCCESS) {
        throw std::runtime_error("the registry refuses a test's value");
    }
}

/// The bytes as characters, up to the first zero; a byte that is left over is a character's lower half.
[[nodiscard]] inline std::wstring TextUpToZero(const std::vector<BYTE>& bytes) {
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const unsigned high = i + 1 < bytes.size() ? bytes[i + 1] : 0U;
        const auto character = static_cast<wchar_t>(bytes[i] | high << 8U);
        if (character == L'\0') {
            break;
        }
        text += character;
    }
    return text;
}
