#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHeldWrapperBlocks.h"
#include "CJavaClass.h"
#include "CJavaObject.h"

namespace {

using Names = std::vector<std::string>;

constexpr JavaConstructor<jint> kCtor{"ctor(number)", "(I)V"};
constexpr JavaConstructor<jint> kUnbound{"ctor(unbound)", "(I)V"};
constexpr JavaMethodBinding kRows[] = {kCtor};

class CJavaClassFaultTest : public CFakeJvmTest {
protected:
    void SetUp() override {
        CFakeJvmTest::SetUp();
        m_class = VM().LoadClass("java/x/Y", kRows, 1);
        ForgetCalls();
    }
    void TearDown() override {
        m_class.reset();
        CFakeJvmTest::TearDown();
    }

    std::shared_ptr<CJavaClass> m_class;
};

TEST_F(CJavaClassFaultTest, AnObjectIsMadeHeldAndItsLocalReferenceDeleted) {
    const auto object = m_class->NewObject(kCtor, 5);

    EXPECT_EQ(Calls(), (Names{"NewObjectV", "NewGlobalRef", "DeleteLocalRef"}));
    EXPECT_STREQ(Fake().GetMethodLogEntry(0), "java/x/Y.<init>(I)V(5)");
}

TEST_F(CJavaClassFaultTest, AnObjectsEndDeletesItsReference) {
    auto object = m_class->NewObject(kCtor, 5);
    ForgetCalls();

    object.reset();

    EXPECT_EQ(Calls(), Names{"DeleteGlobalRef"});
}

TEST_F(CJavaClassFaultTest, AnUnknownAliasCallsNothing) {
    EXPECT_EQ(m_class->NewObject(kUnbound, 5), nullptr);
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaClassFaultTest, AnObjectThatCannotBeMadeIsEmpty) {
    for (const char* const function : {"NewObjectV", "NewGlobalRef"}) {
        Fake().Fail(function, 1);

        EXPECT_EQ(m_class->NewObject(kCtor, 5), nullptr) << function;
        EXPECT_EQ(Fake().GetFaultsFired(), 1) << function;
        EXPECT_EQ(Fake().GetLocalReferencesOfThread(), 0) << function;
        Env()->ExceptionClear();
    }
}

TEST_F(CJavaClassFaultTest, AnObjectThatCannotBeHeldInMemoryLeavesNoReference) {
    const CHeldWrapperBlocks held(VM());
    const CAllocationFault fault(1);

    EXPECT_THROW(static_cast<void>(m_class->NewObject(kCtor, 5)), std::bad_alloc);
    EXPECT_TRUE(fault.HasFired());
    EXPECT_EQ(Fake().GetGlobalReferences(), 1) << "the class's own";
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(CJavaClassFaultTest, LookingUpAnAliasOrAClassTakesNoMemory) {
    const CAllocationFault fault(1);

    EXPECT_NE(m_class->FindMethod("ctor(number)"), nullptr);
    EXPECT_NE(VM().GetClass("java/x/Y"), nullptr);
    EXPECT_EQ(VM().GetClass("java/x/a name that is longer than any short string buffer would hold"), nullptr);
    EXPECT_NE(VM().LoadClass("java/x/Y", kRows, 1), nullptr);
    EXPECT_FALSE(fault.HasFired());
}

}  // namespace
