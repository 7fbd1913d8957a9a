// The manager's life: made, begun with the first item, pointed at another server, ended; and who hears its answers.

#include "CFaultedTest.h"
#include "CPrivateClasses.h"
#include "CUnloadedObject.h"
#include "HostInterface.h"

namespace {

class ManagerFaultsTest : public CFaultedTest {
protected:
    /// A text that lies on the process heap when it is copied.
    const std::wstring m_longText{std::wstring(200, L'x')};
};

/// What lives from the library's load to its unload.
struct Statics {
    CThreadSlots slots;
    CRMICommManagerFacade manager{slots};
};

TEST_F(ManagerFaultsTest, TheLibraryIsLoadedOrNot) {
    EndManager();
    SweepAll("load", [&](CFaultRound& round) {
        boost::on_thread_exit();
        const Held held = CountHeld();

        const FaultOutcome loaded = round.Run([] {
            const CUnloadedObject<Statics> statics;
            return statics.IsMade() ? S_OK : E_FAIL;
        });

        ExpectLawfulEnd(round, loaded, S_OK);
        EXPECT_FALSE(loaded.IsThrown()) << round << ": the loader would meet it";
        boost::on_thread_exit();
        ExpectNothingLeft(round, held);
    });
}

TEST_F(ManagerFaultsTest, GetInstanceDependsOnNothing) {
    SweepAll("GetInstance", [&](CFaultRound& round) {
        CRMICommManager* instance = nullptr;
        const FaultOutcome got = round.Run([&] {
            instance = &CRMICommManager::GetInstance();
            return S_OK;
        });

        EXPECT_EQ(instance, &CRMICommManager::GetInstance()) << round;
        EXPECT_FALSE(round.HasFired()) << round;
        ExpectLawfulEnd(round, got, S_OK);
    });
}

TEST_F(ManagerFaultsTest, ACallbackIsRegisteredOrNot) {
    SweepAll("RegisterDataDumpCallback", [&](CFaultRound& round) {
        EndManager();
        const Held held = CountHeld();
        MakeManager();

        const FaultOutcome registered = round.Run(
            [&] { return Manager().RegisterDataDumpCallback(m_longText.c_str(), kToken, kCertificate, &m_callback); });

        ExpectLawfulEnd(round, registered, S_OK);
        EXPECT_EQ(m_callback.CountReferences(), registered.IsThrown() ? 0 : 1) << round;
        EXPECT_EQ(Manager().UnregisterDataDumpCallback(m_longText.c_str(), kToken, kCertificate, &m_callback), S_OK);
        EXPECT_EQ(m_callback.CountReferences(), 0) << round;
        EndManager();
        ExpectNothingLeft(round, held);
    });
}

TEST_F(ManagerFaultsTest, ACallbackIsUnregisteredOrNot) {
    SweepAll("UnregisterDataDumpCallback", [&](CFaultRound& round) {
        EXPECT_EQ(Manager().RegisterDataDumpCallback(m_longText.c_str(), kToken, kCertificate, &m_callback), S_OK);
        const Held held = CountHeld();

        const FaultOutcome unregistered = round.Run([&] {
            return Manager().UnregisterDataDumpCallback(m_longText.c_str(), kToken, kCertificate, &m_callback);
        });

        ExpectLawfulEnd(round, unregistered, S_OK);
        EXPECT_EQ(m_callback.CountReferences(), unregistered.IsThrown() ? 1 : 0) << round;
        EXPECT_EQ(Manager().UnregisterDataDumpCallback(m_longText.c_str(), kToken, kCertificate, &m_callback), S_OK);
        EXPECT_EQ(m_callback.CountReferences(), 0) << round;
        ExpectNothingLeft(round, held);
    });
}

TEST_F(ManagerFaultsTest, TheFirstItemBeginsOrTheManagerStaysFailed) {
    MakeManager();
    ASSERT_EQ(Send(kNamelessKind), S_OK);
    const Calls whole = JavaCalls();
    SweepAll("DumpData, first", [&](CFaultRound& round) {
        MakeManager();
        EndManager();
        Held held = CountHeld();
        MakeManager();
        Forget();

        const FaultOutcome sent = round.Run([&] { return Send(kNamelessKind); });

        ExpectLawfulEnd(round, sent, S_OK);
        ExpectTold(round, sent, S_OK, whole);
        const ManagerState state = GetState();
        EXPECT_TRUE(state != ManagerState::eNotInitialised || sent.IsThrown()) << round;
        EXPECT_EQ(Send(kNamelessKind), state == ManagerState::eInitFailed ? E_FAIL : S_OK) << round << ": the next one";
        EndManager();
        if (state == ManagerState::eInitFailed) {
            held.globals = Fake().GetGlobalReferences();  // of a machine that is given up: no Java is called any more
        }
        ExpectNothingLeft(round, held);
        MakeManager();
        Forget();
        EXPECT_EQ(Send(kNamelessKind), S_OK) << round << ": a new manager's";
        EXPECT_EQ(JavaCalls(), whole) << round << ": a new manager's";
    });
}

TEST_F(ManagerFaultsTest, TheHostsInterfacesAreRegisteredOrAskedForAllTheSame) {
    const CPrivateClasses classes;
    const auto runRound = [&](CFaultRound& round) {
        MakeManager();
        classes.Clear();
        Forget();
        const Held held = CountHeld();

        const FaultOutcome registered = round.Run([&] {
            Microsoft::WRL::ComPtr<ISystemInfo> systemInfo;
            return RequireHostInterface(systemInfo);
        });

        ExpectLawfulEnd(round, registered, S_OK);
        ExpectNothingLeft(round, held);
    };
    for (const SystemGroup group : {SystemGroup::eComMemory, SystemGroup::eSystem}) {
        CSystemFaults faults(group);
        SweepFaults("registration of an interface", faults, runRound);
    }
}

TEST_F(ManagerFaultsTest, TheServerIsSwitchedToOrStaysToBeSwitchedTo) {
    constexpr const wchar_t* kUrls[] = {kUrl, L"rmi://two"};
    Calls wholes[2];
    std::size_t current = 0;
    StartManager();
    for (int i = 0; i < 2; ++i) {
        current = 1 - current;
        Forget();
        ASSERT_EQ(Send(kNamelessKind, kUrls[current]), S_OK);
        wholes[current] = JavaCalls();
        ASSERT_EQ(wholes[current].size(), 2U);
    }
    SweepAll("DumpData, other server", [&](CFaultRound& round) {
        current = 1 - current;
        const Calls& whole = wholes[current];
        Forget();
        const Held held = CountHeld();

        const FaultOutcome sent = round.Run([&] { return Send(kNamelessKind, kUrls[current]); });

        ExpectLawfulEnd(round, sent, S_OK);
        ExpectTold(round, sent, S_OK, whole);
        ExpectNothingLeft(round, held);
        const bool isSwitched = JavaCalls() == whole;
        Forget();
        EXPECT_EQ(Send(kNamelessKind, kUrls[current]), S_OK) << round << ": the next one";
        EXPECT_TRUE(JavaCalls() == whole || (isSwitched && JavaCalls().empty())) << round << ": the next one";
    });
}

TEST_F(ManagerFaultsTest, AnotherThreadIsAttachedOrIsToBeAttachedYet) {
    StartManager();
    Forget();
    ASSERT_EQ(Send(eUserSessionReconnect), S_OK);
    const Calls whole = JavaCalls();
    SweepAll("DumpData, another thread", [&](CFaultRound& round) {
        Forget();
        const Held held = CountHeld();

        RunOnNewThread([&] {
            const FaultOutcome sent = round.Run([&] { return Send(eUserSessionReconnect); });

            ExpectLawfulEnd(round, sent, S_OK);
            ExpectTold(round, sent, S_OK, whole);
            Forget();
            EXPECT_EQ(Send(eUserSessionReconnect), S_OK) << round << ": the next one";
            EXPECT_EQ(JavaCalls(), whole) << round << ": the next one";
        });
        ExpectNothingLeft(round, held);
    });
}

TEST_F(ManagerFaultsTest, AThreadsEndDetachesIt) {
    SweepAll("thread's end", [&](CFaultRound& round) {
        StartManager();
        Held held = CountHeld();

        RunOnNewThread([&] {
            EXPECT_EQ(Send(eUserSessionReconnect), S_OK) << round;
            const FaultOutcome ended = round.Run([&] {
                boost::on_thread_exit();
                return S_OK;
            });

            ExpectLawfulEnd(round, ended, S_OK);
        });

        held.attached += round.IsFirstFailed("DetachCurrentThread") ? 1 : 0;
        ExpectNothingLeft(round, held);
        RunOnNewThread([&] { EXPECT_EQ(Send(eUserSessionReconnect), S_OK) << round; });
    });
}

TEST_F(ManagerFaultsTest, TheStartingThreadsEndDisposesTheManager) {
    SweepAll("starting thread's end", [&](CFaultRound& round) {
        MakeManager();
        EndManager();
        const Held held = CountHeld();
        StartManager();
        Forget();

        const FaultOutcome ended = round.Run([&] {
            boost::on_thread_exit();
            return S_OK;
        });

        ExpectLawfulEnd(round, ended, S_OK);
        EXPECT_EQ(Send(kNamelessKind), E_FAIL) << round << ": there is no start after the end";
        EXPECT_TRUE(WasTroubleLogged()) << round;
        EndManager();
        ExpectNothingLeft(round, held);
    });
}

TEST_F(ManagerFaultsTest, TheUnloadLeavesNothing) {
    SweepAll("unload", [&](CFaultRound& round) {
        MakeManager();
        EndManager();
        const Held held = CountHeld();
        StartManager();

        const FaultOutcome ended = round.Run([&] {
            EndManager();
            return S_OK;
        });

        ExpectLawfulEnd(round, ended, S_OK);
        ExpectNothingLeft(round, held);
    });
}

}  // namespace
