#include "ServerSwitch.h"

#include "CManagedTest.h"
#include "RunOnNewThread.h"

namespace {

/// Pointing the message client at a server, on a bridge that has started.
class ServerSwitchTest : public CManagedTest {
protected:
    void SetUp() override {
        CManagedTest::SetUp();
        ASSERT_EQ(m_manager->SetCurrentServerConfig(L"", L"", L""), S_FALSE);
        ForgetStart();
    }

    long Switch(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate) {
        return m_manager->SetCurrentServerConfig(url, authToken, certificate);
    }

    /// The stored configuration is the first one, of nothing, which needs no switch.
    void ExpectNothingStored() {
        Fake().ClearFaults();
        EXPECT_EQ(Switch(L"", L"", L""), S_FALSE);
    }
};

TEST_F(ServerSwitchTest, ASwitchSetsTheUrlAndThenInitializesTheClient) {
    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK);

    EXPECT_EQ(CallsSinceStart(), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://one\")",
                                        "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"certificate\")"}));
    EXPECT_EQ(LoggedSinceStart(), Texts{L"info: Updated the message server URL in the Java client to rmi://one."});
}

TEST_F(ServerSwitchTest, AFirstConfigurationOfNothingIsUnchanged) {
    EXPECT_EQ(Switch(L"", L"", L""), S_FALSE);
    EXPECT_EQ(Switch(nullptr, nullptr, nullptr), S_FALSE);

    EXPECT_EQ(CallsSinceStart(), Calls{});
}

TEST_F(ServerSwitchTest, AnUnchangedConfigurationCallsNothingAtAll) {
    ASSERT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK);
    const long calls = Fake().GetCallLogSize();

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_FALSE);
    EXPECT_EQ(Switch(L"RMI://One", L"token", L"certificate"), S_FALSE) << "the URL's letter case does not count";

    EXPECT_EQ(Fake().GetCallLogSize(), calls);
}

TEST_F(ServerSwitchTest, WhateverElseChangesIsAFullSwitch) {
    ASSERT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK);
    for (const ServerConfig& changed :
         {ServerConfig{L"rmi://one", L"other token", L"certificate"},
          ServerConfig{L"rmi://one", L"Other Token", L"certificate"},
          ServerConfig{L"rmi://one", L"Other Token", L"other certificate"},
          ServerConfig{L"rmi://one", L"Other Token", L"Other Certificate"},
          ServerConfig{L"rmi://two", L"Other Token", L"Other Certificate"}, ServerConfig{L"", L"", L""}}) {
        const long firstCall = Fake().GetMethodLogSize();

        EXPECT_EQ(Switch(changed.url.c_str(), changed.authToken.c_str(), changed.certificate.c_str()), S_OK);

        const std::string url(changed.url.begin(), changed.url.end());
        const std::string certificate(changed.certificate.begin(), changed.certificate.end());
        EXPECT_EQ(MethodCalls(firstCall),
                  (Calls{"DesktopMessageClient.setProviderUrl(\"" + url + "\")",
                         "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"" + certificate + "\")"}));
    }
}

TEST_F(ServerSwitchTest, NullTextsReachJavaAsEmptyOnes) {
    ASSERT_EQ(Switch(nullptr, L"token", nullptr), S_OK);

    EXPECT_EQ(CallsSinceStart(), (Calls{"DesktopMessageClient.setProviderUrl(\"\")",
                                        "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"\")"}));
}

TEST_F(ServerSwitchTest, TheUrlsStringFailing) {
    Fake().Fail("NewString", 1);

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(
        LoggedSinceStart(),
        Texts{L"error: Failed to create a new Java string for 'rmi://one'.  java.lang.OutOfMemoryError: injected"});
    EXPECT_EQ(CallsSinceStart(), Calls{});
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, TheUrlNotTaken) {
    Fake().MakeMethodThrow(kClient, "setProviderUrl", Exception("no such host"));

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to set the message server URL in the Java client.  no such host"});
    EXPECT_EQ(CallsSinceStart(), Calls{"DesktopMessageClient.setProviderUrl(\"rmi://one\")"});
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, TheFoldersStringFailing) {
    Fake().Fail("NewString", 2);

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(
        LoggedSinceStart(),
        (Texts{L"info: Updated the message server URL in the Java client to rmi://one.",
               L"error: Failed to create a new Java string for 'C:\\Config'.  java.lang.OutOfMemoryError: injected"}));
    EXPECT_EQ(CallsSinceStart(), Calls{"DesktopMessageClient.setProviderUrl(\"rmi://one\")"});
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, TheCertificatesStringFailingDoesNotShowIt) {
    Fake().Fail("NewString", 3);

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              (Texts{L"info: Updated the message server URL in the Java client to rmi://one.",
                     L"error: Failed to create a new Java string for the certificate.  java.lang.OutOfMemoryError: "
                     L"injected"}));
    EXPECT_EQ(CallsSinceStart(), Calls{"DesktopMessageClient.setProviderUrl(\"rmi://one\")"});
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, TheClientNotInitialized) {
    Fake().MakeMethodThrow(kClient, "initialize", Exception("refused"));

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(LoggedSinceStart().back(), L"error: Failed to initialize RMI in the Java client.  refused");
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, ASwitchThatFailsIsTriedAgainAsAWhole) {
    ASSERT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK);
    Fake().MakeMethodThrow(kClient, "initialize", Exception("refused"));
    ASSERT_EQ(Switch(L"rmi://two", L"token", L"certificate"), E_FAIL);
    ASSERT_EQ(Switch(L"rmi://two", L"token", L"certificate"), E_FAIL);
    const long firstCall = Fake().GetMethodLogSize();

    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_FALSE) << "the old one is still the stored one";
    EXPECT_EQ(Switch(L"rmi://two", L"token", L"certificate"), E_FAIL);

    EXPECT_EQ(MethodCalls(firstCall), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://two\")",
                                             "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"certificate\")"}));
}

TEST_F(ServerSwitchTest, WithoutAConfigurationFolderTheRegistrysFailureIsReturned) {
    CAgentRegistry::SetBytes(Registry().AgentKey(), L"ConfigDirectory", REG_DWORD, {1, 0, 0, 0});
    EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), HRESULT_FROM_WIN32(ERROR_INVALID_DATA));

    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, Registry().AgentKey().c_str(), L"ConfigDirectory");
    RunOnNewThread(
        [&] { EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)); });

    EXPECT_EQ(LoggedSinceStart(), Texts{});
    EXPECT_EQ(CallsSinceStart(), Calls{});
    EXPECT_EQ(Fake().GetCallCount("AttachCurrentThread"), 0) << "it is read first";
    ExpectNothingStored();
}

TEST_F(ServerSwitchTest, WithoutAMachineThereIsNothingToSwitch) {
    EXPECT_EQ(SwitchMessageServer(MakeLog(), JavaBridge(), Slots(), {L"rmi://one", L"", L""}),
              static_cast<HRESULT>(0x80040007));
}

TEST_F(ServerSwitchTest, AThreadThatIsNewIsAttachedForItsLife) {
    RunOnNewThread([&] {
        EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK);
        EXPECT_EQ(Switch(L"rmi://two", L"token", L"certificate"), S_OK);
        EXPECT_TRUE(Fake().IsThreadAttached());
    });

    EXPECT_EQ(Fake().GetCallCount("AttachCurrentThread"), 1);
    EXPECT_EQ(Fake().GetCallCount("DetachCurrentThread"), 1);
    EXPECT_EQ(Fake().GetAttachedThreads(), 0);
}

TEST_F(ServerSwitchTest, AThreadThatCannotBeAttachedFailsAtItsFirstString) {
    Fake().Fail("AttachCurrentThread", 1);

    RunOnNewThread([&] {
        EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), E_FAIL);
        EXPECT_EQ(Switch(L"rmi://one", L"token", L"certificate"), S_OK) << "the next call attaches it";
    });

    EXPECT_EQ(LoggedSinceStart().front(), L"error: Failed to create a new Java string for 'rmi://one'.  ");
}

/// Of the calls that may fail, these take nothing away from a switch: a frame is done without.
bool IsDispensable(const std::string& function) {
    return function == "PushLocalFrame";
}

TEST_F(ServerSwitchTest, EachCallOfJnisMayFail) {
    long fired = 1;
    for (long nth = 1; fired != 0; ++nth) {
        Fake().Fail("*", nth);

        const long switched = Switch(L"rmi://other", std::to_wstring(nth).c_str(), L"certificate");

        fired = Fake().GetFaultsFired();
        const bool succeeds = fired == 0 || IsDispensable(Fake().GetFailedFunction());
        Fake().ClearFaults();
        EXPECT_EQ(switched, succeeds ? S_OK : E_FAIL) << nth;
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
        EXPECT_EQ(Switch(L"rmi://one", std::to_wstring(nth).c_str(), L"certificate"), S_OK) << nth;
    }
}

class ServerSwitchWithoutLoggerTest : public CManagedTest {};

TEST_F(ServerSwitchWithoutLoggerTest, EachFailureGivesTheSameResult) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    ASSERT_EQ(m_manager->SetCurrentServerConfig(L"", L"", L""), S_FALSE);
    for (const long nth : {1, 2, 3}) {
        Fake().Fail("NewString", nth);
        EXPECT_EQ(m_manager->SetCurrentServerConfig(L"rmi://one", L"", L""), E_FAIL) << nth;
        Fake().ClearFaults();
    }
    for (const char* const method : {"setProviderUrl", "initialize"}) {
        Fake().MakeMethodThrow(kClient, method, {});
        EXPECT_EQ(m_manager->SetCurrentServerConfig(L"rmi://one", L"", L""), E_FAIL) << method;
    }
    Slots().RunCleaner();
    EXPECT_EQ(m_manager->SetCurrentServerConfig(L"rmi://one", L"", L""), E_FAIL) << "after the end";

    EXPECT_EQ(Logged(), Texts{});
}

}  // namespace
