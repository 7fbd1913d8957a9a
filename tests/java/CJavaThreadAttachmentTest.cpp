#include "CJavaThreadAttachment.h"

#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "RunOnNewThread.h"

namespace {

using Names = std::vector<std::string>;

class CJavaThreadAttachmentTest : public CFakeJvmTest {};

TEST_F(CJavaThreadAttachmentTest, AThreadIsAttachedAsLongAsItsAttachmentLives) {
    RunOnNewThread([&] {
        {
            const CJavaThreadAttachment attachment = MakeThreadAttachment(VM());
            EXPECT_NE(VM().GetEnv(), nullptr);
            EXPECT_EQ(Fake().GetAttachedThreads(), 1);
        }
        EXPECT_EQ(VM().GetEnv(), nullptr);
        EXPECT_EQ(Fake().GetAttachedThreads(), 0);
    });

    EXPECT_EQ(Calls(), (Names{"AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(CJavaThreadAttachmentTest, AThreadThatIsAttachedIsLeftToWhoeverDidIt) {
    RunOnNewThread([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);

        EXPECT_EQ(MakeThreadAttachment(VM()), nullptr);

        EXPECT_NE(VM().GetEnv(), nullptr);
        EXPECT_EQ(VM().DetachCurrentThread(), 0);
    });
}

TEST_F(CJavaThreadAttachmentTest, TheCreatorNeedsNone) {
    EXPECT_EQ(MakeThreadAttachment(VM()), nullptr);
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaThreadAttachmentTest, AThreadThatCannotBeAttachedHasNone) {
    Fake().Fail("AttachCurrentThread", 1);

    RunOnNewThread([&] {
        EXPECT_EQ(MakeThreadAttachment(VM()), nullptr);
        EXPECT_EQ(VM().GetEnv(), nullptr);
    });
}

TEST_F(CJavaThreadAttachmentTest, AnAttachmentThatCannotBeHeldInMemoryIsUndone) {
    RunOnNewThread([&] {
        for (const long nth : {1, 2}) {  // the record of the environment, the shared pointer's block
            const CAllocationFault fault(nth);

            EXPECT_THROW(static_cast<void>(MakeThreadAttachment(VM())), std::bad_alloc);
            EXPECT_TRUE(fault.HasFired());
            EXPECT_EQ(VM().GetEnv(), nullptr);
            EXPECT_FALSE(Fake().IsThreadAttached());
        }
    });
}

}  // namespace
