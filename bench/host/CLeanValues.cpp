#include "CLeanValues.h"

#include <algorithm>
#include <string_view>

namespace {

/// Fills a VARIANT by the value's kind.
struct Giver {
    VARIANT& given;

    HRESULT operator()(LONG value) const noexcept {
        given.vt = VT_I4;
        given.lVal = value;
        return S_OK;
    }
    HRESULT operator()(ULONG value) const noexcept {
        given.vt = VT_UI4;
        given.ulVal = value;
        return S_OK;
    }
    HRESULT operator()(LONGLONG value) const noexcept {
        given.vt = VT_I8;
        given.llVal = value;
        return S_OK;
    }
    HRESULT operator()(double value) const noexcept {
        given.vt = VT_R8;
        given.dblVal = value;
        return S_OK;
    }
    HRESULT operator()(const std::wstring& value) const noexcept {
        const HRESULT made = GiveText(&given.bstrVal, value);
        given.vt = static_cast<VARTYPE>(SUCCEEDED(made) ? VT_BSTR : VT_EMPTY);
        return made;
    }
    HRESULT operator()(IUnknown* value) const noexcept {
        given.vt = VT_UNKNOWN;
        given.punkVal = value;
        value->AddRef();
        return S_OK;
    }
};

}  // namespace

HRESULT GiveValue(VARIANT* given, const LeanValue& value) {
    return std::visit(Giver{*given}, value);
}

HRESULT CLeanValues::Next(BSTR* name, VARIANT* value) {
    if (m_position == m_pairs.size()) {
        m_position = 0;
        return S_FALSE;
    }
    const LeanPair& pair = m_pairs[m_position++];
    const HRESULT made = GiveText(name, pair.name);
    return FAILED(made) ? made : GiveValue(value, pair.value);
}

const LeanValue* CLeanValues::Find(BSTR name) const noexcept {
    const std::wstring_view wanted(name, SysStringLen(name));
    const auto found =
        std::find_if(m_pairs.begin(), m_pairs.end(), [wanted](const LeanPair& pair) { return pair.name == wanted; });
    return found == m_pairs.end() ? nullptr : &found->value;
}
