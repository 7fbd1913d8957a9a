#include "HostObject.h"

#include <memory>
#include <string>
#include <vector>

#include "CLeakCheckedTest.h"
#include "HostObjects.h"

namespace {

using Microsoft::WRL::ComPtr;

class HostObjectTest : public CLeakCheckedTest {
protected:
    void TearDown() override {
        EXPECT_EQ(m_record->DescribeLeftovers(), "");
        EXPECT_EQ(m_record->GetViolations(), std::vector<std::string>{});
        CLeakCheckedTest::TearDown();
    }

    [[nodiscard]] const CRecordPointer& Record() const { return m_record; }
    [[nodiscard]] CHostReference<IPropertyBox> MakeBox() const { return MakePropertyBox(m_record, {}); }
    [[nodiscard]] long CountBoxReferences() const { return m_record->CountReferences(IPropertyBox::kId); }

private:
    CRecordPointer m_record = std::make_shared<CCallRecord>();
};

/// An operation that leaves `given` at the address it gets, and returns `result`.
auto Leaving(IPropertyBox* given, HRESULT result) {
    return [=](IPropertyBox** address) {
        EXPECT_EQ(*address, nullptr) << "the address is empty";
        *address = given;
        return result;
    };
}

TEST_F(HostObjectTest, WhatSucceedsGivesItsReference) {
    for (const HRESULT result : {S_OK, S_FALSE}) {
        ComPtr<IPropertyBox> box;

        EXPECT_EQ(AskForObject(box, Leaving(MakeBox().Detach(), result)), result);

        EXPECT_NE(box, nullptr);
        EXPECT_EQ(CountBoxReferences(), 1);
    }
}

TEST_F(HostObjectTest, WhatSucceedsMayGiveNothing) {
    ComPtr<IPropertyBox> box;

    EXPECT_EQ(AskForObject(box, Leaving(nullptr, S_OK)), S_OK);

    EXPECT_EQ(box, nullptr);
}

TEST_F(HostObjectTest, WhatFailsHasGivenNothingWhateverStandsThere) {
    const auto object = MakeBox();
    for (const HRESULT result : {E_FAIL, E_NOINTERFACE, static_cast<HRESULT>(0x8ABCDEF0)}) {
        ComPtr<IPropertyBox> box;

        EXPECT_EQ(AskForObject(box, Leaving(object.Get(), result)), result);

        EXPECT_EQ(box, nullptr);
        EXPECT_EQ(CountBoxReferences(), 1) << "the object's owner's";
    }
}

TEST_F(HostObjectTest, WhatWasHeldBeforeIsReleasedFirst) {
    for (const HRESULT result : {S_OK, E_FAIL}) {
        ComPtr<IPropertyBox> box(MakeBox().Get());
        ASSERT_EQ(CountBoxReferences(), 1);

        EXPECT_EQ(AskForObject(box, Leaving(nullptr, result)), result);

        EXPECT_EQ(box, nullptr);
        EXPECT_EQ(CountBoxReferences(), 0);
    }
}

TEST_F(HostObjectTest, AnInterfaceThatTheObjectHasIsFound) {
    const auto object = MakeBox();

    const auto box = QueryHostObject<IPropertyBox>(object.Get());

    EXPECT_EQ(box.Get(), object.Get());
    EXPECT_EQ(CountBoxReferences(), 2);
}

TEST_F(HostObjectTest, AnInterfaceThatTheObjectDoesNotHaveIsNone) {
    const auto object = MakeBox();

    EXPECT_EQ(QueryHostObject<ISampleNode>(object.Get()), nullptr);
}

TEST_F(HostObjectTest, AQueryThatFailsFindsNothing) {
    const auto object = MakeBox();
    Record()->SetRecordsQueries(true);
    Record()->Fail("IUnknown::QueryInterface", 1, E_ACCESSDENIED);

    EXPECT_EQ(QueryHostObject<IPropertyBox>(object.Get()), nullptr);

    EXPECT_EQ(Record()->CountCalls("IUnknown::QueryInterface"), 1);
    EXPECT_EQ(CountBoxReferences(), 1);
}

TEST_F(HostObjectTest, NothingHasNoInterface) {
    EXPECT_EQ(QueryHostObject<IPropertyBox>(nullptr), nullptr);
}

}  // namespace
