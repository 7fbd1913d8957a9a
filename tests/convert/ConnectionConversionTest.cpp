#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CConvertorHost.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "CRealJvmTest.h"
#include "JavaWitness.h"

namespace {

using Texts = std::vector<std::wstring>;

/// The stand-ins' record of calls, which can make them throw.
namespace Calls {
constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/Calls";
constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
constexpr JavaMethod<void(jstring)> kThrowIn{"throwIn", "throwIn", "(Ljava/lang/String;)V"};
constexpr JavaMethodBinding kRows[] = {kCtor, kThrowIn};
}  // namespace Calls

/// Connections on the real runtime, told by the class's own constructor. What needs a Java that fails on demand is in
/// CJNIConvertorTest.cpp.
class ConnectionConversionTest : public CRealJvmTest {
protected:
    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        const Binding::ClassRows rows = Binding::FindRows(Binding::DesktopConnection::kClass);
        s_connectionClass = VM().LoadClass(Binding::DesktopConnection::kClass, rows.firstRow, rows.rowCount);
        s_callsClass = Load(Calls::kClass, Calls::kRows);
    }
    static void TearDownTestSuite() {
        s_connectionClass.reset();
        s_callsClass.reset();
    }

    void SetUp() override {
        CRealJvmTest::SetUp();
        ASSERT_NE(s_connectionClass, nullptr);
        ASSERT_NE(s_callsClass, nullptr);
        m_calls = s_callsClass->NewObject(Calls::kCtor);
        ASSERT_EQ(TakeException(), L"none");
    }
    void TearDown() override {
        m_calls.reset();
        CRealJvmTest::TearDown();
    }

    [[nodiscard]] CConvertorHost& Host() { return m_host; }
    [[nodiscard]] static JavaCallContext MakeContext(std::wstring id, std::wstring authToken, std::wstring uniqueId) {
        return {std::shared_ptr<CJavaVM>(std::shared_ptr<CJavaVM>(), &VM()), nullptr, std::move(id),
                std::move(authToken), std::move(uniqueId)};
    }
    [[nodiscard]] std::shared_ptr<CJavaObject> Convert(const JavaCallContext& context, VARIANT_BOOL isDesktop) {
        const CHostReference<ISystemInfo> system = m_host.MakeSystem(isDesktop);
        return CJNIConvertor(m_host.MakeLog()).GetConnection(context, *system.Get());
    }

    /// Calls that begin like this throw from now on.
    void ThrowIn(const std::wstring& beginning) {
        const auto text = VM().NewString(beginning);
        m_calls->CallVoidMethod(Calls::kThrowIn, text);
        ASSERT_EQ(TakeException(), L"none");
    }

private:
    static inline std::shared_ptr<CJavaClass> s_connectionClass;
    static inline std::shared_ptr<CJavaClass> s_callsClass;
    std::shared_ptr<CJavaObject> m_calls;
    CConvertorHost m_host;
};

TEST_F(ConnectionConversionTest, TheConstructorReceivesTheFiveArgumentsInTheirOrder) {
    const auto connection = Convert(MakeContext(L"the id", L"the token", L"the unique id"), VARIANT_TRUE);

    EXPECT_NE(connection, nullptr);
    EXPECT_EQ(TakeException(), L"none");
    EXPECT_EQ(TellJavaCalls().back(), "DesktopConnection(the id, the token, the unique id, 393728, DESKTOP)");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(ConnectionConversionTest, OnlyExactlyTrueIsADesktop) {
    for (const VARIANT_BOOL isDesktop : {VARIANT_BOOL{0}, VARIANT_BOOL{1}, VARIANT_BOOL{0x7FFF}}) {
        EXPECT_NE(Convert(MakeContext(L"i", L"t", L"u"), isDesktop), nullptr);

        EXPECT_EQ(TakeException(), L"none");
        EXPECT_EQ(TellJavaCalls().back(), "DesktopConnection(i, t, u, 393728, SERVER)") << isDesktop;
    }
}

TEST_F(ConnectionConversionTest, TextsOutsideAsciiAndEmptyOnesArrive) {
    EXPECT_NE(Convert(MakeContext(L"gr\u00fc\u00df \u65e5\u672c", L"", L"\U0001f600"), VARIANT_TRUE), nullptr);

    EXPECT_EQ(TakeException(), L"none");
    // As Java writes them: modified UTF-8, in which each half of a surrogate pair is encoded by itself.
    EXPECT_EQ(TellJavaCalls().back(),
              "DesktopConnection(gr\xC3\xBC\xC3\x9F \xE6\x97\xA5\xE6\x9C\xAC, , \xED\xA0\xBD\xED\xB8\x80, 393728, "
              "DESKTOP)");
}

TEST_F(ConnectionConversionTest, EachCallMakesAConnectionOfItsOwn) {
    const long before = CountJavaCalls("DesktopConnection(own, ");

    const auto first = Convert(MakeContext(L"own", L"t", L"u"), VARIANT_TRUE);
    EXPECT_EQ(TakeException(), L"none");
    const auto second = Convert(MakeContext(L"own", L"t", L"u"), VARIANT_TRUE);
    EXPECT_EQ(TakeException(), L"none");

    EXPECT_EQ(CountJavaCalls("DesktopConnection(own, "), before + 2);
    EXPECT_FALSE(Env()->IsSameObject(first->GetReference(), second->GetReference()));
}

TEST_F(ConnectionConversionTest, AConstructorThatThrowsIsLoggedWithItsTextAndItsFrames) {
    ThrowIn(L"DesktopConnection(");

    EXPECT_EQ(Convert(MakeContext(L"i", L"t", L"u"), VARIANT_TRUE), nullptr);

    EXPECT_FALSE(Env()->ExceptionCheck());
    ThrowIn(L"");
    ASSERT_EQ(Host().Errors().size(), 1U);
    const std::wstring error = Host().Errors()[0];
    const std::wstring beginning =
        L"Failed to create a new Java connection object.  java.lang.IllegalStateException: ordered: DesktopConnection("
        L"\r\n\tcom.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls.note(Calls.java:";
    EXPECT_EQ(error.substr(0, beginning.size()), beginning);
    EXPECT_NE(error.find(L"\r\n\tcom.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection.<init>("),
              std::wstring::npos);
}

TEST_F(ConnectionConversionTest, AfterAConstructorThatThrewTheNextConnectionIsMade) {
    ThrowIn(L"DesktopConnection(");
    EXPECT_EQ(Convert(MakeContext(L"i", L"t", L"u"), VARIANT_TRUE), nullptr);
    ThrowIn(L"");

    EXPECT_NE(Convert(MakeContext(L"next", L"t", L"u"), VARIANT_TRUE), nullptr);

    EXPECT_EQ(TakeException(), L"none");
    EXPECT_EQ(TellJavaCalls().back(), "DesktopConnection(next, t, u, 393728, DESKTOP)");
}

}  // namespace
