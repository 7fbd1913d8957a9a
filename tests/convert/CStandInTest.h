#pragma once

#include <memory>
#include <string>

#include "CRealConvertorTest.h"
#include "JavaWitness.h"

/// On the stand-ins for the message client's classes, which note their calls and throw on order.
class CStandInTest : public CRealConvertorTest {
protected:
    static void SetUpTestSuite() {
        CRealConvertorTest::SetUpTestSuite();
        s_callsClass = Load(Calls::kClass, Calls::kRows);
    }
    static void TearDownTestSuite() { s_callsClass.reset(); }

    void SetUp() override {
        CRealConvertorTest::SetUp();
        ASSERT_NE(s_callsClass, nullptr);
        m_calls = s_callsClass->NewObject(Calls::kCtor);
        ASSERT_EQ(TakeException(), L"none");
    }
    void TearDown() override {
        ThrowIn(L"");
        m_calls.reset();
        CRealConvertorTest::TearDown();
    }

    /// Calls that begin like this throw from now on; none for an empty text.
    void ThrowIn(const std::wstring& beginning) {
        const auto text = VM().NewString(beginning);
        m_calls->CallVoidMethod(Calls::kThrowIn, text);
        ASSERT_EQ(TakeException(), L"none");
    }

    /// Calls are told from here on.
    void ForgetCalls() {
        m_calls->CallVoidMethod(Calls::kForget);
        ASSERT_EQ(TakeException(), L"none");
    }

private:
    struct Calls {
        static constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/Calls";
        static constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
        static constexpr JavaMethod<void(jstring)> kThrowIn{"throwIn", "throwIn", "(Ljava/lang/String;)V"};
        static constexpr JavaMethod<void()> kForget{"forget", "forget", "()V"};
        static constexpr JavaMethodBinding kRows[] = {kCtor, kThrowIn, kForget};
    };

    static inline std::shared_ptr<CJavaClass> s_callsClass;
    std::shared_ptr<CJavaObject> m_calls;
};
