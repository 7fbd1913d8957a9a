#include "CJavaClass.h"

#include "CJavaObject.h"
#include "CJavaString.h"
#include "CRealJvmTest.h"
#include "TestClasses.h"

namespace {

class CJavaClassTest : public CRealJvmTest {
protected:
    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        s_received = Load(Received::kClass, Received::kRows);
        s_throwing = Load(Throwing::kClass, Throwing::kRows);
    }
    static void TearDownTestSuite() {
        s_received.reset();
        s_throwing.reset();
    }

    static std::wstring Tell(const std::shared_ptr<CJavaObject>& object) {
        return object ? Read(object->CallStringMethod(Received::kTell)) : L"no object";
    }

    static inline std::shared_ptr<CJavaClass> s_received;
    static inline std::shared_ptr<CJavaClass> s_throwing;
};

TEST_F(CJavaClassTest, FindMethodIsNullForAnUnknownAlias) {
    EXPECT_EQ(s_received->FindMethod("no such alias"), nullptr);
    EXPECT_EQ(s_received->FindMethod(""), nullptr);
    EXPECT_NE(s_received->FindMethod("tell"), nullptr);
}

TEST_F(CJavaClassTest, AliasesAreComparedBytewise) {
    EXPECT_EQ(s_received->FindMethod("Tell"), nullptr);
}

TEST_F(CJavaClassTest, ALaterRowReplacesAnEarlierOneOfItsAlias) {
    constexpr JavaMethodBinding rows[] = {{"same", "plain", "()Ljava/lang/String;"},
                                          {"same", "empty", "()Ljava/lang/String;"},
                                          {"ctor()", "<init>", "()V"}};
    constexpr JavaMethod<jstring()> same{"same", "empty", "()Ljava/lang/String;"};
    const auto texts = Load(Texts::kClass, rows);
    ExpectKeptClasses(1);

    EXPECT_EQ(Read(texts->NewObject(Texts::kCtor)->CallStringMethod(same)), L"");
}

TEST_F(CJavaClassTest, NewObjectCallsTheConstructorOfItsAlias) {
    const auto text = VM().NewString(L"abc");

    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtor)), L"nothing");
    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtorText, text)), L"String abc");
    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtorNumber, -7)), L"int -7");
    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtorIdNumber, text, 2147483647)), L"String abc, int 2147483647");
}

TEST_F(CJavaClassTest, NewObjectHandsOnEveryKindOfArgument) {
    const auto sid = VM().NewString(L"S-1-5");
    const auto user = VM().NewString(L"user");
    const auto inner = s_received->NewObject(Received::kCtorNumber, 1);

    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtorMany, 3, sid, user, nullptr, true)),
              L"int 3, String S-1-5, String user, String null, boolean true");
    EXPECT_EQ(Tell(s_received->NewObject(Received::kCtorWide, -9223372036854775807LL - 1, -0.25, false, inner)),
              L"long -9223372036854775808, double -0.25, boolean false, Object Received(int 1)");
}

TEST_F(CJavaClassTest, NewObjectIsEmptyForAnUnknownAlias) {
    constexpr JavaConstructor<> unknown{"ctor(unknown)", "()V"};

    EXPECT_EQ(s_received->NewObject(unknown), nullptr);
    EXPECT_EQ(TakeException(), L"none");
}

TEST_F(CJavaClassTest, AThrowingConstructorGivesNoObjectAndItsExceptionPending) {
    const auto message = VM().NewString(L"refused");

    EXPECT_EQ(s_throwing->NewObject(Throwing::kFailingCtor, message), nullptr);
    EXPECT_EQ(TakeException().substr(0, 45), L"java.lang.IllegalArgumentException: refused\r\n");
}

TEST_F(CJavaClassTest, ObjectsReleaseTheirReferences) {
    for (int i = 0; i < 1000; ++i) {
        ASSERT_NE(s_received->NewObject(Received::kCtor), nullptr);
    }
    // The fixture compares the number of global references.
}

}  // namespace
