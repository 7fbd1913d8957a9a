#include "CVariant.h"

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

bool CVariant::ChangeToText() noexcept {
    if ((vt & VT_BYREF) && !byref) {
        return false;  // VariantChangeType would follow the pointer
    }
    return SUCCEEDED(VariantChangeType(this, this, 0, VT_BSTR));
}
