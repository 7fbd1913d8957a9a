#pragma once

#include <utility>
#include <vector>

#include "CLeanObject.h"
#include "HostData.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"

/// Walks pairs, from the first again when it has come to its end: one is enough for any number of walks.
class CLeanValues final : public CLeanObject<INameValueEnumerator> {
public:
    explicit CLeanValues(std::vector<NameValueData> pairs) : m_pairs(std::move(pairs)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Next(BSTR* name, VARIANT* value) override;

    /// The value under a name; null when there is none.
    [[nodiscard]] const VARIANT* Find(BSTR name) const noexcept;

private:
    const std::vector<NameValueData> m_pairs;
    std::size_t m_position = 0;
};

/// Copies `value` into an initialised VARIANT.
HRESULT GiveValue(VARIANT* given, const VARIANT& value) noexcept;

class CLeanBox final : public CLeanObject<IPropertyBox> {
public:
    explicit CLeanBox(std::vector<NameValueData> properties) : m_properties(std::move(properties)) {}

    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) override {
        return GiveObject<INameValueEnumerator>(properties, &m_properties);
    }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) override {
        const VARIANT* const found = m_properties.Find(name);
        return found ? GiveValue(value, *found) : DISP_E_UNKNOWNNAME;
    }

private:
    CLeanValues m_properties;
};
