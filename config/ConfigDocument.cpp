#include "ConfigDocument.h"

#include <msxml2.h>
#include <wrl/client.h>

#include <string_view>

#include "CVariant.h"
#include "HostObject.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kDocumentProgId[] = L"MSXML2.DOMDocument.6.0";
constexpr wchar_t kElementPath[] = L"//serverConfigRegistry";
constexpr std::wstring_view kElementName = L"serverConfigRegistry";

/// COM's failure, or E_FAIL where it gave nothing with success.
template <typename Interface>
HRESULT Require(HRESULT asked, const ComPtr<Interface>& given) {
    return SUCCEEDED(asked) && !given ? E_FAIL : asked;
}

HRESULT CreateDocument(ComPtr<IXMLDOMDocument>& document) {
    CLSID classId;
    const HRESULT known = CLSIDFromProgID(kDocumentProgId, &classId);
    if (FAILED(known)) {
        return known;
    }
    return AskForObject(document, [&](IXMLDOMDocument** given) {
        return CoCreateInstance(classId, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument, reinterpret_cast<void**>(given));
    });
}

/// Whether the document declares a type, and entities with it. MSXML 6 parses no such document in the first place;
/// Wine's does, and lets the entities grow.
bool HasDocumentType(IXMLDOMDocument& document) {
    ComPtr<IXMLDOMDocumentType> type;
    const HRESULT asked = AskForObject(type, [&](IXMLDOMDocumentType** given) { return document.get_doctype(given); });
    return FAILED(asked) || type;
}

/// The document element of the XML in `text`.
HRESULT ParseText(BSTR text, ComPtr<IXMLDOMElement>& element) {
    ComPtr<IXMLDOMDocument> document;
    const HRESULT created = Require(CreateDocument(document), document);
    if (FAILED(created)) {
        return created;
    }
    VARIANT_BOOL isParsed = VARIANT_FALSE;
    const HRESULT loaded = document->loadXML(text, &isParsed);
    if (FAILED(loaded)) {
        return loaded;
    }
    if (isParsed != VARIANT_TRUE || HasDocumentType(*document.Get())) {
        return E_FAIL;
    }
    return Require(AskForObject(element, [&](IXMLDOMElement** given) { return document->get_documentElement(given); }),
                   element);
}

HRESULT QueryElement(IUnknown* object, ComPtr<IXMLDOMElement>& element) {
    if (!object) {
        return E_FAIL;
    }
    const HRESULT queried = AskForObject(element, [&](IXMLDOMElement** given) {
        return object->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(given));
    });
    return FAILED(queried) || !element ? E_FAIL : S_OK;
}

/// The element to search from.
HRESULT FindStart(const VARIANT& configuration, ComPtr<IXMLDOMElement>& element) {
    CVariant text;
    if (SUCCEEDED(text.CopyFrom(configuration)) && text.ChangeToText()) {
        return ParseText(text.bstrVal, element);
    }
    CVariant object;
    if (FAILED(object.CopyFrom(configuration)) || FAILED(object.ChangeTo(VT_UNKNOWN))) {
        return E_FAIL;
    }
    return QueryElement(object.punkVal, element);
}

}  // namespace

HRESULT ReadServerConfigRegistryPath(const VARIANT& configuration, CBstr& path) {
    ComPtr<IXMLDOMElement> start;
    const HRESULT found = FindStart(configuration, start);
    if (FAILED(found)) {
        return found;
    }
    ComPtr<IXMLDOMNode> node;
    const CBstr elementPath = CBstr::Make(kElementPath);
    const HRESULT selected = Require(
        AskForObject(node, [&](IXMLDOMNode** given) { return start->selectSingleNode(elementPath.Get(), given); }),
        node);
    if (FAILED(selected)) {
        return selected;
    }
    CBstr name;
    const HRESULT named = node->get_nodeName(name.Receive());
    if (FAILED(named)) {
        return named;
    }
    if (name.GetView() != kElementName) {
        return E_FAIL;
    }
    CBstr text;
    const HRESULT read = node->get_text(text.Receive());
    if (FAILED(read)) {
        return read;
    }
    path = std::move(text);
    return S_OK;
}
