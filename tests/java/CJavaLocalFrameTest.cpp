#include "CJavaLocalFrame.h"

#include "CFakeJvmTest.h"

namespace {

using Names = std::vector<std::string>;

class CJavaLocalFrameTest : public CFakeJvmTest {};

TEST_F(CJavaLocalFrameTest, WhatIsLeftInAFrameGoesWithIt) {
    {
        const CJavaLocalFrame frame(Env());
        ASSERT_NE(Env()->NewStringUTF("forgotten"), nullptr);
        EXPECT_EQ(Fake().GetLocalReferences(), 1);
    }

    EXPECT_EQ(Fake().GetLocalReferences(), 0);
    EXPECT_EQ(Calls(), (Names{"PushLocalFrame", "NewStringUTF", "PopLocalFrame"}));
}

TEST_F(CJavaLocalFrameTest, FramesNest) {
    const CJavaLocalFrame outer(Env());
    ASSERT_NE(Env()->NewStringUTF("outer"), nullptr);
    {
        const CJavaLocalFrame inner(Env());
        ASSERT_NE(Env()->NewStringUTF("inner"), nullptr);
    }

    EXPECT_EQ(Fake().GetLocalReferences(), 1);
}

TEST_F(CJavaLocalFrameTest, AFrameThatCannotBeHadIsGoneWithout) {
    Fake().Fail("PushLocalFrame", 1, 1, FakeFaultMode::eWithException, JNI_ENOMEM);
    {
        const CJavaLocalFrame frame(Env());
        EXPECT_FALSE(Env()->ExceptionCheck());
    }

    EXPECT_EQ(Fake().GetCallCount("PopLocalFrame"), 0);
}

TEST_F(CJavaLocalFrameTest, AFrameEndsWhileAnExceptionIsPending) {
    {
        const CJavaLocalFrame frame(Env());
        Fake().SetPendingException({});
    }

    EXPECT_TRUE(Env()->ExceptionCheck());
    Env()->ExceptionClear();
}

TEST_F(CJavaLocalFrameTest, WithoutAnEnvironmentThereIsNoFrame) {
    { const CJavaLocalFrame frame(nullptr); }

    EXPECT_EQ(Calls(), Names{});
}

}  // namespace
