#include "CVariant.h"

#include "CBstr.h"

namespace {

/// Whether the value, or the one that it refers to, is the address of nothing: what converts it would follow that.
bool RefersToNothing(const VARIANT& value) noexcept {
    if (!(value.vt & VT_BYREF)) {
        return false;
    }
    return !value.byref ||
           (value.vt == (VT_BYREF | VT_VARIANT) && (value.pvarVal->vt & VT_BYREF) && !value.pvarVal->byref);
}

/// Whether the value is, or refers to, a decimal with more places behind the point than one has (DECIMAL structure, OLE
/// Automation: 0 to 28): a conversion may write as many characters beyond what it has room for.
bool IsBrokenDecimal(const VARIANT& value) noexcept {
    constexpr BYTE kMostPlaces = 28;
    const VARIANT& seen = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
    return (seen.vt == VT_DECIMAL && seen.decVal.scale > kMostPlaces) ||
           (seen.vt == (VT_BYREF | VT_DECIMAL) && seen.pdecVal->scale > kMostPlaces);
}

}  // namespace

CVariant::CVariant() noexcept : VARIANT{} {}

// A VARIANT that refuses to be cleared (a locked array) keeps what it holds: there is nobody to tell.
CVariant::~CVariant() {
    VariantClear(this);
}

VARIANT* CVariant::Receive() noexcept {
    if (vt != VT_EMPTY) {  // as it is in a walk, thousands of times
        VariantClear(this);
    }
    static_cast<VARIANT&>(*this) = VARIANT{};
    return this;
}

HRESULT CVariant::CopyFrom(const VARIANT& source) noexcept {
    VARIANT seen = source;  // only read, but the header does not promise it
    return VariantCopy(Receive(), &seen);
}

HRESULT CVariant::ChangeTo(VARTYPE type) noexcept {
    if (RefersToNothing(*this) || IsBrokenDecimal(*this)) {
        return E_INVALIDARG;
    }
    return VariantChangeType(this, this, 0, type);
}

void CVariant::SetText(std::wstring_view text) {
    CBstr made = CBstr::Make(text);
    VARIANT& value = *Receive();
    value.vt = VT_BSTR;
    value.bstrVal = made.Detach();
}
