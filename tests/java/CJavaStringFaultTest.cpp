#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHeldWrapperBlocks.h"
#include "CJavaString.h"

namespace {

using Names = std::vector<std::string>;

class CJavaStringFaultTest : public CFakeJvmTest {};

TEST_F(CJavaStringFaultTest, AStringIsMadeByOneCallAndDeletedByAnother) {
    { const auto text = VM().NewString(L"text"); }

    EXPECT_EQ(Calls(), (Names{"NewString", "DeleteLocalRef"}));
}

TEST_F(CJavaStringFaultTest, AStringThatCannotBeMadeIsEmpty) {
    Fake().Fail("NewString", 1);

    EXPECT_EQ(VM().NewString(L"text"), nullptr);
    EXPECT_TRUE(Env()->ExceptionCheck());
    Env()->ExceptionClear();
}

TEST_F(CJavaStringFaultTest, AStringThatCannotBeHeldInMemoryLeavesNoReference) {
    const std::wstring text(L"text");
    const CHeldWrapperBlocks held(VM());
    const CAllocationFault fault(1);

    EXPECT_THROW(static_cast<void>(VM().NewString(text)), std::bad_alloc);
    EXPECT_TRUE(fault.HasFired());
}

TEST_F(CJavaStringFaultTest, ReadingPinsTheCharactersAndReleasesThem) {
    const auto string = VM().NewString(L"text");
    ForgetCalls();

    std::wstring text;
    EXPECT_TRUE(string->GetString(text));

    EXPECT_EQ(text, L"text");
    EXPECT_EQ(Calls(), (Names{"GetStringChars", "ReleaseStringChars"}));
}

TEST_F(CJavaStringFaultTest, CharactersThatCannotBeHadLeaveTheOutput) {
    const auto string = VM().NewString(L"text");
    Fake().Fail("GetStringChars", 1);
    ForgetCalls();

    std::wstring text(L"earlier");
    EXPECT_FALSE(string->GetString(text));

    EXPECT_EQ(text, L"earlier");
    EXPECT_EQ(Calls(), Names{"GetStringChars"});
    Env()->ExceptionClear();
}

TEST_F(CJavaStringFaultTest, CharactersAreReleasedWhenTheirCopyFindsNoMemory) {
    const auto string = VM().NewString(std::wstring(1000, L'x'));

    std::wstring text(L"earlier");
    {
        const CAllocationFault fault(1);
        EXPECT_THROW(static_cast<void>(string->GetString(text)), std::bad_alloc);
    }

    EXPECT_EQ(text, L"earlier");
    EXPECT_EQ(Fake().GetPinnedStrings(), 0);
}

TEST_F(CJavaStringFaultTest, ReadingJavasNullCallsNothing) {
    const CJavaString none(VM(), nullptr, false);

    std::wstring text(L"earlier");
    EXPECT_FALSE(none.GetString(text));

    EXPECT_EQ(text, L"earlier");
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaStringFaultTest, JavasNullIsNotDeleted) {
    { const CJavaString none(VM(), nullptr, false); }

    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaStringFaultTest, AGlobalReferenceIsDeletedAsOne) {
    const auto local = VM().NewString(L"text");
    const auto global = static_cast<jstring>(Env()->NewGlobalRef(local->GetReference()));
    ForgetCalls();

    { const CJavaString string(VM(), global, true); }

    EXPECT_EQ(Calls(), Names{"DeleteGlobalRef"});
}

}  // namespace
