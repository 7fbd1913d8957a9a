#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHresultException.h"
#include "CImportHook.h"
#include "CJavaLocalFrame.h"
#include "JavaException.h"
#include "RefusedMemory.h"

namespace {

using Names = std::vector<std::string>;

class JavaExceptionFaultTest : public CFakeJvmTest {
protected:
    void Throw(FakeException exception = {}) {
        exception.description = exception.description ? exception.description : "described";
        if (!exception.frames) {
            exception.frames = m_frames;
            exception.frameCount = 2;
        }
        ASSERT_TRUE(Fake().SetPendingException(exception));
        ForgetCalls();
    }

    /// What the pending exception makes of a text that held "earlier".
    std::wstring Take() {
        std::wstring text(L"earlier");
        const CJavaLocalFrame frame(Env());
        EXPECT_TRUE(VM().GetJavaException(text));
        EXPECT_FALSE(Fake().IsExceptionPending());
        return text;
    }

    /// The same while the `nth` call of `function` fails, without and with an exception of its own.
    std::wstring TakeWhileFailing(const char* function, long nth) {
        std::wstring texts[2];
        for (const bool withException : {false, true}) {
            Throw();
            Fake().Fail(function, nth, 1,
                        withException ? FakeFaultMode::eWithException : FakeFaultMode::eWithoutException);
            texts[withException] = Take();
            EXPECT_EQ(Fake().GetFaultsFired(), 1) << function << nth;
        }
        EXPECT_EQ(texts[0], texts[1]) << function << nth;
        return texts[0];
    }

    const FakeFrame m_frames[2] = {{"first"}, {"second"}};
};

TEST_F(JavaExceptionFaultTest, TheExceptionIsTakenThenClearedThenRead) {
    Throw();

    std::wstring text;
    ASSERT_TRUE(VM().GetJavaException(text));
    ExpectKeptLocals(1);

    EXPECT_EQ(text, L"described\r\n\tfirst\r\n\tsecond");
    const Names description = {"GetMethodID",       "CallObjectMethodV",     "ExceptionCheck",
                               "GetStringUTFChars", "ReleaseStringUTFChars", "DeleteLocalRef"};
    Names expected = {"ExceptionOccurred", "ExceptionClear", "GetObjectClass"};
    expected.insert(expected.end(), description.begin(), description.end());
    expected.insert(expected.end(), {"GetMethodID", "CallObjectMethodV", "ExceptionCheck", "GetArrayLength"});
    for (int i = 0; i < 2; ++i) {
        expected.insert(expected.end(), {"GetObjectArrayElement", "GetObjectClass"});
        expected.insert(expected.end(), description.begin(), description.end());
        expected.insert(expected.end(), {"DeleteLocalRef", "DeleteLocalRef"});  // the element's class, the element
    }
    expected.insert(expected.end(), {"DeleteLocalRef", "DeleteLocalRef", "ExceptionClear"});  // the array, the class
    EXPECT_EQ(Calls(), expected);
}

TEST_F(JavaExceptionFaultTest, WithoutOneOnlyItsAbsenceIsAsked) {
    std::wstring text(L"earlier");

    EXPECT_FALSE(VM().GetJavaException(text));
    EXPECT_EQ(text, L"earlier");
    EXPECT_EQ(Calls(), Names{"ExceptionOccurred"});
}

TEST_F(JavaExceptionFaultTest, TheExceptionsOwnReferenceIsLeftToTheFrameAround) {
    Throw();
    {
        const CJavaLocalFrame frame(Env());
        std::wstring text;
        ASSERT_TRUE(VM().GetJavaException(text));
        EXPECT_EQ(Fake().GetLocalReferences(), 1);
    }
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(JavaExceptionFaultTest, WithoutItsClassTheTextStaysAsItWas) {
    EXPECT_EQ(TakeWhileFailing("GetObjectClass", 1), L"earlier");
}

TEST_F(JavaExceptionFaultTest, WithoutADescriptionTheFramesFollowTheEarlierText) {
    EXPECT_EQ(TakeWhileFailing("GetMethodID", 1), L"earlier\r\n\tfirst\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("CallObjectMethodV", 1), L"earlier\r\n\tfirst\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("GetStringUTFChars", 1), L"earlier\r\n\tfirst\r\n\tsecond");
}

TEST_F(JavaExceptionFaultTest, WithoutATraceTheTextIsTheDescription) {
    EXPECT_EQ(TakeWhileFailing("GetMethodID", 2), L"described");
    EXPECT_EQ(TakeWhileFailing("CallObjectMethodV", 2), L"described");
    EXPECT_EQ(TakeWhileFailing("GetArrayLength", 1), L"described");
}

TEST_F(JavaExceptionFaultTest, AFrameThatCannotBeReadIsLeftOut) {
    EXPECT_EQ(TakeWhileFailing("GetObjectArrayElement", 1), L"described\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("GetObjectClass", 2), L"described\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("GetMethodID", 3), L"described\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("CallObjectMethodV", 3), L"described\r\n\tsecond");
    EXPECT_EQ(TakeWhileFailing("GetStringUTFChars", 2), L"described\r\n\tsecond");
}

TEST_F(JavaExceptionFaultTest, FramesThatThrowOrTellNothingAreLeftOut) {
    const FakeFrame frames[] = {{"throws", FakeAnswer::eThrows}, {"null", FakeAnswer::eNull}, {"told"}};
    FakeException exception;
    exception.frames = frames;
    exception.frameCount = 3;
    Throw(exception);

    EXPECT_EQ(Take(), L"described\r\n\ttold");
}

TEST_F(JavaExceptionFaultTest, EachCallMayFailOnceOrForEver) {
    for (const long times : {1, -1}) {
        long fired = 1;
        for (long nth = 1; fired != 0; ++nth) {
            Throw();
            {
                const CJavaLocalFrame frame(Env());
                Fake().Fail("*", nth, times);
                std::wstring text(L"earlier");
                EXPECT_TRUE(VM().GetJavaException(text));
                fired = Fake().GetFaultsFired();
                Fake().ClearFaults();
            }
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
            EXPECT_EQ(Fake().GetPinnedStrings(), 0) << nth;
        }
    }
}

TEST_F(JavaExceptionFaultTest, EachAllocationMayFail) {
    bool hasFired = true;
    for (long nth = 1; hasFired; ++nth) {
        Throw();
        const CJavaLocalFrame frame(Env());
        const CAllocationFault fault(nth);
        try {
            std::wstring text;
            static_cast<void>(VM().GetJavaException(text));
        } catch (const std::bad_alloc&) {
        }
        hasFired = fault.HasFired();
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
        EXPECT_EQ(Fake().GetPinnedStrings(), 0) << nth;
        EXPECT_EQ(Fake().GetLocalReferences(), 1) << nth << ": the exception's own";
    }
}

TEST_F(JavaExceptionFaultTest, ALongDescriptionMayFindNoHeap) {
    const std::string description(500, 'd');
    FakeException exception;
    exception.description = description.c_str();
    Throw(exception);
    const CJavaLocalFrame frame(Env());
    const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));

    std::wstring text(L"earlier");
    try {
        static_cast<void>(VM().GetJavaException(text));
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& thrown) {
        EXPECT_EQ(thrown.GetResult(), E_OUTOFMEMORY);
    }

    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(text, L"earlier");
}

TEST_F(JavaExceptionFaultTest, ReferencesStayBoundedHoweverManyFrames) {
    const std::vector<FakeFrame> frames(5000, FakeFrame{"frame"});
    FakeException exception;
    exception.frames = frames.data();
    exception.frameCount = static_cast<long>(frames.size());
    Throw(exception);

    static_cast<void>(Take());

    EXPECT_LE(Fake().GetPeakLocalReferences(), 6)
        << "the exception, its class, the array, an element, its class and its description";
}

}  // namespace
