#include "ItemFixture.h"

namespace {

/// The poll, which asks the server whether it has something to do.
class PollItemTest : public CItemFixture {
protected:
    static inline const std::string s_poll = "DesktopMessageClient.onDesktopPoll(DesktopConnection@instance, 1, \"\")";
};

TEST_F(PollItemTest, AnyDataOrNoneWillDo) {
    Start();
    const auto nothing = Make(DataObjectData{});
    const auto session = Make(MakeData());
    for (IUnknown* const data : {static_cast<IUnknown*>(nullptr), nothing.Get(), session.Get()}) {
        Forget();

        EXPECT_EQ(Dump(kDesktopPoll, data), S_OK);

        EXPECT_EQ(SentCalls(), Calls{s_poll});
        EXPECT_EQ(ItemCalls("BaseUserSession."), Calls{});
    }
}

TEST_F(PollItemTest, TheMachineIsDescribedButNotSent) {
    Start();

    EXPECT_EQ(Dump(kDesktopPoll), S_OK);

    EXPECT_EQ(ItemCalls("DesktopInformation.<init>(").size(), 1U);
    EXPECT_EQ(SentCalls(), Calls{s_poll});
}

TEST_F(PollItemTest, WithoutItsEmptyTextItFails) {
    Start();
    const long before = Fake().GetCallCount("NewString");
    ASSERT_EQ(Dump(kDesktopPoll), S_OK);
    const long strings = Fake().GetCallCount("NewString") - before;
    Forget();
    Fake().Fail("NewString", strings);  // the last one: all others describe the machine

    EXPECT_EQ(Dump(kDesktopPoll), E_FAIL);

    EXPECT_EQ(SentCalls(), Calls{});
    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to create a new Java string for .  java.lang.OutOfMemoryError: injected"});
}

}  // namespace
