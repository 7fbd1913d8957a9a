#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

/// A VARIANT as a value: copies are made with VariantCopy (an interface gets one more reference), the destructor
/// clears. Types that own nothing, unknown ones included, are copied bit by bit, so that a test can hand out what no
/// healthy host would. Copying throws CHresultException.
class CVariantValue {
public:
    CVariantValue() noexcept : m_value{} {}
    /// Takes `value` over.
    explicit CVariantValue(const VARIANT& value) noexcept : m_value(value) {}
    ~CVariantValue();

    CVariantValue(const CVariantValue& other);
    CVariantValue(CVariantValue&& other) noexcept : m_value(other.Detach()) {}
    CVariantValue& operator=(CVariantValue other) noexcept;

    /// A copy of `value`, which stays the caller's.
    [[nodiscard]] static CVariantValue Copy(const VARIANT& value);

    /// As long as this object lives and does not change.
    [[nodiscard]] const VARIANT& Get() const noexcept { return m_value; }
    /// Gives the value away; this one is empty afterwards.
    [[nodiscard]] VARIANT Detach() noexcept;

private:
    VARIANT m_value;
};

[[nodiscard]] CVariantValue MakeEmpty();
[[nodiscard]] CVariantValue MakeNull();
[[nodiscard]] CVariantValue MakeShort(SHORT value);
[[nodiscard]] CVariantValue MakeInt(LONG value);
[[nodiscard]] CVariantValue MakeUnsigned(ULONG value);
[[nodiscard]] CVariantValue MakeInt64(LONGLONG value);
[[nodiscard]] CVariantValue MakeFloat(FLOAT value);
[[nodiscard]] CVariantValue MakeDouble(DOUBLE value);
/// `value` counts days since 1899-12-30.
[[nodiscard]] CVariantValue MakeDate(DATE value);
[[nodiscard]] CVariantValue MakeBool(bool value);
[[nodiscard]] CVariantValue MakeError(SCODE value);
[[nodiscard]] CVariantValue MakeText(std::wstring_view value);
/// A VT_BSTR without a text.
[[nodiscard]] CVariantValue MakeNullText();
/// One more reference to `object`, which may be null; VT_UNKNOWN or VT_DISPATCH.
[[nodiscard]] CVariantValue MakeInterface(IUnknown* object, VARTYPE type = VT_UNKNOWN);
/// Any type that owns nothing, VT_BYREF ones and types that do not exist included: the value's eight bytes are `bits`.
[[nodiscard]] CVariantValue MakeScalar(VARTYPE type, ULONGLONG bits);
