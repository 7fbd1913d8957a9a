#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

// How code written by hand asks the host: a text or a value at a time, freed as soon as it is read. No failures: the
// measured host has none.

[[nodiscard]] inline std::wstring_view View(BSTR text) noexcept {
    return {text, SysStringLen(text)};
}

/// What the host is asked by `ask(BSTR*)`, shown to `use(std::wstring_view)`.
template <typename Ask, typename Use>
auto WithText(const Ask& ask, const Use& use) {
    BSTR text = nullptr;
    ask(&text);
    const auto result = use(View(text));
    SysFreeString(text);
    return result;
}

/// Shows each pair of an enumerator, which is then released, to `use(std::wstring_view name, VARIANT& value)`.
template <typename Enumerator, typename Use>
void WithValues(Enumerator* values, const Use& use) {
    BSTR name = nullptr;
    VARIANT value;
    VariantInit(&value);
    while (values->Next(&name, &value) == S_OK) {
        use(View(name), value);
        SysFreeString(name);
        VariantClear(&value);
        name = nullptr;
    }
    values->Release();
}

/// Has `ask(Interface**)` give an object, of which there is one.
template <typename Interface, typename Ask>
[[nodiscard]] Interface* Given(const Ask& ask) {
    Interface* given = nullptr;
    ask(&given);
    return given;
}

/// The interface of an object; null when it has none.
template <typename Interface>
[[nodiscard]] Interface* Queried(IUnknown* object) {
    Interface* found = nullptr;
    if (object) {
        object->QueryInterface(Interface::kId, reinterpret_cast<void**>(&found));
    }
    return found;
}
