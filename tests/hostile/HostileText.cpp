#include "HostileText.h"

#include <utility>

namespace {

using namespace std::string_view_literals;

constexpr std::wstring_view kLetters = L"abcxyzABCXYZ0189._-"sv;
// No-break and zero-width blanks, line and paragraph ends, the byte order mark and its mirror, letters whose case or
// width plays tricks, a combining accent.
constexpr std::wstring_view kOddCharacters =
    L"\x00A0\x200B\x2028\x2029\xFEFF\xFFFE\xFFFF\x0130\x0131\x017F\x00DF\xFF0D\xFF1D\xFF02\x0301\x4E2D"sv;

wchar_t ToCharacter(std::size_t number) noexcept {
    return static_cast<wchar_t>(number);
}

wchar_t SwitchCase(wchar_t character) noexcept {
    if (character >= L'a' && character <= L'z') {
        return ToCharacter(static_cast<std::size_t>(character) - (L'a' - L'A'));
    }
    if (character >= L'A' && character <= L'Z') {
        return ToCharacter(static_cast<std::size_t>(character) + (L'a' - L'A'));
    }
    return character;
}

}  // namespace

wchar_t HostileCharacter(CRandom& random, std::wstring_view favourites) {
    switch (random.Below(10)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return random.Pick(favourites);
        case 4:
        case 5:
        case 6:
            return random.Pick(kLetters);
        case 7:
            return random.OneIn(2) ? ToCharacter(random.Between(0x01, 0x1F)) : random.Pick(kOddCharacters);
        case 8:
            return ToCharacter(random.Between(0xD800, 0xDFFF));
        default:
            return ToCharacter(random.Between(0x01, 0xFFFF));
    }
}

std::wstring HostileText(CRandom& random, std::wstring_view favourites, std::size_t longest) {
    std::wstring text(random.Length(longest), L'\0');
    for (wchar_t& character : text) {
        character = HostileCharacter(random, favourites);
    }
    return text;
}

std::wstring NearMiss(CRandom& random, std::wstring text, std::wstring_view favourites) {
    for (std::size_t wrongs = random.Between(1, 3); wrongs > 0 && !text.empty(); --wrongs) {
        const std::size_t at = random.Below(text.size());
        switch (random.Below(8)) {
            case 0:
                text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, text[at]);
                break;
            case 2:
                std::swap(text[at], text[random.Below(text.size())]);
                break;
            case 3:
                text[at] = HostileCharacter(random, favourites);
                break;
            case 4:
                text.insert(at, 1, HostileCharacter(random, favourites));
                break;
            case 5:
                text[at] = SwitchCase(text[at]);
                break;
            case 6:
                text.resize(at);
                break;
            default:
                text.insert(random.Below(text.size()), text.substr(at, random.Between(1, 12)));
                break;
        }
    }
    return text;
}
