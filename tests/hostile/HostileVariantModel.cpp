#include "HostileVariantModel.h"

#include <array>
#include <charconv>

namespace {

using Kind = ModelMetricValue::Kind;

std::wstring TextOfBstr(BSTR text) {
    return text ? std::wstring(text, SysStringByteLen(text) / sizeof(wchar_t)) : std::wstring();
}

template <typename Number>
std::string Shortest(Number number) {
    std::array<char, 64> text{};
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
}

bool IsNullReference(const VARIANT& value) {
    return (value.vt & VT_BYREF) != 0 && value.byref == nullptr;
}

bool RefersToNothing(const VARIANT& value) {
    return IsNullReference(value) || (value.vt == (VT_BYREF | VT_VARIANT) && IsNullReference(*value.pvarVal));
}

/// No decimal has more than 28 places; the system may overrun its own buffer for such a one. References are followed
/// once, since they may lead round in a circle.
bool IsNoDecimal(const VARIANT& value) {
    const VARIANT& own = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
    const DECIMAL* decimal = own.vt == VT_DECIMAL ? &own.decVal : nullptr;
    if (own.vt == (VT_BYREF | VT_DECIMAL)) {
        decimal = own.pdecVal;
    }
    return decimal && decimal->scale > 28;
}

/// Whether the system has no part in it; `text` is what the value's own type says then.
bool FindOwnText(const VARIANT& value, std::optional<std::wstring>& text) {
    switch (value.vt) {
        case VT_BSTR:
            text = TextOfBstr(value.bstrVal);
            return true;
        case VT_I2:
            text = std::to_wstring(value.iVal);
            return true;
        case VT_I4:
        case VT_INT:
            text = std::to_wstring(value.lVal);
            return true;
        case VT_I8:
            text = std::to_wstring(value.llVal);
            return true;
        case VT_UI1:
            text = std::to_wstring(value.bVal);
            return true;
        case VT_UI2:
            text = std::to_wstring(value.uiVal);
            return true;
        case VT_UI4:
        case VT_UINT:
            text = std::to_wstring(value.ulVal);
            return true;
        case VT_UI8:
            text = std::to_wstring(value.ullVal);
            return true;
        case VT_EMPTY:
            text = L"";
            return true;
        case VT_NULL:
        case VT_ERROR:
        case VT_UNKNOWN:
        case VT_RECORD:
            return true;
        default:  // bytes alone can be a text
            return (value.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY && value.vt != (VT_ARRAY | VT_UI1);
    }
}

}  // namespace

ModelMetricValue ModelMetric(const VARIANT& value) {
    switch (value.vt) {
        case 2:
            return {Kind::eLong, std::to_string(value.iVal)};
        case 3:
            return {Kind::eLong, std::to_string(value.lVal)};
        case 4:
            return {Kind::eDouble, Shortest(static_cast<double>(value.fltVal))};
        case 5:
            return {Kind::eDouble, Shortest(value.dblVal)};
        case 8:
            return {Kind::eText, {}, TextOfBstr(value.bstrVal)};
        case 18:
            return {Kind::eLong, std::to_string(value.uiVal)};
        case 19:
            return {Kind::eLong, std::to_string(value.ulVal)};
        case 20:
            return {Kind::eLong, std::to_string(value.llVal)};
        case 21:  // the upper half is negative to Java: less 2 to the 64th
            return {Kind::eLong, value.ullVal < 0x8000000000000000
                                     ? std::to_string(value.ullVal)
                                     : "-" + std::to_string(0xFFFFFFFFFFFFFFFF - value.ullVal + 1)};
        default:
            return {};
    }
}

std::optional<std::wstring> ModelText(const VARIANT& value) {
    std::optional<std::wstring> text;
    if (RefersToNothing(value) || IsNoDecimal(value) || FindOwnText(value, text)) {
        return text;
    }
    VARIANT asked = value;  // owns nothing of its own: the value's owner outlives it
    VARIANT made{};
    if (SUCCEEDED(VariantChangeType(&made, &asked, 0, VT_BSTR))) {
        text = TextOfBstr(made.bstrVal);
        VariantClear(&made);
    }
    return text;
}

HRESULT ModelObject(const VARIANT& value, IUnknown*& object) {
    if (RefersToNothing(value) || IsNoDecimal(value)) {
        return E_INVALIDARG;
    }
    VARIANT asked = value;
    VARIANT made{};
    const HRESULT result = VariantChangeType(&made, &asked, 0, VT_UNKNOWN);
    if (SUCCEEDED(result)) {
        object = made.punkVal;
        VariantClear(&made);
    }
    return result;
}
