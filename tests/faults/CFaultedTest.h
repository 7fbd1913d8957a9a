#pragma once

#include <algorithm>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CFakeBridgeTest.h"
#include "CFailingCallback.h"
#include "CJniFaults.h"
#include "CRMICommManagerFacade.h"
#include "CRMICommManagerImpl.h"
#include "FaultSweep.h"
#include "ItemFixture.h"
#include "KeptQuiet.h"
#include "RunOnNewThread.h"

/// What is held of Java, of the host and of the system at a moment.
struct Held {
    long globals;
    long locals;
    long frames;
    long pinned;
    long attached;
    long misuses;
    bool isExceptionPending;
    std::string host;
    ResourceCounts resources;

    friend bool operator==(const Held& left, const Held& right) {
        const auto fields = [](const Held& h) {
            return std::tie(h.globals, h.locals, h.frames, h.pinned, h.attached, h.misuses, h.isExceptionPending,
                            h.host, h.resources);
        };
        return fields(left) == fields(right);
    }
    friend std::ostream& operator<<(std::ostream& out, const Held& held) {
        return out << held.globals << " global and " << held.locals << " local references, " << held.frames
                   << " frames, " << held.pinned << " pinned strings, " << held.attached << " attached threads, "
                   << held.misuses << " broken rules, " << (held.isExceptionPending ? "an" : "no")
                   << " exception pending; " << held.host << held.resources;
    }
};

/// Fixture with the exported manager between a whole host and the fake runtime: every kind of item has its data, every
/// answer somebody who takes it.
class CFaultedTest : public CFakeBridgeTest {
protected:
    using Calls = std::vector<std::string>;

    static constexpr const char* kClient = Binding::DesktopMessageClient::kClass;

    void SetUp() override {
        CFakeBridgeTest::SetUp();
        Registry().SetAgentText(L"ConfigDirectory", L"C:\\Config");
        Registry().SetAgentText(L"LogDirectory", L"C:\\Logs");
        Registry().SetAgentText(L"ClassPath", TestPaths::kContractFolder);
        SystemData system = MakeItemSystem();
        system.componentsIdentities.properties.push_back({L"Calderin", MakeText(L"component 7")});
        SetSystem(std::move(system));
        Host().Services().Set(ISessionCollection::kId,
                              MakeSessionCollection(Host().ShareRecord(), {MakeItemSession()}).Get());
        m_callback.SetRecord(Host().ShareRecord());
        m_data = MakeDataObject(Host().ShareRecord(), MakeItemData(Host().ShareRecord()));
        MakeManager();
    }

    void TearDown() override {
        MakeManager();
        EndManager();
        EXPECT_EQ(m_callback.CountReferences(), 0);
        m_callback.SetRecord(nullptr);
        m_data.Reset();
        CFakeBridgeTest::TearDown();
    }

    /// A new manager, which has not begun, on a runtime that knows of nothing.
    void MakeManager() {
        EndManager();
        ASSERT_EQ(Fake().GetMisuseCount(), 0) << Fake().GetMisuse(0);
        Fake().Reset();
        for (const ItemKind& kind : kItemKinds) {
            if (kind.isAnswered) {
                Fake().MakeMethodReturnText(kClient, kind.method, "act");
            }
        }
        m_manager = std::make_unique<CRMICommManagerFacade>(Slots());
    }
    void EndManager() {
        m_manager.reset();
        boost::on_thread_exit();
    }
    /// The same, begun, and with somebody to hear answers.
    void StartManager() {
        MakeManager();
        ASSERT_EQ(Manager().RegisterDataDumpCallback(kUrl, kToken, kCertificate, &m_callback), S_OK);
        ASSERT_EQ(Send(kNamelessKind), S_OK);
    }

    [[nodiscard]] CRMICommManager& Manager() { return *m_manager; }
    [[nodiscard]] ManagerState GetState() {
        return m_manager->HasImpl() ? m_manager->GetImpl().GetState() : ManagerState::eNotInitialised;
    }

    long Send(unsigned char type, const wchar_t* url = kUrl) {
        return Manager().DumpData<IUnknown>(url, kToken, kCertificate, 1, type, m_data.Get());
    }

    [[nodiscard]] Held CountHeld() {
        return {Fake().GetGlobalReferences(),
                Fake().GetLocalReferences(),
                Fake().GetOpenFrames(),
                Fake().GetPinnedStrings(),
                Fake().GetAttachedThreads(),
                Fake().GetMisuseCount() + static_cast<long>(Host().Record().GetViolations().size()),
                Fake().IsExceptionPending(),
                Host().Record().DescribeLeftovers(),
                CResourceLedger::Get().Count()};
    }

    /// After a round nothing more is held than before, no lock either.
    void ExpectNothingLeft(const CFaultRound& round, Held expected) {
        const Held now = CountHeld();
        if (round.IsFirstFailed("PushLocalFrame")) {
            // Without its frame the thread keeps a reference to each exception that was read.
            EXPECT_LE(now.locals, expected.locals + Fake().GetCallCount("ExceptionOccurred") - m_exceptionsAsked)
                << round;
            expected.locals = now.locals;
        }
        EXPECT_EQ(now, expected) << round;
    }

    /// Without a logger the operation fails. With one, a failure and a success that is not `whole` were told to it, but
    /// for what is told to nobody. Memory is different: its exhaustion leaves as an exception, and the host's own
    /// operations have none, either.
    void ExpectTold(const CFaultRound& round, const FaultOutcome& outcome, HRESULT undisturbed, const Calls& whole) {
        const bool isWhole = outcome.result == undisturbed && IsWhole(round, whole);
        if (isWhole || outcome.IsThrown() || round.GetSource().IsOfMemory()) {
            return;
        }
        if (Host().Record().CountReferences(IHostLogger::kId) <= kHostsLoggers) {
            EXPECT_TRUE(FAILED(outcome.result)) << round << ": " << outcome;
        } else {
            const std::vector<std::string> failed = round.NameFailed();
            EXPECT_TRUE(WasTroubleLogged() || std::any_of(failed.begin(), failed.end(), IsKeptQuiet))
                << round << ": " << outcome;
        }
    }

    /// Forgets what Java and the host were called for.
    void Forget() {
        m_exceptionsAsked = Fake().GetCallCount("ExceptionOccurred");
        m_firstCall = Fake().GetMethodLogSize();
        Host().Record().ClearCalls();
        Host().Log().Clear();
    }
    /// What Java was called for since, exceptions apart.
    [[nodiscard]] Calls JavaCalls() const { return MethodCalls(m_firstCall); }
    /// Whether the host's logger was told of trouble since; a host that fails may have kept nothing of it.
    [[nodiscard]] bool WasTroubleLogged() {
        return Host().Record().CountCalls("IHostLogger::LogError") +
                   Host().Record().CountCalls("IHostLogger::LogWarning") !=
               0;
    }

    /// Every kind of thing that the operation depends on, call by call. In the end another thread may call.
    template <typename RunRound>
    void SweepAll(const std::string& operation, const RunRound& runRound) {
        CJniFaults jniFaults;
        SweepFaults(operation, jniFaults, runRound);
        CMachineFaults machineFaults;
        SweepFaults(operation, machineFaults, runRound);
        SweepHostAndSystem(operation, Host(), runRound);
        if (m_manager) {
            RunOnNewThread([&] {
                EXPECT_EQ(Manager().UnregisterDataDumpCallback(L"nobody's", nullptr, nullptr, &m_callback), S_OK);
            });
        }
    }

    CFailingCallback m_callback;

private:
    /// The host's references to its logger.
    static constexpr long kHostsLoggers = 1;

    /// Nobody asks whether Java took an entry of a map: where it did not, that entry is missing.
    [[nodiscard]] bool IsWhole(const CFaultRound& round, const Calls& whole) const {
        const Calls calls = JavaCalls();
        return calls == whole || (round.IsFirstFailed("CallObjectMethodV") && WithoutPuts(calls) == WithoutPuts(whole));
    }
    [[nodiscard]] static Calls WithoutPuts(Calls calls) {
        calls.erase(std::remove_if(calls.begin(), calls.end(),
                                   [](const std::string& call) { return call.rfind("HashMap.put(", 0) == 0; }),
                    calls.end());
        return calls;
    }

    std::unique_ptr<CRMICommManagerFacade> m_manager;
    CHostReference<IUnknown> m_data;
    long m_firstCall = 0;
    long m_exceptionsAsked = 0;
};
