#include "HostText.h"

#include <msxml2.h>

#include <sstream>

#include "CBstr.h"
#include "CHostReference.h"

namespace {

/// The text of an XML node; false for any other object. Not through IDispatch, although every node has it: its first
/// use loads a type library that stays, which a test's accounts would show as left over.
bool ReadXml(IUnknown* object, std::string& text) {
    CHostReference<IXMLDOMNode> node;
    CBstr xml;
    if (FAILED(object->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.Receive()))) ||
        node->get_xml(xml.Receive()) != S_OK) {
        return false;
    }
    text = DescribeText(xml.Get());
    return true;
}

std::string DescribeObject(IUnknown* object) {
    std::string xml;
    if (!object) {
        return "null";
    }
    return ReadXml(object, xml) ? xml : "object";
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string converted(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, converted.data(), needed, nullptr, nullptr);
    return converted;
}

std::string DescribeText(BSTR text) {
    return text ? ToUtf8({text, SysStringLen(text)}) : "null";
}

std::string DescribeValue(const VARIANT& value) {
    std::ostringstream text;
    switch (value.vt) {
        case VT_EMPTY:
            text << "EMPTY";
            break;
        case VT_NULL:
            text << "NULL";
            break;
        case VT_I2:
            text << "I2 " << value.iVal;
            break;
        case VT_I4:
            text << "I4 " << value.lVal;
            break;
        case VT_UI4:
            text << "UI4 " << value.ulVal;
            break;
        case VT_I8:
            text << "I8 " << value.llVal;
            break;
        case VT_R4:
            text << "R4 " << value.fltVal;
            break;
        case VT_R8:
            text << "R8 " << value.dblVal;
            break;
        case VT_DATE:
            text << "DATE " << value.date;
            break;
        case VT_BOOL:
            text << "BOOL " << value.boolVal;
            break;
        case VT_BSTR:
            text << "BSTR " << DescribeText(value.bstrVal);
            break;
        case VT_UNKNOWN:
            text << "UNKNOWN " << DescribeObject(value.punkVal);
            break;
        case VT_DISPATCH:
            text << "DISPATCH " << DescribeObject(value.pdispVal);
            break;
        default:
            text << "type " << value.vt;
    }
    return text.str();
}
