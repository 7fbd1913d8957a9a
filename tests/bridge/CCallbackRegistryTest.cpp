#include "CCallbackRegistry.h"

#include "CImportHook.h"
#include "CallbackRegistryFixture.h"

namespace {

using Reports = CRecordingCallback::Reports;

/// What a host registers, and who hears what.
class CCallbackRegistryTest : public CCallbackRegistryFixture {};

// ---- registration ---------------------------------------------------------------------------------------

TEST_F(CCallbackRegistryTest, ACallbackIsReferencedOnceUntilItIsUnregistered) {
    Register(kServer, 0);
    EXPECT_EQ(References(0), 1);

    Unregister(kServer, 0);

    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(Call(kServer), E_FAIL);
    EXPECT_EQ(TakeHeard(), Heard{});
}

TEST_F(CCallbackRegistryTest, ACallbackRegisteredTwiceIsThereOnceAndGoneAtOnce) {
    Register(kServer, 0);
    Register(kServer, 0);
    EXPECT_EQ(References(0), 1);
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});

    Unregister(kServer, 0);

    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(Call(kServer), E_FAIL);
    EXPECT_EQ(TakeHeard(), Heard{});
}

TEST_F(CCallbackRegistryTest, ACallbackOfTwoServersIsReferencedByEach) {
    Register(kServer, 0);
    Register(kOther, 0);
    EXPECT_EQ(References(0), 2);

    Unregister(kServer, 0);

    EXPECT_EQ(References(0), 1);
    EXPECT_EQ(Call(kOther), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryTest, UnregisteringWhatIsNotRegisteredChangesNothing) {
    Unregister(kServer, 0);
    EXPECT_EQ(References(0), 0);
    Register(kServer, 0);
    Register(kOther, 1);

    Unregister(kServer, 1);
    Unregister(kNowhere, 0);
    Unregister(kOther, 0);
    Unregister(kServer, 2);

    EXPECT_EQ(References(0), 1);
    EXPECT_EQ(References(1), 1);
    EXPECT_EQ(References(2), 0);
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(Call(kOther), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{0, 1}));
}

TEST_F(CCallbackRegistryTest, RegisteringNullAddsNoServer) {
    Registry().Register(kServer, nullptr);
    EXPECT_EQ(Call(kServer), E_FAIL) << "a server without callbacks would be told successfully";

    Register(kServer, 0);
    Registry().Register(kOther, nullptr);

    EXPECT_EQ(Call(kOther), S_OK) << "a second server would be one without callbacks";
    EXPECT_EQ(Call(kNowhere), S_OK) << "with a second server nobody would hear";
    EXPECT_EQ(TakeHeard(), (Heard{0, 0}));
}

TEST_F(CCallbackRegistryTest, RegisteringNullToAServerAddsNoCallback) {
    Register(kServer, 0);

    Registry().Register(kServer, nullptr);

    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
    Unregister(kServer, 0);
    EXPECT_EQ(Call(kServer), E_FAIL) << "the server would still be there";
}

TEST_F(CCallbackRegistryTest, UnregisteringNullChangesNothing) {
    Register(kServer, 0);

    Registry().Unregister(kServer, nullptr);
    Registry().Unregister(kNowhere, nullptr);

    EXPECT_EQ(References(0), 1);
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryTest, TheLastCallbackTakesItsServerWithIt) {
    Register(kServer, 0);
    Register(kServer, 1);
    Register(kOther, 2);
    Unregister(kServer, 0);
    EXPECT_EQ(Call(kNowhere), E_FAIL) << "two servers are left";

    Unregister(kServer, 1);

    EXPECT_EQ(Call(kServer), S_OK) << "one server is left";
    EXPECT_EQ(TakeHeard(), Heard{2});
}

TEST_F(CCallbackRegistryTest, ItsEndReleasesEveryCallback) {
    Register(kServer, 0);
    Register(kServer, 1);
    Register(kOther, 1);
    Register(kOther, 2);

    m_registry.reset();

    for (const std::size_t index : {0U, 1U, 2U}) {
        EXPECT_EQ(References(index), 0) << index;
    }
}

// ---- who is told ----------------------------------------------------------------------------------------

TEST_F(CCallbackRegistryTest, WithoutACallbackNobodyIsTold) {
    EXPECT_EQ(Call(kServer), E_FAIL);
    EXPECT_EQ(Call({L"", L"", L""}), E_FAIL);
}

TEST_F(CCallbackRegistryTest, TheCallbacksOfTheServerAreTold) {
    Register(kServer, 0);
    Register(kServer, 2);
    Register(kOther, 1);

    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{0, 2}));
    EXPECT_EQ(Call(kOther), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{1});
}

TEST_F(CCallbackRegistryTest, TheCallbacksOfTheOnlyServerHearWhatIsReportedUnderOtherTexts) {
    Register(kServer, 0);
    Register(kServer, 1);

    EXPECT_EQ(Call(kOther), S_OK);
    EXPECT_EQ(Call({L"", L"", L""}), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{0, 1, 0, 1}));
}

TEST_F(CCallbackRegistryTest, OfTwoServersNeitherHearsWhatIsReportedUnderOtherTexts) {
    Register(kServer, 0);
    Register(kOther, 0);

    EXPECT_EQ(Call(kNowhere), E_FAIL);
    EXPECT_EQ(TakeHeard(), Heard{});

    Unregister(kOther, 0);

    EXPECT_EQ(Call(kNowhere), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryTest, EachOfTheThreeTextsCountsExactly) {
    Register(kServer, 0);
    Register(kNowhere, 1);  // a second server, lest the first hear everything

    for (const ServerConfig& other :
         {ServerConfig{L"rmi://One", L"token", L"certificate"}, ServerConfig{L"rmi://one", L"Token", L"certificate"},
          ServerConfig{L"rmi://one", L"token", L"Certificate"}, ServerConfig{L"rmi://on", L"token", L"certificate"},
          ServerConfig{L"rmi://one ", L"token", L"certificate"}, ServerConfig{L"", L"token", L"certificate"},
          ServerConfig{L"rmi://one", L"", L"certificate"}, ServerConfig{L"rmi://one", L"token", L""},
          ServerConfig{L"rmi://one", L"certificate", L"token"}, ServerConfig{L"rmi://onet", L"oken", L"certificate"}}) {
        EXPECT_EQ(Call(other), E_FAIL) << testing::PrintToString(other.url + other.authToken + other.certificate);
    }
    EXPECT_EQ(Call(MakeServerConfig(L"rmi://one", L"token", L"certificate")), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryTest, ANullTextIsTheSameServerAsAnEmptyOne) {
    Register(MakeServerConfig(nullptr, nullptr, nullptr), 0);
    Register(kOther, 1);

    EXPECT_EQ(Call({L"", L"", L""}), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
    Unregister({L"", L"", L""}, 0);
    EXPECT_EQ(References(0), 0);
}

TEST_F(CCallbackRegistryTest, TheOrderIsThatOfThePointers) {
    for (const std::size_t index : {2U, 0U, 3U, 1U}) {
        Register(kServer, index);
    }

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 1, 2, 3}));
}

// ---- what they are told ---------------------------------------------------------------------------------

TEST_F(CCallbackRegistryTest, TheTypeAndTheTextArrive) {
    Register(kServer, 0);

    EXPECT_EQ(Registry().CallCallback(kServer, eStartup, L"welcome"), S_OK);
    EXPECT_EQ(Registry().CallCallback(kServer, eUserSessionLogon, L"gr\u00fc\u00df \U0001f600"), S_OK);

    EXPECT_EQ(m_callbacks[0].Told(), (Reports{{8, L"welcome"}, {1, L"gr\u00fc\u00df \U0001f600"}}));
}

TEST_F(CCallbackRegistryTest, TextsOfEveryLengthArriveAsCopies) {
    Register(kServer, 0);
    Register(kServer, 1);
    for (const std::size_t length : {0U, 1U, 127U, 128U, 129U, 100000U}) {
        std::wstring text(length, L'x');
        if (length != 0) {
            text.back() = L'y';
        }

        EXPECT_EQ(Call(kServer, text.c_str()), S_OK);

        for (const std::size_t index : {0U, 1U}) {
            EXPECT_TRUE(m_callbacks[index].Told().back() == std::make_pair(ULONG{eStartup}, text)) << length;
            EXPECT_NE(m_callbacks[index].Addresses().back(), text.c_str()) << length;
        }
    }
}

TEST_F(CCallbackRegistryTest, TextsFrom128CharactersOnLieOnTheHeap) {
    Register(kServer, 0);
    long blocks = 0;
    WhenTold(0, [&] { blocks = CResourceLedger::Get().Count().heapBlocks; });
    const long before = CResourceLedger::Get().Count().heapBlocks;

    ASSERT_EQ(Call(kServer, std::wstring(127, L'x').c_str()), S_OK);
    EXPECT_EQ(blocks, before);
    ASSERT_EQ(Call(kServer, std::wstring(128, L'x').c_str()), S_OK);
    EXPECT_EQ(blocks, before + 1);
}

TEST_F(CCallbackRegistryTest, WhatACallbackWritesIntoItsCopyNobodyElseSees) {
    Register(kServer, 0);
    Register(kServer, 1);
    WhenTold(0, [&] { const_cast<wchar_t*>(m_callbacks[0].Addresses().back())[0] = L'X'; });
    for (const std::size_t length : {5U, 500U}) {
        const std::wstring text(length, L'x');

        EXPECT_EQ(Call(kServer, text.c_str()), S_OK);

        EXPECT_EQ(m_callbacks[1].Told().back().second, std::wstring(length, L'x'));
        EXPECT_EQ(text, std::wstring(length, L'x'));
    }
}

TEST_F(CCallbackRegistryTest, WhatACallbackAnswersDoesNotCount) {
    Register(kServer, 0);
    Register(kServer, 1);
    m_callbacks[0].SetResult(E_UNEXPECTED);
    m_callbacks[1].SetResult(S_FALSE);

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 1}));
}

}  // namespace
