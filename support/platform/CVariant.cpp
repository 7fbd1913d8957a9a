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

}  // namespace

CVariant::CVariant() noexcept : VARIANT{} {}

// A VARIANT that refuses to be cleared (a locked array) keeps what it holds: there is nobody to tell.
CVariant::~CVariant() {
    VariantClear(this);
}

VARIANT* CVariant::Receive() noexcept {
    VariantClear(this);
    static_cast<VARIANT&>(*this) = VARIANT{};
    return this;
}

HRESULT CVariant::CopyFrom(const VARIANT& source) noexcept {
    VARIANT seen = source;  // only read, but the header does not promise it
    return VariantCopy(Receive(), &seen);
}

HRESULT CVariant::ChangeTo(VARTYPE type) noexcept {
    if (RefersToNothing(*this)) {
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
