#include "FakeText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

constexpr char16_t kReplacement = 0xfffd;

void AppendByte(std::string& bytes, unsigned value) {
    bytes.push_back(static_cast<char>(value & 0xffu));
}

void AppendUnit(std::string& bytes, unsigned unit) {
    if (unit != 0 && unit < 0x80u) {
        AppendByte(bytes, unit);
    } else if (unit < 0x800u) {
        AppendByte(bytes, 0xc0u | (unit >> 6));
        AppendByte(bytes, 0x80u | (unit & 0x3fu));
    } else {
        AppendByte(bytes, 0xe0u | (unit >> 12));
        AppendByte(bytes, 0x80u | ((unit >> 6) & 0x3fu));
        AppendByte(bytes, 0x80u | (unit & 0x3fu));
    }
}

/// How many bytes follow the first byte of a sequence; -1 when no sequence begins with it.
int CountContinuation(unsigned first) {
    if (first < 0x80u) {
        return 0;
    }
    if ((first & 0xe0u) == 0xc0u) {
        return 1;
    }
    if ((first & 0xf0u) == 0xe0u) {
        return 2;
    }
    return (first & 0xf8u) == 0xf0u ? 3 : -1;
}

/// Takes one character off the front of `bytes`.
char32_t TakeCharacter(std::string_view& bytes) {
    const unsigned first = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    const int following = CountContinuation(first);
    if (following <= 0) {
        return following == 0 ? static_cast<char32_t>(first) : kReplacement;
    }
    char32_t character = first & (0x3fu >> following);
    for (int i = 0; i < following; ++i) {
        if (bytes.empty() || (static_cast<unsigned char>(bytes.front()) & 0xc0u) != 0x80u) {
            return kReplacement;
        }
        character = (character << 6) | (static_cast<unsigned char>(bytes.front()) & 0x3fu);
        bytes.remove_prefix(1);
    }
    return character;
}

void AppendEscape(std::string& text, unsigned unit) {
    constexpr char kDigits[] = "0123456789abcdef";
    text.append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4) {
        text.push_back(kDigits[(unit >> shift) & 0xfu]);
    }
}

}  // namespace

std::string EncodeModifiedUtf8(std::u16string_view units) {
    std::string bytes;
    bytes.reserve(units.length());
    for (const char16_t unit : units) {
        AppendUnit(bytes, unit);
    }
    return bytes;
}

std::u16string DecodeModifiedUtf8(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.length());
    while (!bytes.empty()) {
        const char32_t character = TakeCharacter(bytes);
        if (character < 0x10000u) {
            units.push_back(static_cast<char16_t>(character));
        } else {
            units.push_back(static_cast<char16_t>(0xd7c0u + (character >> 10)));
            units.push_back(static_cast<char16_t>(0xdc00u | (character & 0x3ffu)));
        }
    }
    return units;
}

std::string QuoteText(std::u16string_view units) {
    std::string text = "\"";
    for (const char16_t unit : units) {
        const bool isPlain = unit >= u' ' && unit <= u'~' && unit != u'"' && unit != u'\\';
        if (isPlain) {
            text.push_back(static_cast<char>(unit));
        } else {
            AppendEscape(text, unit);
        }
    }
    text.push_back('"');
    return text;
}

std::string DottedName(std::string_view className) {
    std::string dotted(className);
    std::replace(dotted.begin(), dotted.end(), '/', '.');
    return dotted;
}
