#include "CLeanValues.h"

#include <algorithm>
#include <string_view>

HRESULT GiveValue(VARIANT* given, const VARIANT& value) noexcept {
    *given = value;
    if (value.vt == VT_BSTR) {
        given->bstrVal = SysAllocStringLen(value.bstrVal, SysStringLen(value.bstrVal));
        return given->bstrVal ? S_OK : E_OUTOFMEMORY;
    }
    if (value.vt == VT_UNKNOWN) {
        value.punkVal->AddRef();
    }
    return S_OK;
}

HRESULT CLeanValues::Next(BSTR* name, VARIANT* value) {
    if (m_position == m_pairs.size()) {
        m_position = 0;
        return S_FALSE;
    }
    const NameValueData& pair = m_pairs[m_position++];
    const HRESULT made = GiveText(name, pair.name);
    return FAILED(made) ? made : GiveValue(value, pair.value.Get());
}

const VARIANT* CLeanValues::Find(BSTR name) const noexcept {
    const std::wstring_view wanted(name, SysStringLen(name));
    const auto found = std::find_if(m_pairs.begin(), m_pairs.end(),
                                    [wanted](const NameValueData& pair) { return pair.name == wanted; });
    return found == m_pairs.end() ? nullptr : &found->value.Get();
}
