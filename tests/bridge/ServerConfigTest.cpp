#include "ServerConfig.h"

#include <iterator>

#include "CLeakCheckedTest.h"

namespace {

class ServerConfigTest : public CLeakCheckedTest {};

TEST_F(ServerConfigTest, TheThreeTextsAreCopiedToTheirPlaces) {
    std::wstring url(L"rmi://one");

    const ServerConfig config = MakeServerConfig(url.c_str(), L"token", L"certificate");
    url[0] = L'X';

    EXPECT_EQ(config.url, L"rmi://one");
    EXPECT_EQ(config.authToken, L"token");
    EXPECT_EQ(config.certificate, L"certificate");
}

TEST_F(ServerConfigTest, NullTextsBecomeEmptyOnes) {
    const ServerConfig none = MakeServerConfig(nullptr, nullptr, nullptr);
    const ServerConfig tokenAlone = MakeServerConfig(nullptr, L"token", nullptr);

    EXPECT_EQ(none.url, L"");
    EXPECT_EQ(none.authToken, L"");
    EXPECT_EQ(none.certificate, L"");
    EXPECT_EQ(tokenAlone.url, L"");
    EXPECT_EQ(tokenAlone.authToken, L"token");
    EXPECT_EQ(tokenAlone.certificate, L"");
}

TEST_F(ServerConfigTest, TheOrderIsThatOfTheTextsOneAfterTheOther) {
    const ServerConfig ascending[] = {
        {L"", L"", L""},    {L"", L"", L"b"},   {L"", L"b", L""},  {L"a", L"", L""},   {L"a", L"a", L"z"},
        {L"a", L"b", L"a"}, {L"a", L"b", L"b"}, {L"a", L"z", L""}, {L"b", L"a", L"a"},
    };

    for (std::size_t left = 0; left < std::size(ascending); ++left) {
        for (std::size_t right = 0; right < std::size(ascending); ++right) {
            EXPECT_EQ(ascending[left] < ascending[right], left < right) << left << ' ' << right;
        }
    }
}

TEST_F(ServerConfigTest, TextsAreOrderedByTheirCodeUnits) {
    // Neither letter case nor the alphabet counts, nor that the pair at the end stands for a character behind U+FFFD.
    const std::wstring ascending[] = {L"", L"A", L"AA", L"B", L"a", L"\u00c4", L"\U0001f600", L"\ufffd", L"\uffff"};

    for (std::size_t i = 1; i < std::size(ascending); ++i) {
        const std::wstring& less = ascending[i - 1];
        const std::wstring& more = ascending[i];

        EXPECT_TRUE((ServerConfig{less, L"", L""} < ServerConfig{more, L"", L""})) << i;
        EXPECT_FALSE((ServerConfig{more, L"", L""} < ServerConfig{less, L"", L""})) << i;
        EXPECT_TRUE((ServerConfig{L"", less, L""} < ServerConfig{L"", more, L""})) << i;
        EXPECT_FALSE((ServerConfig{L"", more, L""} < ServerConfig{L"", less, L""})) << i;
        EXPECT_TRUE((ServerConfig{L"", L"", less} < ServerConfig{L"", L"", more})) << i;
        EXPECT_FALSE((ServerConfig{L"", L"", more} < ServerConfig{L"", L"", less})) << i;
    }
}

TEST_F(ServerConfigTest, TheSameServerMayHaveItsUrlInAnotherLetterCase) {
    const ServerConfig config = MakeServerConfig(L"rmi://One", L"Token", L"Certificate");

    EXPECT_TRUE(IsSameServer(config, L"rmi://One", L"Token", L"Certificate"));
    EXPECT_TRUE(IsSameServer(config, L"RMI://oNE", L"Token", L"Certificate"));
}

TEST_F(ServerConfigTest, AnotherTextIsAnotherServer) {
    const ServerConfig config = MakeServerConfig(L"rmi://One", L"Token", L"Certificate");

    EXPECT_FALSE(IsSameServer(config, L"rmi://Two", L"Token", L"Certificate"));
    EXPECT_FALSE(IsSameServer(config, L"rmi://On", L"Token", L"Certificate"));
    EXPECT_FALSE(IsSameServer(config, L"rmi://One", L"token", L"Certificate"));
    EXPECT_FALSE(IsSameServer(config, L"rmi://One", L"Token1", L"Certificate"));
    EXPECT_FALSE(IsSameServer(config, L"rmi://One", L"Token", L"certificate"));
    EXPECT_FALSE(IsSameServer(config, L"rmi://One", L"Token", L""));
    EXPECT_FALSE(IsSameServer(config, L"rmi://One", L"Certificate", L"Token"));
}

TEST_F(ServerConfigTest, NullIsTheSameAsAnEmptyText) {
    const ServerConfig none = MakeServerConfig(L"", L"", L"");

    EXPECT_TRUE(IsSameServer(none, nullptr, nullptr, nullptr));
    EXPECT_TRUE(IsSameServer(none, L"", L"", L""));
    EXPECT_FALSE(IsSameServer(none, L"rmi://one", nullptr, nullptr));
    EXPECT_FALSE(IsSameServer(none, nullptr, L"token", nullptr));
    EXPECT_FALSE(IsSameServer(none, nullptr, nullptr, L"certificate"));
    EXPECT_FALSE(IsSameServer(MakeServerConfig(L"rmi://one", L"", L""), nullptr, nullptr, nullptr));
    EXPECT_FALSE(IsSameServer(MakeServerConfig(L"", L"token", L""), nullptr, nullptr, nullptr));
    EXPECT_FALSE(IsSameServer(MakeServerConfig(L"", L"", L"certificate"), nullptr, nullptr, nullptr));
}

}  // namespace
