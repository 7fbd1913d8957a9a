#include <functional>

#include "BindingTable.h"
#include "CRecordingCallback.h"
#include "DumpDataFixture.h"

namespace {

/// Calls that the host makes on the same thread in the middle of another one of its calls.
class NestedCallTest : public CDumpDataFixture {
protected:
    /// Calls `call` once, from inside the host's next call of this kind.
    void CallIn(const std::string& operation, std::function<void()> call) {
        Host().Record().SetBeforeCall([this, operation, call = std::move(call)](const std::string& text) {
            if (text.find(operation) != std::string::npos && !m_wasCalledIn) {
                m_wasCalledIn = true;
                call();
            }
        });
    }

    void TearDown() override {
        EXPECT_TRUE(m_wasCalledIn);
        Host().Record().SetBeforeCall({});
        CDumpDataFixture::TearDown();
    }

private:
    bool m_wasCalledIn = false;
};

TEST_F(NestedCallTest, InTheMiddleOfTheStartTheyAreRefused) {
    long nested = S_OK;
    CallIn("Logger: LogInfo", [&] { nested = Dump(eStartup); });

    EXPECT_EQ(Dump(kNamelessKind), S_OK);

    EXPECT_EQ(nested, E_FAIL);
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eInitialised);
}

TEST_F(NestedCallTest, InTheMiddleOfASwitchTheyAreRefused) {
    Start();
    long nested = S_OK;
    CallIn("Updated the message server URL", [&] { nested = Dump(kNamelessKind); });

    EXPECT_EQ(m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, kNamelessKind, nullptr), S_OK);

    EXPECT_EQ(nested, E_FAIL);
    EXPECT_EQ(CallsSinceStart(), (Calls{"DesktopMessageClient.setProviderUrl(\"rmi://two\")",
                                        "DesktopMessageClient.initialize(\"C:\\u005cConfig\", \"certificate\")"}));
    EXPECT_EQ(LoggedSinceStart().front(), L"error: Failed to SetCurrentServerConfig" + kInDumpData + ErrorText(E_FAIL));
}

TEST_F(NestedCallTest, FromAnyOtherPlaceTheyAreWholeCalls) {
    Start();
    long nested = E_PENDING;
    CallIn("System: Refresh", [&] { nested = Dump(eStartup); });

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(nested, S_OK);
    EXPECT_EQ(CallsSinceStart().size(), 4U) << "two reports with their connections";
}

TEST_F(NestedCallTest, AnItemWhoseServerCannotBeSwitchedBackToIsRefusedWithItsEntry) {
    Start();
    FakeException refusal;
    refusal.description = "refused";
    CallIn("System: Refresh", [&] {
        EXPECT_EQ(m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, kNamelessKind, nullptr), S_OK);
        Fake().MakeMethodThrow(Binding::DesktopMessageClient::kClass, "setProviderUrl", refusal);
    });

    EXPECT_EQ(Dump(eStartup), E_FAIL);

    const Texts logged = LoggedSinceStart();
    ASSERT_GE(logged.size(), 2U);
    EXPECT_EQ(logged[logged.size() - 2], L"error: Failed to set the message server URL in the Java client.  refused");
    EXPECT_EQ(logged.back(), L"error: Failed to SetCurrentServerConfig" + kInDumpData + ErrorText(E_FAIL));
}

TEST_F(NestedCallTest, InTheMiddleOfAFailedStartTheyAreRefused) {
    Fake().RemoveClass(Binding::HashMap::kClass);
    long nested = S_OK;
    CallIn("Logger: LogError", [&] { nested = Dump(eStartup); });

    EXPECT_EQ(Dump(kNamelessKind), E_FAIL);

    EXPECT_EQ(nested, E_FAIL);
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
    m_manager->Dispose();
}

TEST_F(NestedCallTest, RegistrationIsOpenAtAnyTime) {
    CRecordingCallback callback;
    CRecordingCallback gone;
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &gone), S_OK);
    CallIn("Logger: LogInfo", [&] {
        EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
        EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &gone), S_OK);
    });
    Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(callback.Told().size(), 1U);
    EXPECT_EQ(gone.Told().size(), 0U);
    EXPECT_EQ(gone.CountReferences(), 0);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

/// From each place in turn where a start-up calls the host, a whole life of other calls.
class NestedPlacesTest : public CDumpDataFixture {
protected:
    /// The server that the client was pointed at last before the `nth` call of a method.
    static std::string LastServerBefore(const Calls& calls, const std::string& method, int nth) {
        std::string server = "none";
        for (const std::string& call : calls) {
            if (call.rfind("DesktopMessageClient.setProviderUrl(", 0) == 0) {
                server = call.substr(36, call.size() - 37);
            } else if (call.rfind("DesktopMessageClient." + method, 0) == 0 && --nth == 0) {
                return server;
            }
        }
        return "no such call";
    }
};

TEST_F(NestedPlacesTest, WhereverTheyComeFromAnItemGoesToItsOwnServer) {
    const auto session = MakeUserSession(Host().ShareRecord(), {});
    Start();
    Host().Record().SetRecordsQueries(true);
    ASSERT_EQ(Dump(eStartup, session.Get()), S_OK);
    const std::size_t places = Host().Record().GetCallTexts().size();
    ASSERT_GE(places, 9U);
    CRecordingCallback callback;
    for (std::size_t place = 0; place < places; ++place) {
        const long firstCall = Fake().GetMethodLogSize();
        std::size_t call = 0;
        bool isNested = false;
        long nested = E_PENDING;
        Host().Record().SetBeforeCall([&](const std::string&) {
            if (!isNested && call++ == place) {
                isNested = true;
                EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
                nested = m_manager->DumpData<IUnknown>(L"rmi://two", L"other", kCertificate, 1, eStartup, nullptr);
                EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
                isNested = false;
            }
        });

        EXPECT_EQ(Dump(eStartup, session.Get()), S_OK) << place;

        EXPECT_EQ(nested, S_OK) << place;
        const Calls calls = MethodCalls(firstCall);
        EXPECT_EQ(LastServerBefore(calls, "onStartup", 1), "\"rmi://two\"") << place;
        EXPECT_EQ(LastServerBefore(calls, "onStartup", 2), "\"rmi://one\"") << place;
    }
    Host().Record().SetBeforeCall({});
}

/// Calls out of a callback.
class CallbackReentryTest : public CDumpDataFixture {};

TEST_F(CallbackReentryTest, ACallbackMayReportInItsTurn) {
    Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");
    Start();
    long nested = E_PENDING;
    CRecordingCallback callback;
    callback.SetHook([&] {
        if (nested == E_PENDING) {
            nested = S_FALSE;
            nested = m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 1, eStartup, nullptr);
        }
    });
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);

    EXPECT_EQ(Dump(eStartup), S_OK);

    EXPECT_EQ(nested, S_OK);
    EXPECT_EQ(callback.Told().size(), 2U);
    const Calls calls = CallsSinceStart();
    ASSERT_EQ(calls.size(), 6U);
    EXPECT_EQ(calls[2], "DesktopMessageClient.setProviderUrl(\"rmi://two\")");
    EXPECT_EQ(calls[5].rfind("DesktopMessageClient.onStartup(", 0), 0U);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

TEST_F(CallbackReentryTest, CallbacksAreRegisteredBeforeTheStartAndAfterTheEnd) {
    CRecordingCallback callback;
    EXPECT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->GetState(), ManagerState::eNotInitialised);
    Start();
    Slots().RunCleaner();

    EXPECT_EQ(m_manager->RegisterDataDumpCallback(L"rmi://two", kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(L"rmi://two", kToken, kCertificate, &callback), S_OK);
    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

}  // namespace
