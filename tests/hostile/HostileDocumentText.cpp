#include <string_view>

#include "HostileDocument.h"
#include "HostileVariant.h"

namespace {

using Kind = HostilePart::Kind;

bool IsHighSurrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

/// For comments and instructions: neither may hold what ends it.
std::wstring WithoutEnds(std::wstring text) {
    for (wchar_t& unit : text) {
        unit = unit == L'-' || unit == L'?' ? L'_' : unit;
    }
    return text;
}

/// Writes a document as an author who never writes a character the same way twice.
class CDocumentWriter {
public:
    CDocumentWriter(CRandom& random, HostileDocument& document) : m_random(random), m_document(document) {}

    void Write() {
        m_document.text = m_document.introduction;
        m_document.rootBegin = m_document.text.size();
        WriteElement(m_document.root, L" xmlns:p='http://example.test/p'");
        m_document.rootEnd = m_document.text.size();
        m_document.text += m_document.end;
    }

private:
    void WriteElement(const HostileElement& element, const wchar_t* declarations) {
        std::wstring& out = m_document.text;
        out += L"<" + element.name + declarations;
        if (element.defaultNamespace) {
            out += L" xmlns='" + *element.defaultNamespace + L"'";
        }
        out += element.attributes;
        if (element.parts.empty() && m_random.OneIn(2)) {
            out += L"/>";
            return;
        }
        out += L">";
        for (const HostilePart& part : element.parts) {
            m_document.contentPlaces.push_back(out.size());
            WritePart(part);
        }
        m_document.contentPlaces.push_back(out.size());
        out += L"</" + element.name + L">";
    }

    void WritePart(const HostilePart& part) {
        std::wstring& out = m_document.text;
        switch (part.kind) {
            case Kind::eText:
                WriteText(part.text);
                break;
            case Kind::eCharacterData:
                WriteCharacterData(part.text);
                break;
            case Kind::eComment:
                out += L"<!--" + WithoutEnds(part.text) + L"-->";
                break;
            case Kind::eInstruction:
                out += L"<?x " + WithoutEnds(part.text) + L"?>";
                break;
            case Kind::eElement:
                WriteElement(*part.element, L"");
                break;
        }
    }

    void WriteText(const std::wstring& text) {
        for (std::size_t at = 0; at < text.size(); ++at) {
            const wchar_t unit = text[at];
            const bool isPlain = unit != L'<' && unit != L'&' && unit != L'>';
            if (IsHighSurrogate(unit)) {
                m_document.text += text.substr(at++, 2);
            } else if (isPlain && !m_random.OneIn(8)) {
                m_document.text += unit;
            } else {
                m_document.text += Escape(unit);
            }
        }
    }

    /// What ends such a section ends it for good: the rest goes into another one.
    void WriteCharacterData(const std::wstring& text) {
        constexpr std::wstring_view kNewSection = L"]]><![CDATA[";
        std::wstring escaped = text;
        std::size_t at = 0;
        while ((at = escaped.find(L"]]>", at)) != std::wstring::npos) {
            escaped.insert(at + 2, kNewSection);
            at += 2 + kNewSection.size();
        }
        m_document.text += L"<![CDATA[" + escaped + L"]]>";
    }

    std::wstring Escape(wchar_t unit) {
        constexpr wchar_t kDigits[] = L"0123456789aBcDeF";
        switch (m_random.Below(3)) {
            case 0:
                return L"&#" + std::to_wstring(static_cast<unsigned>(unit)) + L";";
            case 1: {
                std::wstring digits;
                for (unsigned rest = unit; rest != 0; rest /= 16) {
                    digits.insert(digits.begin(), kDigits[rest % 16]);
                }
                return L"&#x00" + digits + L";";
            }
            default:
                return EscapeByName(unit);
        }
    }

    static std::wstring EscapeByName(wchar_t unit) {
        switch (unit) {
            case L'<':
                return L"&lt;";
            case L'>':
                return L"&gt;";
            case L'&':
                return L"&amp;";
            case L'"':
                return L"&quot;";
            case L'\'':
                return L"&apos;";
            default:
                return std::wstring(1, unit);
        }
    }

    CRandom& m_random;
    HostileDocument& m_document;
};

}  // namespace

void WriteDocument(CRandom& random, HostileDocument& document) {
    CDocumentWriter(random, document).Write();
}

std::wstring BreakDocument(CRandom& random, const HostileDocument& document) {
    constexpr std::wstring_view kNoContent[] = {L"& ",
                                                L"&x;",
                                                L"&#0;",
                                                L"&#xD800;",
                                                L"&#x110000;",
                                                L"<",
                                                L"< ",
                                                L"</x>",
                                                L"<x>",
                                                L"<x",
                                                L"<!x>",
                                                L"<x a=1/>",
                                                L"<x a/>",
                                                L"<x a='<'/>",
                                                L"<x></y>",
                                                L"<1/>",
                                                L"<!DOCTYPE a>",
                                                L"<? x?>",
                                                L"<?xml version='1.0'?>",
                                                L"<x a='1' a='2'/>"};
    constexpr std::wstring_view kNothingBehind[] = {L"x", L"<b/>", L"</a>", L"<![CDATA[]]>", L"&amp;"};
    constexpr std::wstring_view kNoCharacters[] = {L"\x01", L"\x1F", L"\xFFFE", L"\xFFFF"};
    std::wstring text = document.text;
    switch (random.Below(5)) {
        case 0:  // ends in the middle
            text.resize(random.Between(document.rootBegin + 1, document.rootEnd - 1));
            break;
        case 1:
            text.insert(document.rootEnd, random.Pick(kNothingBehind));
            break;
        case 2:
            if (!document.contentPlaces.empty()) {
                text.insert(random.Pick(document.contentPlaces), random.Pick(kNoCharacters));
                break;
            }
            [[fallthrough]];
        case 3:
            if (!document.contentPlaces.empty()) {
                text.insert(random.Pick(document.contentPlaces), random.Pick(kNoContent));
                break;
            }
            [[fallthrough]];
        default:  // begins with something else
            text.insert(document.rootBegin, random.OneIn(2) ? L"x" : L"</a>");
            break;
    }
    return PairSurrogates(std::move(text));
}

std::wstring AddDocumentType(CRandom& random, const HostileDocument& document) {
    constexpr std::wstring_view kTypes[] = {
        L"<!DOCTYPE a>",
        L"<!DOCTYPE a []>",
        L"<!DOCTYPE serverConfigRegistry SYSTEM 'file:///c:/no.dtd'>",
        L"<!DOCTYPE a [<!ENTITY e 'x'>]>",
        L"<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///c:/windows/win.ini'>]>",
        L"<!DOCTYPE a [<!ENTITY e 'eeeeeeee'><!ENTITY f '&e;&e;&e;&e;&e;&e;&e;&e;'>]>",
        L"<!DOCTYPE a [<!ATTLIST a b CDATA 'c'>]>",
    };
    std::wstring text = document.text;
    return text.insert(document.rootBegin, random.Pick(kTypes));
}
