#include "CVariant.h"

#include <algorithm>

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

}  // namespace
