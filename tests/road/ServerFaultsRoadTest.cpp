// What a host is told when the message server is not there, goes amid a call, is not to be trusted, or fails itself.

#include <algorithm>
#include <fstream>
#include <thread>

#include "CRoadTest.h"
#include "DataType.h"
#include "Road.h"

namespace {

constexpr wchar_t kStartupNotSent[] = L"Failed to send data with type eStartup to the message server.  ";

class ServerFaultsRoadTest : public CRoadTest {
protected:
    void SetUp() override {
        CRoadTest::SetUp();
        m_items = MakeItems(1);
    }

    void TearDown() override {
        m_items.clear();
        CRoadTest::TearDown();
    }

    [[nodiscard]] const RoadItem& Item(unsigned char type) const {
        return *std::find_if(m_items.begin(), m_items.end(), [&](const RoadItem& item) { return item.type == type; });
    }

    void ExpectStartupNotSent(const std::wstring& exception) { ExpectLastError(kStartupNotSent + exception); }

    std::vector<RoadItem> m_items;
};

class ServerGoneRoadTest : public ServerFaultsRoadTest, public testing::WithParamInterface<Way> {
protected:
    /// Ends the server once it has the item, whose answer it keeps back for ever.
    static void KillAmid(const CMessageServer& server, const RoadItem& item) {
        while (server.Record().find(item.line) == std::string::npos) {
            Sleep(10);
        }
        server.Kill();
    }
};

TEST_P(ServerGoneRoadTest, AServerThatIsKilledAmidACallFailsItAndIsFoundAgainWhenItIsBack) {
    CMessageServer server("server", GetParam(), {"--answer", "onStartup=welcome", "--delay", "onUserLogon=3600000"});
    const RoadItem& logon = Item(eUserSessionLogon);
    ASSERT_EQ(Dump(server, eStartup), S_OK);

    std::thread killer([&] { KillAmid(server, logon); });
    EXPECT_EQ(Dump(server, logon), kServerNotReached);
    killer.join();
    ExpectLastError(
        L"Failed to send user event eUserSessionLogon for user the user to the message server.  "
        L"java.rmi.ConnectIOException: the connection to " +
        server.Url() + L" broke during the call; nested exception is: ");

    EXPECT_EQ(Dump(server, eStartup), kServerNotReached);
    ExpectStartupNotSent(L"java.rmi.ConnectException: Connection refused to host: 127.0.0.1; ");

    server.StartAgain({"--answer", "onStartup=back"});
    EXPECT_EQ(Dump(server, eStartup), S_OK) << "the first call";
    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}, {eStartup, L"back"}}));
    EXPECT_EQ(server.Record(), MakeStartupLine() + logon.line + MakeStartupLine()) << "nothing was sent twice";
}

TEST_P(ServerGoneRoadTest, AServerThatWasAwayBetweenTwoCallsFailsNeither) {
    CMessageServer server("server", GetParam());
    ASSERT_EQ(Dump(server, eStartup), S_OK);
    server.Stop();
    server.StartAgain();

    EXPECT_EQ(Dump(server, eStartup), S_OK);

    EXPECT_EQ(server.Record(), MakeStartupLine() + MakeStartupLine());
}

INSTANTIATE_TEST_SUITE_P(Ways, ServerGoneRoadTest, testing::Values(Way::ePlain, Way::eTls), NameWay);

TEST_F(ServerFaultsRoadTest, AServerThatIsNotThereIsNotReached) {
    EXPECT_EQ(Dump(L"rmi://127.0.0.1:1", L"", eStartup), kServerNotReached);

    ExpectStartupNotSent(L"java.rmi.ConnectException: Connection refused to host: 127.0.0.1; ");
}

TEST_F(ServerFaultsRoadTest, ACertificateOfAnotherServersIsRefused) {
    const CMessageServer server("server", Way::eTls, {"--answer", "onStartup=welcome"});
    const std::wstring other = MakeCertificate("other");

    EXPECT_EQ(Dump(server.Url(), other, eStartup), kServerNotReached);

    ExpectStartupNotSent(L"java.rmi.ConnectIOException: Exception creating connection to: 127.0.0.1; ");
    EXPECT_EQ(server.Record(), "");
    EXPECT_EQ(Dump(server, eStartup), S_OK) << "with its own, which the host is given next";
}

TEST_F(ServerFaultsRoadTest, ACertificateThatHasExpiredIsRefused) {
    const CMessageServer server("server", Way::eTls, {}, {"-startdate", "-10d", "-validity", "5"});

    EXPECT_EQ(Dump(server, eStartup), kServerNotReached);

    ExpectStartupNotSent(L"java.rmi.ConnectIOException: Exception creating connection to: 127.0.0.1; ");
    EXPECT_NE(LoggedErrors().back().find(L"java.security.cert.CertificateExpiredException: NotAfter: "),
              std::wstring::npos);
    EXPECT_EQ(server.Record(), "");
}

TEST_F(ServerFaultsRoadTest, AServerThatSpeaksTheOtherWayIsNotReached) {
    const CMessageServer plain("plain");
    const CMessageServer tls("tls", Way::eTls);

    EXPECT_EQ(Dump(tls.Url(), L"", eStartup), kServerNotReached);
    ExpectStartupNotSent(L"java.rmi.ConnectIOException: ");
    EXPECT_EQ(Dump(plain.Url(), tls.Certificate(), eStartup), kServerNotReached);
    ExpectStartupNotSent(L"java.rmi.ConnectIOException: ");

    EXPECT_EQ(plain.Record() + tls.Record(), "");
}

TEST_F(ServerFaultsRoadTest, ATextThatIsNoCertificateFailsTheSwitch) {
    EXPECT_EQ(Dump(L"rmi://127.0.0.1:1", L"no certificate", eStartup), E_FAIL);

    const Texts errors = LoggedErrors();
    ASSERT_EQ(errors.size(), 2U);
    const std::wstring expected =
        L"Failed to initialize RMI in the Java client.  java.security.cert.CertificateException: ";
    EXPECT_EQ(errors[0].substr(0, expected.size()), expected);
}

TEST_F(ServerFaultsRoadTest, AnExceptionOfTheServersOwnIsAFailureOfEachKind) {
    constexpr struct {
        unsigned char type;
        const wchar_t* said;
    } kCases[] = {
        {eUserSessionLogon, L"user event eUserSessionLogon for user the user"},
        {eUserSessionLogoff, L"user event eUserSessionLogoff for user the user"},
        {eUserSessionRefresh, L"user event eUserSessionRefresh for user the user"},
        {eUserSessionReconnect, L"user event eUserSessionReconnect for user the user"},
        {eUserSessionDisconnect, L"user event eUserSessionDisconnect for user the user"},
        {eExtendedData, L"data with type eExtendedData"},
        {eStartup, L"data with type eStartup"},
        {eSample, L"data with type eSample"},
        {eTraceRoute, L"data with type eTraceRoute"},
        {kDesktopPoll, L"data with type 0xff"},
    };
    CMessageServer::Words options;
    std::string expected;
    for (const auto& one : kCases) {
        options.insert(options.end(), {"--fail", Item(one.type).method + "=out of order"});
        expected += Item(one.type).line;
    }
    const CMessageServer server("server", Way::ePlain, options);

    for (const auto& one : kCases) {
        EXPECT_EQ(Dump(server, Item(one.type)), E_FAIL) << one.said;
        ExpectLastError(std::wstring(L"Failed to send ") + one.said +
                        L" to the message server.  java.lang.IllegalStateException: out of order\r\n\t");
    }

    EXPECT_EQ(SortMaps(server.Record()), expected) << "each was heard once";
    EXPECT_EQ(m_callback.Told(), Reports{});
    EXPECT_EQ(Actions(), std::vector<std::string>{});
}

TEST_F(ServerFaultsRoadTest, AnExceptionOfTheServersOwnThatSpeaksOfAConnectionCountsAsNotReached) {
    const CMessageServer server("server", Way::ePlain,
                                {"--fail", "onStartup=behind it: java.rmi.ConnectException", "--fail",
                                 "onDesktopPoll=java.rmi.connectexception"});

    EXPECT_EQ(Dump(server, eStartup), kServerNotReached);
    ExpectStartupNotSent(L"java.lang.IllegalStateException: behind it: java.rmi.ConnectException\r\n\t");
    EXPECT_EQ(Dump(server, kDesktopPoll), E_FAIL) << "but not in other letters";
}

TEST_F(ServerFaultsRoadTest, AnAnswerThatTakesLongArrives) {
    const CMessageServer server("server", Way::ePlain,
                                {"--answer", "onDesktopPoll=late", "--delay", "onDesktopPoll=5000"});

    EXPECT_EQ(Dump(server, kDesktopPoll), S_OK);

    EXPECT_EQ(Actions(), std::vector<std::string>{"BSTR late"});
}

class LongAnswerRoadTest : public ServerFaultsRoadTest, public testing::WithParamInterface<Way> {};

TEST_P(LongAnswerRoadTest, AnAnswerOfAMegabyteArrivesWhole) {
    const std::string middle(std::size_t{1024} * 1024, 'x');
    std::ofstream(Road::File("long.txt"), std::ios::binary) << "\xe4\xb8\xad" << middle << "\xc3\xa9";
    const CMessageServer server("server", GetParam(),
                                {"--answer", "onStartup=@long.txt", "--answer", "onDesktopPoll=@long.txt"});

    EXPECT_EQ(Dump(server, eStartup), S_OK);
    EXPECT_EQ(Dump(server, kDesktopPoll), S_OK);

    // Not by EXPECT_EQ, which would print the texts.
    EXPECT_TRUE(m_callback.Told() ==
                (Reports{{eStartup, L"\u4e2d" + std::wstring(middle.begin(), middle.end()) + L"\u00e9"}}));
    EXPECT_TRUE(Actions() == std::vector<std::string>{"BSTR \xe4\xb8\xad" + middle + "\xc3\xa9"});
}

INSTANTIATE_TEST_SUITE_P(Ways, LongAnswerRoadTest, testing::Values(Way::ePlain, Way::eTls), NameWay);

}  // namespace
