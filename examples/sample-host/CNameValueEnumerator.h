#pragma once

#include <memory>
#include <utility>

#include "CComObject.h"
#include "INameValueEnumerator.h"
#include "Readings.h"

/// Values that enumerators and boxes share; nobody changes them.
using SharedValues = std::shared_ptr<const NamedValues>;

/// A copy of a value, for an out-parameter.
inline HRESULT CopyValue(VARIANT* given, const VARIANT& value) noexcept {
    return VariantCopy(given, const_cast<VARIANT*>(&value));  // MinGW's header leaves out the const
}

/// Walks values in their order, once.
class CNameValueEnumerator final : public CComObject<INameValueEnumerator> {
public:
    explicit CNameValueEnumerator(SharedValues values) noexcept : m_values(std::move(values)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE Next(BSTR* name, VARIANT* value) override {
        if (m_next == m_values->size()) {
            return S_FALSE;
        }
        const NamedValue& current = (*m_values)[m_next++];
        const HRESULT named = GiveText(name, current.name);
        return FAILED(named) ? named : CopyValue(value, current.value);
    }

private:
    const SharedValues m_values;
    std::size_t m_next = 0;
};

/// The value under a name, for IPropertyBox::GetProperty. Callers take any failure for "there is none".
inline HRESULT GiveValue(const NamedValues& values, const wchar_t* name, VARIANT* given) noexcept {
    for (const NamedValue& value : values) {
        if (name && value.name == name) {
            return CopyValue(given, value.value);
        }
    }
    return DISP_E_UNKNOWNNAME;
}
