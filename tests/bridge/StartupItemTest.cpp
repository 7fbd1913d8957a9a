#include "CRecordingCallback.h"
#include "DumpDataFixture.h"

namespace {

/// The report of the host's start-up, and what becomes of its answer.
class StartupItemTest : public CDumpDataFixture {};

TEST_F(StartupItemTest, AStartUpTellsWhoTheClientIs) {
    Start();

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(CallsSinceStart(),
              (Calls{"DesktopConnection.<init>(\"machine 7\", \"token\", \"vm 7\", 393728, \"DESKTOP\")",
                     "DesktopMessageClient.onStartup(\"<client><type>DesktopAgent</type><name>desk</name>"
                     "<id>machine 7</id><version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>\", "
                     "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection@instance)"}));
}

TEST_F(StartupItemTest, AMachineNameThatIsNotToBeHadIsEmpty) {
    Start();
    Host().Record().Fail("ISystemInfo::get_machineName", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_NE(CallsSinceStart().back().find("<name></name>"), std::string::npos);
}

/// The answer to a start-up, and who hears it.
class StartupAnswerTest : public CDumpDataFixture {
protected:
    void SetUp() override {
        CDumpDataFixture::SetUp();
        Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");
    }

    void TearDown() override {
        for (const wchar_t* const url : {kUrl, kOtherUrl}) {
            EXPECT_EQ(m_manager->UnregisterDataDumpCallback(url, kToken, kCertificate, &m_callback), S_OK);
        }
        CDumpDataFixture::TearDown();
    }

    void Register(const wchar_t* url) {
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(url, kToken, kCertificate, &m_callback), S_OK);
    }

    static constexpr wchar_t kOtherUrl[] = L"rmi://two";
    CRecordingCallback m_callback;
};

TEST_F(StartupAnswerTest, TheCallbacksOfTheServerHearIt) {
    Register(kUrl);
    Register(kOtherUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (CRecordingCallback::Reports{{eStartup, L"welcome"}}));
}

TEST_F(StartupAnswerTest, TheCallbacksOfTheOnlyServerHearIt) {
    Register(kOtherUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (CRecordingCallback::Reports{{eStartup, L"welcome"}}));
}

TEST_F(StartupAnswerTest, NoAnswerIsNotToldToAnyone) {
    Fake().MakeMethodReturnNull(kClient, "onStartup");
    Register(kUrl);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), CRecordingCallback::Reports{});
}

TEST_F(StartupAnswerTest, AnAnswerThatNobodyHearsFailsTheCall) {
    Start();

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to CallCallback for eStartup:(rmi://one, token, certificate)"});
}

TEST_F(StartupAnswerTest, NullTextsAreCalledNullThere) {
    Register(kOtherUrl);
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"rmi://three", kToken, kCertificate, &m_callback), S_OK);
    Start();

    EXPECT_EQ(m_manager->DumpData<IUnknown>(kUrl, kToken, nullptr, 1, eStartup, nullptr), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(), L"error: Failed to CallCallback for eStartup:(rmi://one, token, null)");
    EXPECT_EQ(m_manager->DumpData<IUnknown>(nullptr, nullptr, nullptr, 1, eStartup, nullptr), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(), L"error: Failed to CallCallback for eStartup:(null, null, null)");

    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"rmi://three", kToken, kCertificate, &m_callback), S_OK);
}

TEST_F(StartupAnswerTest, TheResultOfTheIdentitiesIsThatOfAnAnsweredCallToo) {
    Register(kUrl);
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), E_ACCESSDENIED);

    EXPECT_EQ(m_callback.Told().size(), 1U);
}

TEST_F(StartupAnswerTest, AnAnswerThatNobodyHearsCountsForMoreThanTheIdentities) {
    Start();
    Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, E_ACCESSDENIED);

    EXPECT_EQ(Dump(eStartup), E_FAIL);
}

TEST_F(StartupAnswerTest, AnAnswerThatJavaDoesNotGiveIsAFailureAndLeavesNothingPending) {
    Register(kUrl);
    Start();
    Fake().Fail("GetStringChars", 1);

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(m_callback.Told(), CRecordingCallback::Reports{});
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to send data with type eStartup to the message server.  "
                                        L"java.lang.OutOfMemoryError: injected"});
    EXPECT_EQ(Dump(eStartup), S_OK);
}

TEST_F(StartupItemTest, AStartUpThatJavaRefusesIsLoggedWithItsException) {
    Start();
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to send data with type eStartup to the message server.  no answer"});
}

TEST_F(StartupItemTest, AServerThatCannotBeReachedHasAResultOfItsOwn) {
    Start();
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("java.rmi.ConnectException: refused"));

    EXPECT_EQ(Dump(eStartup), kServerNotReached);

    EXPECT_EQ(
        LoggedSinceStart().back(),
        L"error: Failed to send data with type eStartup to the message server.  java.rmi.ConnectException: refused");
}

TEST_F(StartupItemTest, DataThatIsASessionIsLoggedWithItsUser) {
    Start();
    SessionData session;
    session.label = L"user 5";
    const auto data = MakeUserSession(Host().ShareRecord(), session);
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(Dump(eStartup, data.Get()), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send user event eStartup for user user 5 to the message server.  no answer");

    Host().Record().Fail("IUserSessionInfo::get_userLabel", 1, E_ACCESSDENIED);
    EXPECT_EQ(Dump(eStartup, data.Get()), E_FAIL);
    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send user event eStartup for user NULL to the message server.  no answer");
}

TEST_F(StartupItemTest, DataThatIsNoSessionIsLoggedAsData) {
    Start();
    const auto data = MakePropertyBox(Host().ShareRecord(), {});
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    EXPECT_EQ(m_manager->DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, eStartup, data.Get()), E_FAIL);

    EXPECT_EQ(LoggedSinceStart().back(),
              L"error: Failed to send data with type eStartup to the message server.  no answer");
}

TEST_F(StartupItemTest, WithoutAConnectionObjectNothingIsSent) {
    Start();
    Fake().MakeMethodThrow(Binding::DesktopConnection::kClass, "<init>", Exception("no connection"));

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to create a new Java connection object.  no connection"});
    EXPECT_EQ(CallsSinceStart().size(), 1U);
}

TEST_F(StartupItemTest, ADescriptorWithoutAStringIsNotSentAndNotShown) {
    Start();
    Fake().Fail("NewString", 5);

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    EXPECT_EQ(LoggedSinceStart(),
              Texts{L"error: Failed to create a new Java string.  java.lang.OutOfMemoryError: injected"});
    EXPECT_EQ(CallsSinceStart().size(), 1U) << "the connection alone";
}

}  // namespace
