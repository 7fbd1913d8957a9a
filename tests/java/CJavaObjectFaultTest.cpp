#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHeldWrapperBlocks.h"
#include "CJavaClass.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "RunOnNewThread.h"

namespace {

using Names = std::vector<std::string>;

constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
constexpr JavaMethod<void(jint, jstring)> kTake{"take", "take", "(ILjava/lang/String;)V"};
constexpr JavaMethod<jstring()> kTell{"tell", "tell", "()Ljava/lang/String;"};
constexpr JavaMethodBinding kRows[] = {kCtor, kTake, kTell};
constexpr JavaMethod<void()> kUnboundVoid{"unbound", "unbound", "()V"};
constexpr JavaMethod<jstring()> kUnboundString{"unbound", "unbound", "()Ljava/lang/String;"};

class CJavaObjectFaultTest : public CFakeJvmTest {
protected:
    void SetUp() override {
        CFakeJvmTest::SetUp();
        m_object = VM().LoadClass("java/x/Y", kRows, std::size(kRows))->NewObject(kCtor);
        ForgetCalls();
    }
    void TearDown() override {
        m_object.reset();
        CFakeJvmTest::TearDown();
    }

    std::shared_ptr<CJavaObject> m_object;
};

TEST_F(CJavaObjectFaultTest, AVoidCallIsOneCallOfItsVForm) {
    m_object->CallVoidMethod(kTake, -1, nullptr);

    EXPECT_EQ(Calls(), Names{"CallVoidMethodV"});
    EXPECT_STREQ(Fake().GetMethodLogEntry(Fake().GetMethodLogSize() - 1),
                 "java/x/Y.take(ILjava/lang/String;)V(-1, null)");
}

TEST_F(CJavaObjectFaultTest, AStringCallIsOneCallOfItsVFormAndItsResultALocalReference) {
    {
        const auto text = m_object->CallStringMethod(kTell);
        EXPECT_EQ(Calls(), Names{"CallObjectMethodV"});
        EXPECT_EQ(Fake().GetLocalReferencesOfThread(), 1);
    }

    EXPECT_EQ(Calls(), (Names{"CallObjectMethodV", "DeleteLocalRef"}));
}

TEST_F(CJavaObjectFaultTest, AFailedStringCallIsWrapped) {
    Fake().Fail("CallObjectMethodV", 1);

    const auto text = m_object->CallStringMethod(kTell);

    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->GetReference(), nullptr);
    Env()->ExceptionClear();
}

TEST_F(CJavaObjectFaultTest, AnAliasThatIsNotBoundCallsNothing) {
    m_object->CallVoidMethod(kUnboundVoid);
    EXPECT_EQ(m_object->CallStringMethod(kUnboundString), nullptr);

    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaObjectFaultTest, AResultThatCannotBeHeldInMemoryLeavesNoReference) {
    const CHeldWrapperBlocks held(VM());
    const CAllocationFault fault(1);

    EXPECT_THROW(static_cast<void>(m_object->CallStringMethod(kTell)), std::bad_alloc);
    EXPECT_TRUE(fault.HasFired());
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(CJavaObjectFaultTest, AnObjectDroppedWithoutAnEnvironmentFallsSilently) {
    auto doomed = VM().GetClass("java/x/Y")->NewObject(kCtor);
    ForgetCalls();

    RunOnNewThread([&] { doomed.reset(); });

    EXPECT_EQ(Calls(), Names{});
    EXPECT_EQ(Fake().GetGlobalReferences(), 3) << "the class's, the fixture's object's, and the one let fall";
    VM().Shutdown(false);  // so that the fixture does not look for it
}

}  // namespace
