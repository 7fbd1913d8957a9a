#pragma once

#include <windows.h>

#include <oleauto.h>

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

    /// Makes a text of the value, in place, as VariantChangeType does it in the user's locale. False, the value staying
    /// as it is, for one that has no text.
    [[nodiscard]] bool ChangeToText() noexcept;
};
