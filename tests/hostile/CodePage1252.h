#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// The Western code page, as far as tests need it: the system's own table finds a likeness for many other characters.

/// What the bytes from 0x80 on mean; a zero: nothing that is used here.
constexpr wchar_t kCodePage1252From80[] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                           0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

/// The byte of a character that the code page has; 0 for others.
[[nodiscard]] inline char FindInCodePage1252(wchar_t character) {
    if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
        return static_cast<char>(character);
    }
    const auto* const found = std::find(std::begin(kCodePage1252From80), std::end(kCodePage1252From80), character);
    return found == std::end(kCodePage1252From80) ? '\0' : static_cast<char>(0x80 + (found - kCodePage1252From80));
}

/// Whether it is one that has no likeness in the code page: a Chinese one, or half of a surrogate pair.
[[nodiscard]] inline bool IsLostInCodePage1252(wchar_t character) {
    return (character >= 0x4E00 && character < 0xA000) || (character >= 0xD800 && character < 0xE000);
}

/// The text in the code page, a question mark for each UTF-16 unit that it lacks.
[[nodiscard]] inline std::string ToCodePage1252(std::wstring_view text) {
    std::string narrow;
    for (const wchar_t character : text) {
        const char found = FindInCodePage1252(character);
        narrow += found == '\0' ? '?' : found;
    }
    return narrow;
}

/// The text with a Chinese character for each of which it is not plain what becomes of it, and for each of `unwanted`.
[[nodiscard]] inline std::wstring OnlyKnownCharacters(std::wstring text, std::wstring_view unwanted) {
    std::replace_if(
        text.begin(), text.end(),
        [&](wchar_t character) {
            const bool isKnown = FindInCodePage1252(character) != '\0' || IsLostInCodePage1252(character);
            return !isKnown || unwanted.find(character) != std::wstring_view::npos;
        },
        L'\u4e2d');
    return text;
}
