#include "HostileDocument.h"

#include <cwctype>
#include <string_view>

#include "HostileText.h"
#include "HostileVariant.h"

namespace {

using namespace std::string_view_literals;
using Kind = HostilePart::Kind;

constexpr std::wstring_view kPathElement = L"serverConfigRegistry"sv;
constexpr std::wstring_view kOtherNames[] = {L"agent",
                                             L"a",
                                             L"ServerConfigRegistry",
                                             L"serverConfigRegistr",
                                             L"serverConfigRegistryPath",
                                             L"serverConfigRegistry.",
                                             L"_serverConfigRegistry",
                                             L"p:serverConfigRegistry",
                                             L"p:agent",
                                             L"\x4E2D"};
constexpr std::wstring_view kCharacters = L"\\HKEY_LOCAL_MACHINE<>&'\"%;#[]{}|=/!?-\x00E9\x4E2D"sv;
constexpr std::wstring_view kInnerBlanks[] = {L" ", L"  ", L"\t", L" \t "};
constexpr std::size_t kLongestText = 3000;
constexpr std::size_t kMostDepth = 100;

bool IsSurrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

/// Any text that a document can hold, without blanks at its ends, which parsers take off.
std::wstring MakeContent(CRandom& random) {
    std::wstring content;
    for (const wchar_t unit : HostileText(random, kCharacters, kLongestText)) {
        if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE || std::iswspace(unit) != 0) {
            content += content.empty() ? L"x"sv : random.Pick(kInnerBlanks);
        } else if (IsSurrogate(unit)) {
            content += L"\xD83D\xDE00";
        } else {
            content += unit;
        }
    }
    if (!content.empty() && std::iswspace(content.back()) != 0) {
        content += L'y';
    }
    return content;
}

std::wstring MakeAttributes(CRandom& random) {
    std::wstring attributes;
    for (std::size_t number = random.OneIn(3) ? random.Below(4) : 0; number > 0; --number) {
        const wchar_t quote = random.OneIn(2) ? L'"' : L'\'';
        std::wstring value =
            random.OneIn(300) ? std::wstring(random.Between(10'000, 60'000), L'v') : MakeContent(random);
        for (wchar_t& unit : value) {
            unit = unit == quote || unit == L'<' || unit == L'&' ? L'_' : unit;
        }
        const std::wstring name = random.OneIn(3) ? std::wstring(kPathElement) : std::wstring(L"a");
        attributes.append(L" ").append(name).append(std::to_wstring(number)).append(L"=");
        attributes.append(1, quote).append(value).append(1, quote);
    }
    return attributes;
}

HostileElement MakeElement(CRandom& random, std::size_t depth);

HostilePart MakePart(CRandom& random, std::size_t depth) {
    constexpr Kind kKinds[] = {Kind::eText,    Kind::eText,        Kind::eText,    Kind::eCharacterData,
                               Kind::eComment, Kind::eInstruction, Kind::eElement, Kind::eElement};
    HostilePart part;
    part.kind = random.Pick(kKinds);
    if (part.kind == Kind::eElement) {
        part.element = std::make_unique<HostileElement>(MakeElement(random, depth + 1));
    } else {
        part.text = MakeContent(random);
    }
    return part;
}

HostileElement MakeElement(CRandom& random, std::size_t depth) {
    HostileElement element;
    element.name = random.OneIn(3) ? std::wstring(kPathElement) : std::wstring(random.Pick(kOtherNames));
    if (random.OneIn(10)) {
        element.defaultNamespace = random.OneIn(2) ? L"" : L"http://example.test/ns";
    }
    element.attributes = MakeAttributes(random);
    for (std::size_t left = depth < 4 ? random.Below(4) : 0; left > 0; --left) {
        element.parts.push_back(MakePart(random, depth));
    }
    return element;
}

/// `inner` inside of many others.
HostileElement Bury(CRandom& random, HostileElement inner) {
    for (std::size_t left = random.Below(kMostDepth); left > 0; --left) {
        HostileElement outer;
        outer.name = L"a";
        HostilePart part;
        part.kind = Kind::eElement;
        part.element = std::make_unique<HostileElement>(std::move(inner));
        outer.parts.push_back(std::move(part));
        inner = std::move(outer);
    }
    return inner;
}

/// The texts of an element and of all in it, one after the other.
void CollectText(const HostileElement& element, std::wstring& text) {
    for (const HostilePart& part : element.parts) {
        if (part.kind == Kind::eElement) {
            CollectText(*part.element, text);
        } else if (part.kind == Kind::eText || part.kind == Kind::eCharacterData) {
            text += part.text;
        }
    }
}

/// The first element of that name and of no namespace, the outer before the inner.
template <typename Element>
Element* FindElement(Element& element, const std::wstring& outerNamespace) {
    const std::wstring& defaultNamespace = element.defaultNamespace ? *element.defaultNamespace : outerNamespace;
    if (element.name == kPathElement && defaultNamespace.empty()) {
        return &element;
    }
    for (const HostilePart& part : element.parts) {
        if (part.kind == Kind::eElement) {
            if (Element* const found = FindElement<Element>(*part.element, defaultNamespace)) {
                return found;
            }
        }
    }
    return nullptr;
}

HostileDocument MakeTree(CRandom& random) {
    constexpr std::wstring_view kIntroductions[] = {
        L"", L"<?xml version='1.0'?>", L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n",
        L"<!-- <serverConfigRegistry>x</serverConfigRegistry> -->", L"<?serverConfigRegistry x?>\n\t"};
    constexpr std::wstring_view kEnds[] = {L"", L"\r\n", L"<!-- end -->", L"<?x?> "};
    HostileDocument document;
    document.introduction = random.Pick(kIntroductions);
    document.end = random.Pick(kEnds);
    document.root = MakeElement(random, 0);
    if (random.OneIn(20)) {
        document.root = Bury(random, std::move(document.root));
    }
    return document;
}

}  // namespace

std::optional<std::wstring> HostileDocument::FindPath() const {
    const HostileElement* const found = FindElement(root, L"");
    if (!found) {
        return std::nullopt;
    }
    std::wstring path;
    CollectText(*found, path);
    return path;
}

HostileDocument MakeHostileDocument(CRandom& random) {
    HostileDocument document = MakeTree(random);
    WriteDocument(random, document);
    return document;
}

HostileDocument MakeHostileDocumentNaming(CRandom& random, const std::wstring& path) {
    HostileDocument document = MakeTree(random);
    if (HostileElement* const found = FindElement(document.root, L"")) {
        found->parts.clear();
        found->parts.push_back({Kind::eText, path});
    }
    WriteDocument(random, document);
    return document;
}
