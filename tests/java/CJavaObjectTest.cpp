#include "CJavaObject.h"

#include <limits>

#include "CJavaClass.h"
#include "CJavaString.h"
#include "CRealJvmTest.h"
#include "RunOnNewThread.h"
#include "TestClasses.h"

namespace {

class CJavaObjectTest : public CRealJvmTest {
protected:
    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        s_class = Load(Received::kClass, Received::kRows);
        s_texts = Load(Texts::kClass, Texts::kRows);
    }
    static void TearDownTestSuite() {
        s_class.reset();
        s_texts.reset();
    }

    void SetUp() override {
        CRealJvmTest::SetUp();
        m_object = s_class->NewObject(Received::kCtor);
    }
    void TearDown() override {
        m_object.reset();
        CRealJvmTest::TearDown();
    }

    /// What the object has received; the call before must not have thrown.
    static std::wstring Tell(CJavaObject& object) {
        EXPECT_EQ(TakeException(), L"none");
        return Read(object.CallStringMethod(Received::kTell));
    }

    static inline std::shared_ptr<CJavaClass> s_class;
    static inline std::shared_ptr<CJavaClass> s_texts;
    std::shared_ptr<CJavaObject> m_object;
};

TEST_F(CJavaObjectTest, IntsArriveAtTheirLimits) {
    m_object->CallVoidMethod(Received::kTakeInt, std::numeric_limits<jint>::min());
    EXPECT_EQ(Tell(*m_object), L"int -2147483648");

    m_object->CallVoidMethod(Received::kTakeInt, std::numeric_limits<jint>::max());
    EXPECT_EQ(Tell(*m_object), L"int 2147483647");
}

TEST_F(CJavaObjectTest, LongsArriveAtTheirLimits) {
    m_object->CallVoidMethod(Received::kTakeLong, std::numeric_limits<jlong>::min());
    EXPECT_EQ(Tell(*m_object), L"long -9223372036854775808");

    m_object->CallVoidMethod(Received::kTakeLong, -1);
    EXPECT_EQ(Tell(*m_object), L"long -1");
}

TEST_F(CJavaObjectTest, DoublesArriveExactly) {
    m_object->CallVoidMethod(Received::kTakeDouble, -0.0);
    EXPECT_EQ(Tell(*m_object), L"double -0x0.0p0");

    m_object->CallVoidMethod(Received::kTakeDouble, std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(Tell(*m_object), L"double 0x0.0000000000001p-1022");

    m_object->CallVoidMethod(Received::kTakeDouble, 0.1F);
    EXPECT_EQ(Tell(*m_object), L"double 0x1.99999ap-4");

    m_object->CallVoidMethod(Received::kTakeDouble, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(Tell(*m_object), L"double NaN");
}

TEST_F(CJavaObjectTest, BooleansArrive) {
    m_object->CallVoidMethod(Received::kTakeBoolean, true);
    EXPECT_EQ(Tell(*m_object), L"boolean true");

    m_object->CallVoidMethod(Received::kTakeBoolean, false);
    EXPECT_EQ(Tell(*m_object), L"boolean false");
}

TEST_F(CJavaObjectTest, WrappersArriveAsTheirReferences) {
    const auto inner = s_class->NewObject(Received::kCtorNumber, 4);
    m_object->CallVoidMethod(Received::kTakeObject, inner);
    EXPECT_EQ(Tell(*m_object), L"Object Received(int 4)");

    m_object->CallVoidMethod(Received::kTakeObject, *inner);
    EXPECT_EQ(Tell(*m_object), L"Object Received(int 4)");

    m_object->CallVoidMethod(Received::kTakeText, VM().NewString(L"text"));
    EXPECT_EQ(Tell(*m_object), L"String of 4 text");

    m_object->CallVoidMethod(Received::kTakeObject, VM().NewString(L"a string is an object"));
    EXPECT_EQ(Tell(*m_object), L"Object a string is an object");
}

TEST_F(CJavaObjectTest, RawReferencesAndNullArrive) {
    m_object->CallVoidMethod(Received::kTakeObject, m_object->GetReference());
    EXPECT_EQ(Tell(*m_object), L"Object Received(nothing)");

    m_object->CallVoidMethod(Received::kTakeObject, nullptr);
    EXPECT_EQ(Tell(*m_object), L"Object null");

    m_object->CallVoidMethod(Received::kTakeText, std::shared_ptr<CJavaString>());
    EXPECT_EQ(Tell(*m_object), L"null");
}

TEST_F(CJavaObjectTest, SeveralArgumentsArriveInTheirOrder) {
    const auto first = VM().NewString(L"first");

    EXPECT_EQ(Read(m_object->CallStringMethod(Received::kJoin, first, 2, m_object)), L"first|2|nothing");
}

TEST_F(CJavaObjectTest, AReturnedNullIsWrapped) {
    const auto texts = s_texts->NewObject(Texts::kCtor);

    const auto none = texts->CallStringMethod(Texts::kNone);

    EXPECT_EQ(TakeException(), L"none");
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->GetReference(), nullptr);
}

TEST_F(CJavaObjectTest, AReturnedObjectIsWrappedForItsRelease) {
    const auto none = m_object->CallStringMethod(Received::kTellNoString);

    EXPECT_EQ(TakeException(), L"none");
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->GetReference(), nullptr);
}

TEST_F(CJavaObjectTest, AThrowingMethodReturnsAWrappedNullAndLeavesItsExceptionPending) {
    const auto texts = s_texts->NewObject(Texts::kCtor);

    const auto result = texts->CallStringMethod(Texts::kThrowing);

    EXPECT_TRUE(Env()->ExceptionCheck());
    EXPECT_EQ(TakeException().substr(0, 42), L"java.lang.IllegalStateException: no text\r\n");
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->GetReference(), nullptr);
}

TEST_F(CJavaObjectTest, AnAliasThatIsNotBoundCallsNothing) {
    constexpr JavaMethod<void(jint)> unbound{"unbound", "takeInt", "(I)V"};

    m_object->CallVoidMethod(unbound, 5);

    EXPECT_EQ(m_object->CallStringMethod(Received::kNotBound), nullptr);
    EXPECT_EQ(Tell(*m_object), L"nothing");
}

TEST_F(CJavaObjectTest, AnObjectMayBeUsedOnAnotherAttachedThread) {
    RunOnNewThread([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);
        m_object->CallVoidMethod(Received::kTakeInt, 12);
        EXPECT_EQ(TakeException(), L"none");
        ASSERT_EQ(VM().DetachCurrentThread(), 0);
    });

    EXPECT_EQ(Tell(*m_object), L"int 12");
}

}  // namespace
