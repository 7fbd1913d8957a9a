#pragma once

#include <algorithm>
#include <string>

#include "CRealManagedTest.h"
#include "HostQuantities.h"
#include "ItemData.h"
#include "JavaQuantities.h"
#include "ProcessQuantities.h"
#include "WatchedRun.h"

/// Fixture for calls that are made over and over: the real Java runtime with the recording client, and a host with
/// data for every kind of item, neither of which keeps what it was told.
///
/// For exact counts of the blocks and threads that the machine and the product take from the same heaps, the machine
/// has to keep still: it interprets (a compilation takes memory of its own when it comes to it), collects with its
/// simplest collector (the others start threads when they come to it), has its whole heap from the start, and keeps for
/// good what it could give up some day (it does so by the clock, classes included).
class CRealAccountsTest : public CRealManagedTest {
protected:
    /// What one call came to.
    struct Outcome {
        HRESULT result;
        long errors;    ///< logged
        long told;      ///< answers that the callback heard
        long executed;  ///< answers that the executor got

        friend bool operator==(const Outcome& left, const Outcome& right) {
            return left.result == right.result && left.errors == right.errors && left.told == right.told &&
                   left.executed == right.executed;
        }
        friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
            return out << std::hex << outcome.result << std::dec << ", " << outcome.errors << " errors, "
                       << outcome.told << " told, " << outcome.executed << " executed";
        }
    };

    CRealAccountsTest() : CRealManagedTest(TestPaths::kRecordingClientFolder) {}

    void SetUp() override {
        CRealManagedTest::SetUp();
        Host().Record().SetKeepsHistory(false);
        SetSystem(MakeItemSystem());
        Host().Services().Set(ISessionCollection::kId,
                              MakeSessionCollection(Host().ShareRecord(), {MakeItemSession()}).Get());
        m_data = MakeDataObject(Host().ShareRecord(), MakeItemData(Host().ShareRecord()));
    }
    void TearDown() override {
        m_data.Reset();
        CRealManagedTest::TearDown();
    }

    /// Starts Java and points the client at this server; other tests can start theirs then.
    void StartWith(const std::wstring& url) {
        ASSERT_EQ(m_manager->SetCurrentServerConfig(url.c_str(), kToken, L""), S_OK);
        GiveBackRegistry();
        TakeOutcome(S_OK);
    }

    /// With what was logged, told and executed since it was asked last, which is forgotten.
    Outcome TakeOutcome(HRESULT result) {
        const std::vector<HostLogEntry> entries = Host().Log().GetEntries();
        const auto errors = std::count_if(entries.begin(), entries.end(), [](const HostLogEntry& entry) {
            return entry.level == HostLogLevel::eError;
        });
        const Outcome outcome{result, static_cast<long>(errors), static_cast<long>(m_callback.Told().size()),
                              static_cast<long>(Host().Actions().GetEntries().size())};
        Host().Log().Clear();
        m_callback.Clear();
        Host().Actions().Clear();
        return outcome;
    }

    void ExpectNothingLeftBehind(const WatchedRun& run) {
        CAccounts accounts(MakeJavaQuantities(kHeapMarginPerCall * run.calls));
        accounts.Add(MakeHostQuantities(Host().Record()));
        accounts.Add({{"references to the callback", [this] { return m_callback.CountReferences(); }}});
        accounts.Add(MakeProcessQuantities());
        accounts.Add({MakeMemoryQuantity(kMemoryMarginPerCall * run.calls)});
        ::ExpectNothingLeftBehind(accounts, run);
    }

    /// Empties Java's heap. A collection in the middle of a call makes the machine remember what the frames on the
    /// stack look like, in blocks of its own for each place where it happens; so none is to happen there.
    static void EmptyJavaHeap() { static_cast<void>(CountJavaHeap()); }

    CHostReference<IUnknown> m_data;
};
