#include <algorithm>
#include <iterator>

#include "CRecordingCallback.h"
#include "ItemFixture.h"

namespace {

constexpr auto kUntold = static_cast<HRESULT>(0x8ABCDEF0);  // the system has no text for it

/// What becomes of the texts that the server answers with.
class AnswersTest : public CItemFixture {
protected:
    static void Answer(const ItemKind& kind, const char* text) {
        Fake().MakeMethodReturnText(kClient, kind.method, text);
    }
    static void AnswerAll(const char* text) {
        for (const ItemKind& kind : kItemKinds) {
            if (kind.isAnswered) {
                Answer(kind, text);
            }
        }
    }

    /// The executor was asked for this, item after item.
    Calls Actions() {
        Calls actions;
        for (const HostAction& action : Host().Actions().GetEntries()) {
            actions.push_back(action.text);
        }
        return actions;
    }
};

/// Answers that callbacks hear.
class CallbackAnswersTest : public AnswersTest {
protected:
    struct HeardKind {
        unsigned char type;
        const wchar_t* failure;
    };
    static constexpr HeardKind kHeardKinds[] = {
        {eUserSessionLogon, L"error: Failed to CallCallback for eUserSessionLogon:("},
        {eStartup, L"error: Failed to CallCallback for eStartup:("},
    };

    void SetUp() override {
        AnswersTest::SetUp();
        AnswerAll("welcome");
    }

    void Register(CRecordingCallback& callback, const wchar_t* url = kUrl) {
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(url, kToken, kCertificate, &callback), S_OK);
    }
    void Unregister(CRecordingCallback& callback, const wchar_t* url = kUrl) {
        EXPECT_EQ(m_manager->UnregisterDataDumpCallback(url, kToken, kCertificate, &callback), S_OK);
    }
};

TEST_F(CallbackAnswersTest, CallbacksHearALogonsAndAStartUpsAnswerAlone) {
    CRecordingCallback callback;
    Register(callback);
    Start();
    for (const ItemKind& kind : kItemKinds) {
        EXPECT_EQ(Send(kind), S_OK) << kind.name;
    }

    EXPECT_EQ(callback.Told(), (CRecordingCallback::Reports{{eUserSessionLogon, L"welcome"}, {eStartup, L"welcome"}}));

    Unregister(callback);
}

TEST_F(CallbackAnswersTest, WhatACallbackAnswersIsIgnored) {
    CRecordingCallback callback;
    callback.SetResult(E_ACCESSDENIED);
    Register(callback);
    Start();
    for (const HeardKind& kind : kHeardKinds) {
        EXPECT_EQ(Send(kind.type), S_OK);
        RefuseIdentities(S_FALSE);
        EXPECT_EQ(Send(kind.type), S_FALSE) << "the result of the identities";
    }

    EXPECT_EQ(callback.Told().size(), 4U);
    EXPECT_EQ(LoggedSinceStart(), Texts{});

    Unregister(callback);
}

TEST_F(CallbackAnswersTest, AnAnswerThatNobodyHearsFailsTheCallAndIsLoggedWithTheServer) {
    Start();
    for (const HeardKind& kind : kHeardKinds) {
        RefuseIdentities(S_FALSE);
        EXPECT_EQ(Send(kind.type), E_FAIL);
        EXPECT_EQ(LastLogged(), std::wstring(kind.failure) + L"rmi://one, token, certificate)");

        const auto dump = [&](const wchar_t* url, const wchar_t* token, const wchar_t* certificate) {
            return m_manager->DumpData<IUnknown>(url, token, certificate, 1, kind.type, m_data.Get());
        };
        EXPECT_EQ(dump(kUrl, kToken, nullptr), E_FAIL);
        EXPECT_EQ(LastLogged(), std::wstring(kind.failure) + L"rmi://one, token, null)");
        EXPECT_EQ(dump(kUrl, nullptr, L""), E_FAIL);
        EXPECT_EQ(LastLogged(), std::wstring(kind.failure) + L"rmi://one, null, )");
        EXPECT_EQ(dump(nullptr, kToken, kCertificate), E_FAIL);
        EXPECT_EQ(LastLogged(), std::wstring(kind.failure) + L"null, token, certificate)");
        EXPECT_EQ(dump(nullptr, nullptr, nullptr), E_FAIL);
        EXPECT_EQ(LastLogged(), std::wstring(kind.failure) + L"null, null, null)");
    }
}

TEST_F(CallbackAnswersTest, CallbacksOfTwoOtherServersHearNothing) {
    CRecordingCallback callback;
    Register(callback, L"rmi://two");
    Register(callback, L"rmi://three");
    Start();
    for (const HeardKind& kind : kHeardKinds) {
        EXPECT_EQ(Send(kind.type), E_FAIL);
    }

    EXPECT_EQ(callback.Told(), CRecordingCallback::Reports{});

    Unregister(callback, L"rmi://two");
    Unregister(callback, L"rmi://three");
}

TEST_F(CallbackAnswersTest, ACallbackMaySendAWholeItem) {
    CRecordingCallback callback;
    long nested = E_PENDING;
    callback.SetHook([&] {
        if (nested == E_PENDING) {
            nested = S_FALSE;
            nested =
                m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 2, eUserSessionLogon, m_data.Get());
        }
    });
    Register(callback);
    Start();

    EXPECT_EQ(Send(eUserSessionLogon), S_OK);

    EXPECT_EQ(nested, S_OK);
    EXPECT_EQ(callback.Told(),
              (CRecordingCallback::Reports{{eUserSessionLogon, L"welcome"}, {eUserSessionLogon, L"welcome"}}));
    const Calls sent = SentCalls();
    ASSERT_EQ(sent.size(), 4U);
    EXPECT_EQ(sent[1], "DesktopMessageClient.setProviderUrl(\"rmi://two\")");
    EXPECT_EQ(sent[3],
              "DesktopMessageClient.onUserLogon(DesktopConnection@instance, DesktopInformation@instance, 2, "
              "BaseUserSession@instance)");

    Unregister(callback);
}

/// Answers that are actions for the host.
class ActionAnswersTest : public AnswersTest {
protected:
    static constexpr unsigned char kActionKinds[] = {eExtendedData, eSample, kDesktopPoll};

    void SetUp() override {
        AnswersTest::SetUp();
        AnswerAll("act");
    }

    /// Each kind of them comes to `result`, with this log and without an action of the host's.
    void ExpectNotExecuted(HRESULT result, const std::wstring& logged) {
        for (const unsigned char type : kActionKinds) {
            Forget();

            EXPECT_EQ(Send(type), result) << int{type};

            EXPECT_EQ(SentCalls().size(), 1U) << int{type};
            EXPECT_EQ(LoggedSinceStart(), Texts{logged}) << int{type};
        }
        EXPECT_EQ(Actions(), Calls{});
    }

    /// An error text without the blanks in front.
    static std::wstring RunTogether(HRESULT result) { return ErrorText(result).substr(2); }
};

TEST_F(ActionAnswersTest, TheExecutorGetsTheTextsOfExtendedDataSamplesAndPollsAlone) {
    CRecordingCallback callback;
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
    Answer(kItemKinds[eExtendedData], "extended");
    Answer(kItemKinds[eSample], "\xC3\xA9 sample");
    Answer(kItemKinds[11], "");
    Start();
    for (const ItemKind& kind : kItemKinds) {
        EXPECT_EQ(Send(kind), S_OK) << kind.name;
    }

    EXPECT_EQ(Actions(), (Calls{"BSTR extended", "BSTR \xC3\xA9 sample", "BSTR "}));
    EXPECT_EQ(LoggedSinceStart(),
              (Texts{L"verbose 8: Adding remote app to sample: '5'", L"verbose 8: Adding session to sample: '5'"}));

    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

TEST_F(ActionAnswersTest, TheExecutorsResultIsTheCalls) {
    Start();
    for (const HRESULT result : {S_OK, S_FALSE, HRESULT{5}}) {
        Host().Actions().SetResult(result);
        for (const unsigned char type : kActionKinds) {
            RefuseIdentities(E_ACCESSDENIED);

            EXPECT_EQ(Send(type), result) << int{type};
        }
    }
    for (const std::wstring& logged : LoggedSinceStart()) {
        EXPECT_EQ(logged.find(L"action"), std::wstring::npos) << "a success";
    }
    EXPECT_EQ(Actions().size(), 9U);
}

TEST_F(ActionAnswersTest, AnActionThatFailsIsLoggedRunTogetherWithItsResult) {
    Start();
    for (const HRESULT result : {E_ACCESSDENIED, kUntold}) {
        Host().Actions().SetResult(result);
        for (const unsigned char type : kActionKinds) {
            Forget();

            EXPECT_EQ(Send(type), result) << int{type};

            EXPECT_EQ(LastLogged(), L"error: Failed to execute action" + RunTogether(result)) << int{type};
        }
    }
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to execute actionError code 0x8abcdef0."});
}

TEST_F(ActionAnswersTest, WithoutAnExecutorTheCallFailsWithTheFetchsResult) {
    Host().Services().Set(ISessionCollection::kId, MakeSessions({}).Get());  // so that sample entries stay away
    Start();

    Host().Services().SetResult(IActionExecutor::kId, E_ACCESSDENIED);
    ExpectNotExecuted(E_ACCESSDENIED, L"error: Failed to get action executor" + RunTogether(E_ACCESSDENIED));

    Host().Services().SetResult(IActionExecutor::kId, E_FAIL);
    ExpectNotExecuted(E_FAIL, L"error: Failed to get action executor" + RunTogether(E_FAIL));
    EXPECT_EQ(LastLogged().rfind(L"error: Failed to get action executorError code 0x80004005", 0), 0U);

    Host().Services().SetResult(IActionExecutor::kId, kUntold);
    ExpectNotExecuted(kUntold, L"error: Failed to get action executorError code 0x8abcdef0.");

    Host().Services().Set(IActionExecutor::kId, nullptr);
    ExpectNotExecuted(E_POINTER, L"error: Failed to get action executor" + RunTogether(E_POINTER));
}

TEST_F(ActionAnswersTest, TheExecutorMaySendAWholeItem) {
    long nested = E_PENDING;
    Host().Actions().SetOnExecute([&](const VARIANT&) {
        if (nested != E_PENDING) {
            return S_OK;
        }
        nested = S_FALSE;
        nested = m_manager->DumpData<IUnknown>(L"rmi://two", kToken, kCertificate, 2, kDesktopPoll, nullptr);
        return S_FALSE;
    });
    for (const unsigned char type : kActionKinds) {
        nested = E_PENDING;
        Start();

        EXPECT_EQ(Send(type), S_FALSE) << int{type};

        EXPECT_EQ(nested, S_OK) << int{type};
        const Calls sent = SentCalls();
        ASSERT_EQ(sent.size(), 4U) << int{type};
        EXPECT_EQ(sent[1], "DesktopMessageClient.setProviderUrl(\"rmi://two\")") << int{type};
        EXPECT_EQ(sent[3], "DesktopMessageClient.onDesktopPoll(DesktopConnection@instance, 2, \"\")") << int{type};
        EXPECT_EQ(Dump(kNamelessKind), S_OK) << "back to the first server";
    }
}

TEST_F(AnswersTest, NobodyActsOnARoutesAnswer) {
    AnswerAll("act");
    Start();
    for (const HRESULT identities : {S_OK, S_FALSE, E_ACCESSDENIED}) {
        RefuseIdentities(identities);

        EXPECT_EQ(Send(eTraceRoute), identities);
    }

    EXPECT_EQ(Actions(), Calls{});
    EXPECT_EQ(SentCalls().size(), 3U);
}

TEST_F(AnswersTest, WithoutAnAnswerNothingIsFetchedOrTold) {
    CRecordingCallback callback;
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
    Start();
    for (const ItemKind& kind : kItemKinds) {
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(kind), S_FALSE) << kind.name;
    }

    EXPECT_EQ(callback.Told(), CRecordingCallback::Reports{});
    EXPECT_EQ(Host().Record().CountCalls("Services: GetHostObject(IActionExecutor)"), 0);

    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

TEST_F(AnswersTest, AnAnswerThatJavaDoesNotGiveIsAFailure) {
    AnswerAll("act");
    Start();
    for (const ItemKind& kind : kItemKinds) {
        if (!kind.isAnswered || kind.type == eTraceRoute) {
            continue;  // nobody acts on a route's answer
        }
        Forget();
        Fake().Fail("GetStringChars", 1);

        EXPECT_EQ(Send(kind), E_FAIL) << kind.name;

        EXPECT_EQ(LastLogged(), L"error: Failed to send user event " + std::wstring(kind.name) +
                                    L" for user lab\\ann to the message server.  "
                                    L"java.lang.OutOfMemoryError: injected");
        EXPECT_FALSE(Fake().IsExceptionPending()) << kind.name;
    }
    EXPECT_EQ(Actions(), Calls{});
}

TEST_F(AnswersTest, TheAnswerToARouteIsNotEvenRead) {
    AnswerAll("act");
    Start();
    Forget();
    Fake().Fail("GetStringChars", 1);

    EXPECT_EQ(Send(*std::find_if(std::begin(kItemKinds), std::end(kItemKinds),
                                 [](const ItemKind& kind) { return kind.type == eTraceRoute; })),
              S_OK);

    EXPECT_EQ(Fake().GetFaultsFired(), 0);
    EXPECT_EQ(Actions(), Calls{});
}

}  // namespace
