#pragma once

#include <msxml2.h>

#include <ostream>
#include <string>
#include <vector>

#include "CConfigLoaderTest.h"
#include "CVariantValue.h"
#include "ConfigDocument.h"

/// What reading a document's path came to, of an output that held "earlier".
struct ReadPath {
    static constexpr wchar_t kEarlier[] = L"earlier";

    HRESULT result;
    std::wstring path = kEarlier;

    friend bool operator==(const ReadPath& left, const ReadPath& right) {
        return left.result == right.result && left.path == right.path;
    }
    friend std::ostream& operator<<(std::ostream& out, const ReadPath& read) {
        return out << std::hex << read.result << std::dec << " " << testing::PrintToString(read.path.substr(0, 80));
    }
};

[[nodiscard]] inline ReadPath Read(const VARIANT& configuration) {
    CBstr path = CBstr::Make(ReadPath::kEarlier);
    const HRESULT result = ReadServerConfigRegistryPath(configuration, path);
    return {result, std::wstring(path.GetView())};
}

[[nodiscard]] inline ReadPath ReadText(const std::wstring& document) {
    return Read(MakeText(document).Get());
}

/// Fixture for documents, with COM and the system's MSXML.
class CConfigDocumentTest : public CConfigLoaderTest {
protected:
    using Element = Microsoft::WRL::ComPtr<IXMLDOMElement>;
    using Document = Microsoft::WRL::ComPtr<IXMLDOMDocument>;

    /// A document as a host would make it itself.
    [[nodiscard]] static Document MakeDocument(const std::wstring& text) {
        CLSID classId;
        Document document;
        VARIANT_BOOL isParsed = VARIANT_FALSE;
        EXPECT_EQ(CLSIDFromProgID(L"MSXML2.DOMDocument.6.0", &classId), S_OK);
        EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                   reinterpret_cast<void**>(document.GetAddressOf())),
                  S_OK);
        EXPECT_EQ(document->loadXML(CBstr::Make(text).Get(), &isParsed), S_OK);
        EXPECT_EQ(isParsed, VARIANT_TRUE);
        return document;
    }

    /// The first element that the path selects in such a document.
    [[nodiscard]] static Element MakeElement(const std::wstring& text, const wchar_t* path) {
        Microsoft::WRL::ComPtr<IXMLDOMNode> node;
        Element element;
        EXPECT_EQ(MakeDocument(text)->selectSingleNode(CBstr::Make(path).Get(), node.GetAddressOf()), S_OK);
        EXPECT_EQ(node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.GetAddressOf())), S_OK);
        return element;
    }
};
