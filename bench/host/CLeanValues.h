#pragma once

#include <string>
#include <variant>
#include <vector>

#include "CLeanObject.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"

/// A value of the kinds that hosts measure; an object is somebody else's.
using LeanValue = std::variant<LONG, ULONG, LONGLONG, double, std::wstring, IUnknown*>;

struct LeanPair {
    std::wstring name;
    LeanValue value;
};

/// Walks pairs, from the first again when it has come to its end: one is enough for any number of walks.
class CLeanValues final : public CLeanObject<INameValueEnumerator> {
public:
    explicit CLeanValues(std::vector<LeanPair> pairs) : m_pairs(std::move(pairs)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Next(BSTR* name, VARIANT* value) override;

    /// The value under a name; null when there is none.
    [[nodiscard]] const LeanValue* Find(BSTR name) const noexcept;

private:
    const std::vector<LeanPair> m_pairs;
    std::size_t m_position = 0;
};

/// Copies `value` into an initialised VARIANT.
HRESULT GiveValue(VARIANT* given, const LeanValue& value);

class CLeanBox final : public CLeanObject<IPropertyBox> {
public:
    explicit CLeanBox(std::vector<LeanPair> properties) : m_properties(std::move(properties)) {}

    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) override {
        return GiveObject<INameValueEnumerator>(properties, &m_properties);
    }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) override {
        const LeanValue* const found = m_properties.Find(name);
        return found ? GiveValue(value, *found) : DISP_E_UNKNOWNNAME;
    }

private:
    CLeanValues m_properties;
};
