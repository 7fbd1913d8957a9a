#pragma once

#include <memory>
#include <utility>

#include "CComObject.h"
#include "CNameValueEnumerator.h"
#include "IPropertyBox.h"
#include "Readings.h"

/// Values under names.
class CPropertyBox final : public CComObject<IPropertyBox> {
public:
    explicit CPropertyBox(NamedValues values) : m_values(std::make_shared<const NamedValues>(std::move(values))) {}

    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) override {
        return GiveNewObject<CNameValueEnumerator>(properties, m_values);
    }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) override {
        return GiveValue(*m_values, name, value);
    }

private:
    const SharedValues m_values;
};
