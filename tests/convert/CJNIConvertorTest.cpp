#include "CJNIConvertor.h"

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CAllocationFault.h"
#include "CFakeConvertorTest.h"
#include "CHeldWrapperBlocks.h"
#include "CJavaLocalFrame.h"
#include "RunOnNewThread.h"

namespace {

using CJNIConvertorTest = CFakeConvertorTest;

// ---- strings --------------------------------------------------------------------------------------------

TEST_F(CJNIConvertorTest, AStringIsMadeWithoutAWord) {
    const std::wstring expected = L"gr\u00fc\u00df \u65e5\u672c \U0001f600 100%s";
    for (const bool hideValue : {false, true}) {
        const auto string = MakeConvertor().NewJavaString(SharedVM(), expected, hideValue);

        ASSERT_NE(string, nullptr);
        std::wstring text;
        EXPECT_TRUE(string->GetString(text));
        EXPECT_EQ(text, expected);
    }
    EXPECT_EQ(Fake().GetCallCount("NewString"), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(CJNIConvertorTest, AStringThatFailsIsNamedInTheMessage) {
    Fake().Fail("NewString", 1);
    ExpectKeptLocals(1);

    EXPECT_EQ(MakeConvertor().NewJavaString(SharedVM(), L"gr\u00fc\u00df 100%s%n", false), nullptr);

    EXPECT_EQ(Host().Errors(),
              Texts{L"Failed to create a new Java string for gr\u00fc\u00df 100%s%n.  " + kOutOfMemory});
    EXPECT_FALSE(Fake().IsExceptionPending());
}

TEST_F(CJNIConvertorTest, ASecretThatFailsIsNotNamedInTheMessage) {
    Fake().Fail("NewString", 1);
    ExpectKeptLocals(1);

    EXPECT_EQ(MakeConvertor().NewJavaString(SharedVM(), L"secret", true), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string.  " + kOutOfMemory});
    EXPECT_FALSE(Fake().IsExceptionPending());
}

TEST_F(CJNIConvertorTest, AFailureWithoutAnExceptionHasNoReason) {
    Fake().Fail("NewString", 1, 2, FakeFaultMode::eWithoutException);

    EXPECT_EQ(MakeConvertor().NewJavaString(SharedVM(), L"text", false), nullptr);
    EXPECT_EQ(MakeConvertor().NewJavaString(SharedVM(), L"secret", true), nullptr);

    EXPECT_EQ(Host().Errors(),
              (Texts{L"Failed to create a new Java string for text.  ", L"Failed to create a new Java string.  "}));
}

TEST_F(CJNIConvertorTest, AThreadThatJavaDoesNotKnowMakesNoString) {
    RunOnNewThread([&] { EXPECT_EQ(MakeConvertor().NewJavaString(SharedVM(), L"text", false), nullptr); });

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for text.  "});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJNIConvertorTest, WithoutALoggerAFailedStringsExceptionIsTakenAsWell) {
    Fake().Fail("NewString", 1, 2);
    ExpectKeptLocals(2);

    EXPECT_EQ(MakeConvertorWithoutLogger().NewJavaString(SharedVM(), L"text", false), nullptr);
    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(MakeConvertorWithoutLogger().NewJavaString(SharedVM(), L"secret", true), nullptr);
    EXPECT_FALSE(Fake().IsExceptionPending());
}

// ---- connections ----------------------------------------------------------------------------------------

/// A host's system whose answer contradicts its result. Lives on the stack.
class CContradictingSystem final : public ISystemInfo {
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Refresh() override { return E_NOTIMPL; }
    STDMETHODIMP get_networkInterfaces(SAFEARRAY**) override { return E_NOTIMPL; }
    STDMETHODIMP get_machineName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved6() override { return E_NOTIMPL; }
    STDMETHODIMP get_isDesktop(VARIANT_BOOL* isDesktop) override {
        *isDesktop = VARIANT_TRUE;
        return E_UNEXPECTED;
    }
    STDMETHODIMP get_FQDN(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_totalMemory(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_virtualMachineId(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_machineId(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_machineUniqueId(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_componentsIdentities(IPropertyBox**) override { return E_NOTIMPL; }
};

/// The same for connections. The class is loaded; the texts tell which of them is where.
class ConnectionFaultTest : public CFakeConvertorTest {
protected:
    void SetUp() override {
        CFakeConvertorTest::SetUp();
        LoadBoundClass(Binding::DesktopConnection::kClass);
        m_context = {SharedVM(), nullptr, L"the id", L"the token", L"the unique id"};
        m_desktop = Host().MakeSystem(VARIANT_TRUE);
        ForgetCalls();
    }

    void TearDown() override {
        m_desktop = {};
        m_context = {};
        EXPECT_EQ(Fake().GetGlobalReferences(), 1) << "the class's own";
        CFakeConvertorTest::TearDown();
    }

    [[nodiscard]] ISystemInfo& Desktop() { return *m_desktop.Get(); }
    [[nodiscard]] const JavaCallContext& Context() const { return m_context; }
    [[nodiscard]] std::shared_ptr<CJavaObject> Convert() { return MakeConvertor().GetConnection(m_context, Desktop()); }

    /// The last constructor's arguments, as the fake runtime noted them; "none" where none was called.
    static std::string Constructed() {
        const std::string call =
            Fake().GetMethodLogSize() == 0 ? "none" : Fake().GetMethodLogEntry(Fake().GetMethodLogSize() - 1);
        const std::string constructor = std::string(Binding::DesktopConnection::kClass) +
                                        ".<init>(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
                                        "ILjava/lang/String;)V";
        return call.compare(0, constructor.size(), constructor) == 0 ? call.substr(constructor.size()) : call;
    }
    static std::string ConstructedWith(const std::string& deviceType) {
        return R"(("the id", "the token", "the unique id", 393728, ")" + deviceType + R"("))";
    }

private:
    JavaCallContext m_context;
    CHostReference<ISystemInfo> m_desktop;
};

TEST_F(CJNIConvertorTest, AConnectionWhoseClassIsNotLoadedIsEmptyWithoutAWordOrACall) {
    const CHostReference<ISystemInfo> system = Host().MakeSystem(VARIANT_TRUE);

    EXPECT_EQ(MakeConvertor().GetConnection({SharedVM(), nullptr, L"id", L"token", L"unique"}, *system.Get()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
    EXPECT_EQ(Host().Record().GetCallTexts(), Names{});
}

TEST_F(ConnectionFaultTest, AConnectionIsMadeOfFourStringsWhichAreReleased) {
    auto connection = Convert();

    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(Constructed(), ConstructedWith("DESKTOP"));
    EXPECT_EQ(Fake().GetCallCount("NewString"), 4);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Host().Record().GetCallTexts(), Names{"System: get_isDesktop"});
    connection.reset();
    EXPECT_EQ(Fake().GetGlobalReferences(), 1) << "the class's own";
}

TEST_F(ConnectionFaultTest, OnlyExactlyTrueIsADesktop) {
    struct Case {
        VARIANT_BOOL isDesktop;
        const char* deviceType;
    };
    for (const Case& c : {Case{VARIANT_TRUE, "DESKTOP"}, Case{VARIANT_FALSE, "SERVER"}, Case{1, "SERVER"},
                          Case{-2, "SERVER"}, Case{0xFF, "SERVER"}, Case{0x7FFF, "SERVER"}}) {
        const CHostReference<ISystemInfo> system = Host().MakeSystem(c.isDesktop);

        EXPECT_NE(MakeConvertor().GetConnection(Context(), *system.Get()), nullptr);

        EXPECT_EQ(Constructed(), ConstructedWith(c.deviceType)) << c.isDesktop;
    }
}

TEST_F(ConnectionFaultTest, AnAnswerThatTheHostDoesNotGiveIsAServer) {
    Host().Record().Fail("ISystemInfo::get_isDesktop", 1, E_ACCESSDENIED);
    EXPECT_NE(Convert(), nullptr);
    EXPECT_EQ(Constructed(), ConstructedWith("SERVER"));

    Host().Record().LeaveUntouched("ISystemInfo::get_isDesktop");
    EXPECT_NE(Convert(), nullptr);
    EXPECT_EQ(Constructed(), ConstructedWith("SERVER"));

    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ConnectionFaultTest, TheHostsResultDoesNotCountBesideItsAnswer) {
    CContradictingSystem system;

    EXPECT_NE(MakeConvertor().GetConnection(Context(), system), nullptr);

    EXPECT_EQ(Constructed(), ConstructedWith("DESKTOP"));
}

TEST_F(ConnectionFaultTest, EachStringThatFailsEndsItAndSecretsStayOutOfTheMessage) {
    struct Case {
        long nth;
        const wchar_t* error;
        long hostCalls;
    };
    for (const Case& c :
         {Case{1, L"Failed to create a new Java string for the id.  ", 0},
          Case{2, L"Failed to create a new Java string.  ", 0}, Case{3, L"Failed to create a new Java string.  ", 0},
          Case{4, L"Failed to create a new Java string for DESKTOP.  ", 1}}) {
        Host().Record().ClearCalls();
        const long strings = Fake().GetCallCount("NewString");
        Fake().Fail("NewString", c.nth);

        EXPECT_EQ(Convert(), nullptr) << c.nth;

        EXPECT_EQ(Host().Errors().back(), c.error + kOutOfMemory) << c.nth;
        EXPECT_EQ(Fake().GetCallCount("NewString"), strings + c.nth);
        EXPECT_EQ(Host().Record().CountCalls("ISystemInfo::get_isDesktop"), c.hostCalls) << c.nth;
        EXPECT_FALSE(Fake().IsExceptionPending()) << c.nth;
        EXPECT_EQ(Fake().GetLocalReferences(), c.nth) << "one exception a round";
    }
    EXPECT_EQ(Fake().GetCallCount("NewObjectV"), 0);
    EXPECT_EQ(Host().Errors().size(), 4U);
    ExpectKeptLocals(4);
}

TEST_F(ConnectionFaultTest, AConstructorThatThrowsIsLoggedWithItsText) {
    const FakeFrame frames[] = {{"orvane.A.a(A.java:1)"}, {"orvane.B.b(B.java:2)"}};
    FakeException exception;
    exception.description = "%s%n no \xE2\x82\xAC";
    exception.frames = frames;
    exception.frameCount = 2;
    Fake().MakeMethodThrow(Binding::DesktopConnection::kClass, "<init>", exception);
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(), nullptr);

    ASSERT_EQ(Host().Errors().size(), 1U);
    const std::wstring error = Host().Errors()[0];
    EXPECT_EQ(error.substr(0, error.find(L"no ")), L"Failed to create a new Java connection object.  %s%n ");
    EXPECT_EQ(error.substr(error.find(L"\r\n")), L"\r\n\torvane.A.a(A.java:1)\r\n\torvane.B.b(B.java:2)");
    EXPECT_FALSE(Fake().IsExceptionPending());
}

TEST_F(ConnectionFaultTest, AnObjectThatCannotBeMadeOrHeldIsLogged) {
    for (const char* const function : {"NewObjectV", "NewGlobalRef"}) {
        Fake().Fail(function, 1);

        EXPECT_EQ(Convert(), nullptr) << function;

        EXPECT_EQ(Fake().GetFaultsFired(), 1) << function;
        EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java connection object.  " + kOutOfMemory);
        EXPECT_FALSE(Fake().IsExceptionPending()) << function;
    }
    Fake().Fail("NewObjectV", 1, 1, FakeFaultMode::eWithoutException);

    EXPECT_EQ(Convert(), nullptr);

    EXPECT_EQ(Host().Errors().back(), L"Failed to create a new Java connection object.  ");
    EXPECT_EQ(Host().Errors().size(), 3U);
    ExpectKeptLocals(2);
}

TEST_F(ConnectionFaultTest, WithoutALoggerEverythingGoesTheSameWay) {
    const CJNIConvertor convertor = MakeConvertorWithoutLogger();
    for (const long nth : {1, 2, 3, 4}) {
        Fake().Fail("NewString", nth);
        EXPECT_EQ(convertor.GetConnection(Context(), Desktop()), nullptr) << nth;
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
    }
    Fake().Fail("NewObjectV", 1);
    EXPECT_EQ(convertor.GetConnection(Context(), Desktop()), nullptr);
    EXPECT_FALSE(Fake().IsExceptionPending());
    ExpectKeptLocals(5);

    EXPECT_NE(convertor.GetConnection(Context(), Desktop()), nullptr);

    EXPECT_EQ(Constructed(), ConstructedWith("DESKTOP"));
    EXPECT_EQ(Host().Record().CountCalls("Logger"), 0);
}

TEST_F(ConnectionFaultTest, EachCallOfJnisMayFailOnceOrForEver) {
    for (const long times : {1, -1}) {
        long fired = 1;
        for (long nth = 1; fired != 0; ++nth) {
            const CJavaLocalFrame frame(Env());
            const std::size_t errors = Host().Errors().size();
            Fake().Fail("*", nth, times);

            const auto connection = Convert();
            fired = Fake().GetFaultsFired();
            Fake().ClearFaults();

            EXPECT_EQ(connection == nullptr, fired != 0) << nth;
            EXPECT_EQ(Host().Errors().size(), errors + (fired != 0 ? 1 : 0)) << nth;
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_LE(Fake().GetLocalReferencesOfThread(), 1) << nth << ": the exception";
            EXPECT_EQ(Fake().GetPinnedStrings(), 0) << nth;
        }
    }
}

TEST_F(ConnectionFaultTest, EachAllocationMayFail) {
    const CJNIConvertor convertor = MakeConvertor();
    Host().Record().SetKeepsHistory(false);  // which takes memory of its own, and not the same in each round
    long thrown = 0;
    bool hasFired = true;
    for (long nth = 1; hasFired; ++nth) {
        std::shared_ptr<CJavaObject> connection;
        bool isThrown = false;
        {
            const CHeldWrapperBlocks held(*SharedVM());
            const CAllocationFault fault(nth);
            try {
                connection = convertor.GetConnection(Context(), Desktop());
            } catch (const std::bad_alloc&) {
                isThrown = true;
                ++thrown;
            }
            hasFired = fault.HasFired();
        }

        EXPECT_EQ(connection == nullptr, isThrown) << nth;
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
        EXPECT_EQ(Fake().GetGlobalReferences(), connection ? 2 : 1) << nth;
    }
    EXPECT_EQ(thrown, 5) << "a block for each of the four strings, and one for the object";
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
