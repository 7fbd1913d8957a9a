#include "CVariantValue.h"

#include <utility>

#include "CBstr.h"
#include "ThrowResult.h"

namespace {

bool OwnsSomething(VARTYPE type) {
    if (type & VT_BYREF) {
        return false;
    }
    return (type & VT_ARRAY) || type == VT_BSTR || type == VT_UNKNOWN || type == VT_DISPATCH || type == VT_RECORD;
}

VARIANT MakeTyped(VARTYPE type) {
    VARIANT value{};
    value.vt = type;
    return value;
}

VARIANT CopyOf(const VARIANT& source) {
    if (!OwnsSomething(source.vt)) {
        return source;
    }
    VARIANT copy{};
    // The SDK's headers of this compiler leave the const out; the source is only read.
    const HRESULT result = VariantCopy(&copy, const_cast<VARIANT*>(&source));
    if (FAILED(result)) {
        ThrowResult(result);
    }
    return copy;
}

}  // namespace

CVariantValue::~CVariantValue() {
    if (OwnsSomething(m_value.vt)) {
        VariantClear(&m_value);
    }
}

CVariantValue::CVariantValue(const CVariantValue& other) : m_value(CopyOf(other.m_value)) {}

CVariantValue& CVariantValue::operator=(CVariantValue other) noexcept {
    std::swap(m_value, other.m_value);
    return *this;
}

CVariantValue CVariantValue::Copy(const VARIANT& value) {
    return CVariantValue(CopyOf(value));
}

VARIANT CVariantValue::Detach() noexcept {
    return std::exchange(m_value, VARIANT{});
}

CVariantValue MakeEmpty() {
    return CVariantValue();
}

CVariantValue MakeNull() {
    return CVariantValue(MakeTyped(VT_NULL));
}

CVariantValue MakeShort(SHORT value) {
    VARIANT made = MakeTyped(VT_I2);
    made.iVal = value;
    return CVariantValue(made);
}

CVariantValue MakeInt(LONG value) {
    VARIANT made = MakeTyped(VT_I4);
    made.lVal = value;
    return CVariantValue(made);
}

CVariantValue MakeUnsigned(ULONG value) {
    VARIANT made = MakeTyped(VT_UI4);
    made.ulVal = value;
    return CVariantValue(made);
}

CVariantValue MakeInt64(LONGLONG value) {
    VARIANT made = MakeTyped(VT_I8);
    made.llVal = value;
    return CVariantValue(made);
}

CVariantValue MakeFloat(FLOAT value) {
    VARIANT made = MakeTyped(VT_R4);
    made.fltVal = value;
    return CVariantValue(made);
}

CVariantValue MakeDouble(DOUBLE value) {
    VARIANT made = MakeTyped(VT_R8);
    made.dblVal = value;
    return CVariantValue(made);
}

CVariantValue MakeDate(DATE value) {
    VARIANT made = MakeTyped(VT_DATE);
    made.date = value;
    return CVariantValue(made);
}

CVariantValue MakeBool(bool value) {
    VARIANT made = MakeTyped(VT_BOOL);
    made.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return CVariantValue(made);
}

CVariantValue MakeError(SCODE value) {
    VARIANT made = MakeTyped(VT_ERROR);
    made.scode = value;
    return CVariantValue(made);
}

CVariantValue MakeText(std::wstring_view value) {
    VARIANT made = MakeTyped(VT_BSTR);
    made.bstrVal = CBstr::Make(value).Detach();
    return CVariantValue(made);
}

CVariantValue MakeNullText() {
    return CVariantValue(MakeTyped(VT_BSTR));
}

CVariantValue MakeInterface(IUnknown* object, VARTYPE type) {
    VARIANT made = MakeTyped(type);
    made.punkVal = object;
    if (object) {
        object->AddRef();
    }
    return CVariantValue(made);
}

CVariantValue MakeScalar(VARTYPE type, ULONGLONG bits) {
    VARIANT made = MakeTyped(type);
    made.ullVal = bits;
    return CVariantValue(made);
}
