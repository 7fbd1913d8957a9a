#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

/// A VARIANT that is cleared with its scope. Beside `_variant_t` because `Receive` zeroes all of it, not the type
/// alone: an out-parameter that its owner leaves half written then still reads as nothing. Clearing frees what the
/// VARIANT itself owns; what a `VT_BYREF` value points at stays its owner's (VariantClear, OLE Automation).
class CVariant : public VARIANT {
public:
    CVariant() noexcept;
    ~CVariant();

    CVariant(const CVariant&) = delete;
    CVariant& operator=(const CVariant&) = delete;

    /// Clears the value, zeroes it, and gives its address for an out-parameter.
    [[nodiscard]] VARIANT* Receive() noexcept;

    /// Replaces the value by a copy of `source`, which is empty where the system makes none. Of a VT_BYREF value the
    /// address alone is copied.
    [[nodiscard]] HRESULT CopyFrom(const VARIANT& source) noexcept;

    /// Makes `type` of the value, in place, as VariantChangeType does it in the user's locale, and returns what it
    /// returns; the value stays as it is on failure.
    [[nodiscard]] HRESULT ChangeTo(VARTYPE type) noexcept;
    /// The same for a VT_BSTR. False for a value that has no text.
    [[nodiscard]] bool ChangeToText() noexcept { return SUCCEEDED(ChangeTo(VT_BSTR)); }

    /// Replaces the value by a VT_BSTR. Throws `_com_error` with E_OUTOFMEMORY.
    void SetText(std::wstring_view text);
};
