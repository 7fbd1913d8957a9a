#include <memory>
#include <string>
#include <utility>

#include "CStandInTest.h"

namespace {

/// Connections on the real runtime, told by the class's own constructor. What needs a Java that fails on demand is in
/// CJNIConvertorTest.cpp.
class ConnectionConversionTest : public CStandInTest {
protected:
    [[nodiscard]] static JavaCallContext MakeContext(std::wstring id, std::wstring authToken, std::wstring uniqueId) {
        return {SharedVM(), nullptr, std::move(id), std::move(authToken), std::move(uniqueId)};
    }
    [[nodiscard]] std::shared_ptr<CJavaObject> Convert(const JavaCallContext& context, VARIANT_BOOL isDesktop) {
        const CHostReference<ISystemInfo> system = Host().MakeSystem(isDesktop);
        return MakeConvertor().GetConnection(context, *system.Get());
    }
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
