#include "CRecordingCallback.h"
#include "ItemFixture.h"

namespace {

/// Items whose method throws.
class RefusedItemsTest : public CItemFixture {
protected:
    void TearDown() override {
        EXPECT_EQ(Host().Actions().GetEntries().size(), 0U) << "there is no answer";
        CItemFixture::TearDown();
    }

    static std::wstring EventNotSent(const ItemKind& kind, const std::wstring& user, const std::wstring& what) {
        return L"error: Failed to send user event " + std::wstring(kind.name) + L" for user " + user +
               L" to the message server.  " + what;
    }
    static std::wstring DataNotSent(const ItemKind& kind, const std::wstring& what) {
        return L"error: Failed to send data with type " + std::wstring(kind.name) + L" to the message server.  " + what;
    }
};

TEST_F(RefusedItemsTest, TheMessageNamesTheUserWhereTheDataIsASession) {
    Start();
    for (const ItemKind& kind : kItemKinds) {
        if (!kind.method) {
            continue;
        }
        MakeThrow(kind, "no way");
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(kind), E_FAIL) << kind.name;

        EXPECT_EQ(LastLogged(), EventNotSent(kind, L"lab\\ann", L"no way"));
        for (const HRESULT failure : {E_ACCESSDENIED, E_NOTIMPL}) {
            Host().Record().Fail("IUserSessionInfo::get_userLabel", 1, failure);
            EXPECT_EQ(Send(kind), E_FAIL) << kind.name;
            EXPECT_EQ(LastLogged(), EventNotSent(kind, L"NULL", L"no way"));
        }
    }
}

TEST_F(RefusedItemsTest, TheMessageNamesTheDataWhereItIsNoSession) {
    Start();
    const auto data = Make(MakeDataWithoutSession());
    for (const ItemKind& kind : kItemKinds) {
        if (kind.type <= eUserSessionEnd) {
            continue;  // without a session it does not come that far
        }
        MakeThrow(kind, "no way");

        EXPECT_EQ(Dump(kind.type, data.Get()), E_FAIL) << kind.name;

        EXPECT_EQ(LastLogged(), DataNotSent(kind, L"no way"));
    }
    EXPECT_EQ(Dump(kDesktopPoll), E_FAIL) << "null";
    EXPECT_EQ(LastLogged(), L"error: Failed to send data with type 0xff to the message server.  no way");
}

TEST_F(RefusedItemsTest, AServerThatCannotBeReachedHasAResultOfItsOwn) {
    struct Case {
        const char* exception;
        HRESULT result;
    };
    Start();
    for (const Case& c :
         {Case{"java.rmi.ConnectException: refused", kServerNotReached},
          Case{"java.rmi.ConnectIOException: reset", kServerNotReached},
          Case{"java.security.cert.CertificateException: untrusted", kServerNotReached},
          Case{"javax.naming.Exception: rmiURLContext", kServerNotReached},
          Case{"java.rmi.connectexception: refused", E_FAIL}, Case{"java.net.ConnectException: refused", E_FAIL},
          Case{"java.security.cert", E_FAIL}, Case{"", E_FAIL}}) {
        for (const ItemKind& kind : kItemKinds) {
            if (!kind.method) {
                continue;
            }
            Forget();
            MakeThrow(kind, c.exception);
            RefuseIdentities(S_FALSE);

            EXPECT_EQ(Send(kind), c.result) << kind.name << ' ' << c.exception;

            const std::string text = c.exception;
            EXPECT_EQ(LastLogged(), EventNotSent(kind, L"lab\\ann", std::wstring(text.begin(), text.end())));
            EXPECT_EQ(SentCalls().size(), 1U) << kind.name << ", and no second try";
        }
    }
}

TEST_F(RefusedItemsTest, AMarkerInAStackFrameCountsToo) {
    Start();
    FakeFrame frame;
    frame.text = "java.rmi.ConnectIOException.raise(Source.java:1)";
    FakeException exception = Exception("wrapped");
    exception.frames = &frame;
    exception.frameCount = 1;
    Fake().MakeMethodThrow(kClient, "onDataCollected", exception);

    EXPECT_EQ(Send(eSample), kServerNotReached);
}

TEST_F(RefusedItemsTest, NobodyHearsOfAnItemThatWasRefused) {
    CRecordingCallback callback;
    ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
    Start();
    for (const ItemKind& kind : kItemKinds) {
        if (kind.method) {
            MakeThrow(kind, "no way");
            EXPECT_EQ(Send(kind), E_FAIL) << kind.name;
        }
    }

    EXPECT_EQ(callback.Told(), CRecordingCallback::Reports{});
    EXPECT_EQ(Host().Record().CountCalls("Services: GetHostObject(IActionExecutor)"), 0);

    EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &callback), S_OK);
}

/// The same results where the host has no logger.
class UnloggedItemsTest : public CItemFixture {
protected:
    void SetUp() override {
        CItemFixture::SetUp();
        Host().Services().Set(IHostLogger::kId, nullptr);
        Start();
    }
    void TearDown() override {
        EXPECT_EQ(Logged(), Texts{});
        EXPECT_EQ(Host().Record().CountCalls("IUserSessionInfo::get_userLabel"), 0) << "there is no line to put it in";
        CItemFixture::TearDown();
    }
};

TEST_F(UnloggedItemsTest, ItemsAreSent) {
    for (const ItemKind& kind : kItemKinds) {
        Forget();
        RefuseIdentities(E_ACCESSDENIED);

        EXPECT_EQ(Send(kind), E_ACCESSDENIED) << kind.name;

        EXPECT_EQ(SentCalls().size(), kind.method ? 1U : 0U) << kind.name;
    }
}

TEST_F(UnloggedItemsTest, ItemsAreRefused) {
    for (const ItemKind& kind : kItemKinds) {
        if (!kind.method) {
            continue;
        }
        MakeThrow(kind, "no way");
        EXPECT_EQ(Send(kind), E_FAIL) << kind.name;
        MakeThrow(kind, "java.rmi.ConnectException: refused");
        EXPECT_EQ(Send(kind), kServerNotReached) << kind.name;
        if (kind.isAnswered && kind.type != eTraceRoute) {
            Fake().MakeMethodReturnText(kClient, kind.method, "act");
            Fake().Fail("GetStringChars", 1);
            EXPECT_EQ(Send(kind), E_FAIL) << kind.name;
        }
    }
}

TEST_F(UnloggedItemsTest, ItemsThatCannotBeConvertedFail) {
    Host().Record().Fail("Data: GetProperty(metadata)", 1, E_ACCESSDENIED);
    EXPECT_EQ(Send(eTraceRoute), E_ACCESSDENIED);
    Host().Record().Fail("Data: GetProperty(metrics)", 1, E_ACCESSDENIED);
    EXPECT_EQ(Send(eExtendedData), E_ACCESSDENIED);
    Fake().MakeMethodThrow(Binding::HashMap::kClass, "<init>", Exception("no map"));
    EXPECT_EQ(Send(eTraceRoute), E_FAIL);
    EXPECT_EQ(Send(eExtendedData), E_FAIL);
    Fake().MakeMethodThrow(Binding::BaseSample::kClass, "<init>", Exception("no sample"));
    EXPECT_EQ(Send(eSample), E_FAIL);
    Fake().MakeMethodThrow(Binding::DesktopInformation::kClass, "<init>", Exception("no desktop"));
    EXPECT_EQ(Send(kDesktopPoll), S_OK);
    Fake().MakeMethodThrow(Binding::BaseUserSession::kClass, "<init>", Exception("no session"));
    EXPECT_EQ(Send(eUserSessionLogon), S_OK);

    EXPECT_EQ(SentCalls(), Calls{});
}

TEST_F(UnloggedItemsTest, AnswersThatNobodyTakesFail) {
    for (const ItemKind& kind : kItemKinds) {
        if (kind.isAnswered) {
            Fake().MakeMethodReturnText(kClient, kind.method, "act");
        }
    }

    EXPECT_EQ(Send(eStartup), E_FAIL);
    EXPECT_EQ(Send(eUserSessionLogon), E_FAIL);
    Host().Actions().SetResult(E_ACCESSDENIED);
    EXPECT_EQ(Send(eSample), E_ACCESSDENIED);
    Host().Services().Set(IActionExecutor::kId, nullptr);
    EXPECT_EQ(Send(kDesktopPoll), E_POINTER);
    Host().Services().SetResult(IActionExecutor::kId, E_UNEXPECTED);
    EXPECT_EQ(Send(eExtendedData), E_UNEXPECTED);
}

}  // namespace
