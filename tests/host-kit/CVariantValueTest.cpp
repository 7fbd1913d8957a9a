#include "CVariantValue.h"

#include "CBstr.h"
#include "HostKitFixture.h"

namespace {

class CVariantValueTest : public CHostKitTest {};

TEST_F(CVariantValueTest, MakersSetTypeAndValue) {
    EXPECT_EQ(DescribeValue(MakeEmpty().Get()), "EMPTY");
    EXPECT_EQ(DescribeValue(MakeNull().Get()), "NULL");
    EXPECT_EQ(DescribeValue(MakeShort(-2).Get()), "I2 -2");
    EXPECT_EQ(DescribeValue(MakeInt(-70000).Get()), "I4 -70000");
    EXPECT_EQ(DescribeValue(MakeUnsigned(4000000000U).Get()), "UI4 4000000000");
    EXPECT_EQ(DescribeValue(MakeInt64(-5000000000).Get()), "I8 -5000000000");
    EXPECT_EQ(DescribeValue(MakeFloat(0.5F).Get()), "R4 0.5");
    EXPECT_EQ(DescribeValue(MakeDouble(2.25).Get()), "R8 2.25");
    EXPECT_EQ(DescribeValue(MakeDate(45000.5).Get()), "DATE 45000.5");
    EXPECT_EQ(DescribeValue(MakeBool(true).Get()), "BOOL -1");
    EXPECT_EQ(DescribeValue(MakeError(E_FAIL).Get()), "type 10");
    EXPECT_EQ(DescribeValue(MakeText(L"route").Get()), "BSTR route");
    EXPECT_EQ(DescribeValue(MakeNullText().Get()), "BSTR null");
    EXPECT_EQ(DescribeValue(MakeInterface(nullptr).Get()), "UNKNOWN null");
}

TEST_F(CVariantValueTest, ACopyOfATextIsATextOfItsOwn) {
    const CVariantValue original = MakeText(std::wstring_view(L"a\0b", 3));

    CVariantValue copy;
    copy = original;

    EXPECT_NE(copy.Get().bstrVal, original.Get().bstrVal);
    EXPECT_EQ(DescribeValue(copy.Get()), std::string("BSTR a\0b", 8));
}

TEST_F(CVariantValueTest, EachCopyOfAnInterfaceHoldsAReference) {
    const auto box = MakePropertyBox(m_record, {});
    const CVariantValue value = MakeInterface(box.Get());
    CVariantValue copy = value;
    const CVariantValue moved = std::move(copy);

    EXPECT_EQ(m_record->CountReferences(IPropertyBox::kId), 3);
}

TEST_F(CVariantValueTest, TypesThatDoNotExistAreCopiedAsTheyAre) {
    const CVariantValue odd = MakeScalar(0x0FFF, 42);

    CVariantValue copy;
    copy = odd;

    EXPECT_EQ(copy.Get().vt, 0x0FFF);
    EXPECT_EQ(copy.Get().ullVal, 42U);
}

TEST_F(CVariantValueTest, WhatAByReferenceValuePointsAtIsNotOwned) {
    const CBstr text = CBstr::Make(L"owner's");
    BSTR pointed = text.Get();
    const CVariantValue reference = MakeScalar(VT_BSTR | VT_BYREF, reinterpret_cast<ULONGLONG>(&pointed));

    CVariantValue copy;
    copy = reference;

    EXPECT_EQ(copy.Get().pbstrVal, &pointed);
}

}  // namespace
