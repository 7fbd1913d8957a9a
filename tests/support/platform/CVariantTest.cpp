#include "CVariant.h"

#include <algorithm>
#include <string>

#include "CBstr.h"
#include "CLeakCheckedTest.h"

namespace {

class CVariantTest : public CLeakCheckedTest {};

bool IsAllZero(const VARIANT& variant) {
    const auto* const bytes = reinterpret_cast<const BYTE*>(&variant);
    return std::all_of(bytes, bytes + sizeof(variant), [](BYTE byte) { return byte == 0; });
}

TEST_F(CVariantTest, BeginsAllZero) {
    const CVariant variant;

    EXPECT_TRUE(IsAllZero(variant));
}

TEST_F(CVariantTest, FreesTheTextItOwns) {
    {
        CVariant variant;
        VARIANT* const received = variant.Receive();
        received->vt = VT_BSTR;
        received->bstrVal = SysAllocString(L"text");
        EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 1);
    }

    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 0);
}

TEST_F(CVariantTest, ReceivingClearsAndZeroesEverything) {
    CVariant variant;
    variant.vt = VT_DECIMAL;
    variant.decVal.Hi32 = 0xFFFFFFFF;
    variant.vt = VT_DECIMAL;

    EXPECT_TRUE(IsAllZero(*variant.Receive()));
}

TEST_F(CVariantTest, WhatAReferencePointsAtStaysItsOwners) {
    BSTR text = SysAllocString(L"the owner's");
    {
        CVariant variant;
        variant.vt = VT_BYREF | VT_BSTR;
        variant.pbstrVal = &text;
    }

    EXPECT_STREQ(text, L"the owner's");
    SysFreeString(text);
}

// ---- texts ----------------------------------------------------------------------------------------------

/// An object that may have a default property. Lives on the stack.
class CDispatched final : public IDispatch {
public:
    /// Null: it has none.
    explicit CDispatched(const wchar_t* defaultProperty) : m_defaultProperty(defaultProperty) {}
    ~CDispatched() { EXPECT_EQ(m_references, 0); }

    CDispatched(const CDispatched&) = delete;
    CDispatched& operator=(const CDispatched&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override {
        const bool isKnown = IsEqualIID(interfaceId, IID_IDispatch) || IsEqualIID(interfaceId, IID_IUnknown);
        *object = isKnown ? this : nullptr;
        m_references += isKnown ? 1 : 0;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return static_cast<ULONG>(--m_references); }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) noexcept override {
        if (id != DISPID_VALUE || !m_defaultProperty || !result) {
            return DISP_E_MEMBERNOTFOUND;
        }
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(m_defaultProperty);
        return S_OK;
    }

private:
    const wchar_t* const m_defaultProperty;
    long m_references = 0;
};

/// ChangeToText on a value that may be copied, beside what the system makes of it.
class VariantTextTest : public CLeakCheckedTest {
protected:
    /// Changes a copy of `source` and checks that it has the system's own text, or none and its type as before.
    /// @return the text, empty where there is none
    static std::wstring Change(const VARIANT& source) {
        auto* const value = const_cast<VARIANT*>(&source);  // the SDK's headers leave the const out
        CVariant expected;
        const bool isText = SUCCEEDED(VariantChangeType(&expected, value, 0, VT_BSTR));
        CVariant changed;
        EXPECT_EQ(VariantCopy(&changed, value), S_OK);

        EXPECT_EQ(changed.ChangeToText(), isText) << source.vt;

        EXPECT_EQ(changed.vt, isText ? VARTYPE{VT_BSTR} : source.vt);
        if (isText) {
            EXPECT_EQ(ViewBstr(changed.bstrVal), ViewBstr(expected.bstrVal)) << source.vt;
        }
        return isText ? std::wstring(ViewBstr(changed.bstrVal)) : L"";
    }
    static VARIANT Typed(VARTYPE type) {
        VARIANT value{};
        value.vt = type;
        return value;
    }
};

TEST_F(VariantTextTest, NumbersAndDatesAreTheSystemsTexts) {
    VARIANT value = Typed(VT_I4);
    value.lVal = -5;
    EXPECT_EQ(Change(value), L"-5");
    value = Typed(VT_R8);
    value.dblVal = 1.5;
    EXPECT_EQ(Change(value), L"1.5");
    value = Typed(VT_DATE);
    value.date = 45351.25;
    EXPECT_NE(Change(value), L"");
    value = Typed(VT_BOOL);
    value.boolVal = VARIANT_TRUE;
    EXPECT_EQ(Change(value), L"-1");
    value = Typed(VT_CY);
    value.cyVal.int64 = 12345;
    EXPECT_EQ(Change(value), L"1.2345");
    value = Typed(VT_EMPTY);
    value.decVal.Lo64 = 12345;
    value.decVal.scale = 2;
    value.vt = VT_DECIMAL;
    EXPECT_EQ(Change(value), L"123.45");
}

TEST_F(VariantTextTest, ATextStaysAsItIs) {
    CVariant value;
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocStringLen(L"a\0b", 3);

    EXPECT_EQ(Change(value), std::wstring(L"a\0b", 3));

    EXPECT_EQ(Change(Typed(VT_BSTR)), L"") << "a null one";
}

TEST_F(VariantTextTest, NothingIsTheEmptyText) {
    CVariant value;

    EXPECT_TRUE(value.ChangeToText());

    EXPECT_EQ(value.vt, VT_BSTR);
    EXPECT_EQ(ViewBstr(value.bstrVal), L"");
}

TEST_F(VariantTextTest, WhatHasNoTextStaysAsItIs) {
    for (const VARTYPE type : {VT_NULL, VT_ERROR, VT_UNKNOWN, VT_DISPATCH, VT_RECORD}) {
        CVariant value;
        value.vt = type;

        EXPECT_FALSE(value.ChangeToText()) << type;

        EXPECT_EQ(value.vt, type);
    }
}

TEST_F(VariantTextTest, AnObjectIsItsDefaultProperty) {
    CDispatched named(L"its name");
    CDispatched unnamed(nullptr);
    VARIANT value = Typed(VT_DISPATCH);

    value.pdispVal = &named;
    EXPECT_EQ(Change(value), L"its name");
    value.pdispVal = &unnamed;
    EXPECT_EQ(Change(value), L"") << "it has none";
}

TEST_F(VariantTextTest, AnArrayHasNone) {
    CVariant value;
    value.vt = VT_ARRAY | VT_I4;
    value.parray = SafeArrayCreateVector(VT_I4, 0, 3);

    EXPECT_FALSE(value.ChangeToText());

    EXPECT_EQ(value.vt, VT_ARRAY | VT_I4);
}

TEST_F(VariantTextTest, AReferenceToNowhereHasNone) {
    for (const int type : {VT_BSTR, VT_VARIANT, VT_UNKNOWN, VT_DISPATCH, VT_I4, VT_DATE, VT_DECIMAL, VT_RECORD}) {
        CVariant value;
        value.vt = static_cast<VARTYPE>(VT_BYREF | type);

        EXPECT_FALSE(value.ChangeToText()) << type;

        EXPECT_EQ(value.vt, VT_BYREF | type);
    }
}

TEST_F(VariantTextTest, AReferenceToAReferenceToNowhereHasNone) {
    VARIANT inner = Typed(VT_BYREF | VT_I4);
    VARIANT value = Typed(VT_BYREF | VT_VARIANT);
    value.pvarVal = &inner;
    CVariant changed;
    static_cast<VARIANT&>(changed) = value;

    EXPECT_FALSE(changed.ChangeToText());

    EXPECT_EQ(changed.vt, VT_BYREF | VT_VARIANT);
}

TEST_F(VariantTextTest, ADecimalWithMorePlacesThanThereAreHasNone) {
    for (const int places : {29, 252, 253, 255}) {
        CVariant value;
        value.decVal.Lo64 = 7;
        value.decVal.scale = static_cast<BYTE>(places);
        value.vt = VT_DECIMAL;  // after the rest of the decimal, which lies over it
        VARIANT inner = Typed(VT_BYREF | VT_DECIMAL);
        DECIMAL decimal = value.decVal;
        inner.pdecVal = &decimal;
        CVariant reference;
        static_cast<VARIANT&>(reference) = inner;
        CVariant nested;
        nested.vt = VT_BYREF | VT_VARIANT;
        nested.pvarVal = &inner;

        EXPECT_FALSE(value.ChangeToText()) << places;
        EXPECT_FALSE(reference.ChangeToText()) << places;
        EXPECT_FALSE(nested.ChangeToText()) << places;

        EXPECT_EQ(value.vt, VT_DECIMAL);
    }
}

TEST_F(VariantTextTest, AReferenceIsTheTextOfWhatItPointsAtWhichStays) {
    LONG number = 12;
    VARIANT value = Typed(VT_BYREF | VT_I4);
    value.plVal = &number;
    EXPECT_EQ(Change(value), L"12");

    const CBstr text(SysAllocString(L"the owner's"));
    BSTR referenced = text.Get();
    value = Typed(VT_BYREF | VT_BSTR);
    value.pbstrVal = &referenced;
    EXPECT_EQ(Change(value), L"the owner's");

    VARIANT inner = Typed(VT_I4);
    inner.lVal = 13;
    value = Typed(VT_BYREF | VT_VARIANT);
    value.pvarVal = &inner;
    EXPECT_EQ(Change(value), L"13");

    EXPECT_EQ(text.GetView(), L"the owner's");
    EXPECT_EQ(inner.vt, VT_I4);
}

}  // namespace
