#include <comdef.h>

#include <algorithm>
#include <iterator>
#include <new>

#include "CAllocationFault.h"
#include "CHresultException.h"
#include "CRecordingCallback.h"
#include "ItemFixture.h"

namespace {

/// What may fail on each kind's way, and wherever. Each answer finds somebody who takes it.
class ItemFaultsTest : public CItemFixture {
protected:
    void SetUp() override {
        CItemFixture::SetUp();
        for (const ItemKind& kind : kItemKinds) {
            if (kind.isAnswered) {
                Fake().MakeMethodReturnText(kClient, kind.method, "act");
            }
        }
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &m_callback), S_OK);
        Start();
        m_globals = Fake().GetGlobalReferences();
        m_held = Host().Record().DescribeLeftovers();
    }

    void TearDown() override {
        EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &m_callback), S_OK);
        CItemFixture::TearDown();
    }

    /// Nothing is left of a call in which something failed, and the next one goes well.
    void ExpectNothingLeft(const ItemKind& kind, long nth) {
        EXPECT_FALSE(Fake().IsExceptionPending()) << kind.name << nth;
        EXPECT_EQ(Fake().GetLocalReferences(), 0) << kind.name << nth;
        EXPECT_EQ(Fake().GetGlobalReferences(), m_globals) << kind.name << nth;
        EXPECT_EQ(Fake().GetOpenFrames(), 0) << kind.name << nth;
        EXPECT_EQ(Fake().GetPinnedStrings(), 0) << kind.name << nth;
        EXPECT_EQ(Host().Record().DescribeLeftovers(), m_held) << kind.name << nth;
        Forget();
        EXPECT_EQ(Send(kind), S_OK) << kind.name << nth;
        EXPECT_EQ(SentCalls().size(), kind.method ? 1U : 0U) << kind.name << nth;
        Forget();
    }

    /// Sends each kind with its 1st, 2nd, 3rd ... call of JNI's failing until none does.
    void FailJni(long first, long times) {
        for (const ItemKind& kind : kItemKinds) {
            long fired = 1;
            for (long nth = first; fired != 0; ++nth) {
                Fake().Fail("*", nth, times);

                const long sent = Send(kind);

                fired = Fake().GetFaultsFired();
                Fake().ClearFaults();
                EXPECT_TRUE(sent == S_OK || (fired != 0 && sent == E_FAIL)) << kind.name << nth << ' ' << sent;
                EXPECT_LE(SentCalls().size(), kind.method ? 1U : 0U) << kind.name << nth;
                // Success without a word to Java or the log is a success of nothing.
                EXPECT_TRUE(sent != S_OK || !kind.method || !SentCalls().empty() || !LoggedSinceStart().empty())
                    << kind.name << nth;
                ExpectNothingLeft(kind, nth);
            }
        }
    }

    CRecordingCallback m_callback;

private:
    long m_globals = 0;
    std::string m_held;
};

TEST_F(ItemFaultsTest, EachCallOfJnisMayFail) {
    FailJni(1, 1);
}

TEST_F(ItemFaultsTest, EachCallOfJnisMayFailForEver) {
    // From the second on: the first is the frame, without which the exception's reference stays to the thread's end.
    FailJni(2, -1);
}

TEST_F(ItemFaultsTest, EachCallOfTheHostsMayFail) {
    for (const ItemKind& kind : kItemKinds) {
        const bool takesDesktop =
            std::find(std::begin(kDesktopKinds), std::end(kDesktopKinds), kind.type) != std::end(kDesktopKinds);
        long thrown = 0;
        bool hasFired = true;
        for (long nth = 1; hasFired; ++nth) {
            const long firedBefore = Host().Record().CountFiredFaults();
            Host().Record().Fail("*", nth, E_ACCESSDENIED);

            try {
                const long sent = Send(kind);

                hasFired = Host().Record().CountFiredFaults() != firedBefore;
                EXPECT_TRUE(sent == S_OK || (hasFired && (sent == E_FAIL || sent == E_ACCESSDENIED)))
                    << kind.name << nth << ' ' << sent;
                EXPECT_TRUE(sent != S_OK || hasFired || !kind.method || SentCalls().size() == 1) << kind.name << nth;
            } catch (const CHresultException& failure) {
                ++thrown;
                EXPECT_EQ(failure.GetResult(), E_INVALIDARG) << kind.name << nth;
                EXPECT_EQ(SentCalls(), Calls{}) << kind.name << nth;
            }
            Host().Record().ClearFaults();
            ExpectNothingLeft(kind, nth);
        }
        EXPECT_EQ(thrown, takesDesktop ? 1 : 0) << kind.name << ": the adapters that were not to be had";
    }
}

TEST_F(ItemFaultsTest, EachAllocationMayFail) {
    for (const ItemKind& kind : kItemKinds) {
        bool hasFired = true;
        for (long nth = 1; hasFired; ++nth) {
            {
                const CAllocationFault fault(nth);
                try {
                    const long sent = Send(kind);
                    // The host's own allocations fail as well, and take with them what hangs on them.
                    EXPECT_TRUE(sent == S_OK || (fault.HasFired() && (sent == E_OUTOFMEMORY || sent == E_FAIL)))
                        << kind.name << nth << ' ' << sent;
                } catch (const std::bad_alloc&) {
                    EXPECT_TRUE(fault.HasFired()) << kind.name << nth;
                } catch (const _com_error& failure) {
                    EXPECT_TRUE(fault.HasFired() && failure.Error() == E_OUTOFMEMORY) << kind.name << nth;
                } catch (const CHresultException& failure) {
                    EXPECT_TRUE(fault.HasFired()) << kind.name << nth;
                    EXPECT_TRUE(failure.GetResult() == E_OUTOFMEMORY || failure.GetResult() == E_INVALIDARG)
                        << kind.name << nth << ": the latter of adapters that the host had no memory for";
                }
                hasFired = fault.HasFired();
            }
            ExpectNothingLeft(kind, nth);
        }
    }
}

/// A server that stays away for long, while the host goes on and on.
class OutageTest : public CItemFixture {};

TEST_F(OutageTest, ItCostsNoReferences) {
    constexpr long kItems = 50'000;
    constexpr long kItemsPerLog = 500;
    constexpr long kMostReferences = 300;
    const std::vector<FakeFrame> frames(40, FakeFrame{"com.orvane.kelbrin.Source.method(Source.java:1)"});
    FakeException exception = Exception("java.rmi.ConnectException: refused");
    exception.frames = frames.data();
    exception.frameCount = static_cast<long>(frames.size());
    constexpr unsigned char kTypes[] = {eUserSessionReconnect, kDesktopPoll};
    for (const char* const method : {"onUserReconnect", "onDesktopPoll"}) {
        Fake().MakeMethodThrow(kClient, method, exception);
    }
    Start();
    const long globals = Fake().GetGlobalReferences();
    Fake().SetCallLogEnabled(false);
    Host().Record().SetKeepsHistory(false);

    long refused = 0;
    for (long item = 0; item < kItems; ++item) {
        refused += Send(kTypes[item % 2]) == kServerNotReached ? 1 : 0;
        if (item % kItemsPerLog == 0) {
            Host().Log().Clear();
        }
    }

    EXPECT_EQ(refused, kItems);
    EXPECT_LT(Fake().GetPeakLocalReferences(), kMostReferences);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
    EXPECT_EQ(Fake().GetGlobalReferences(), globals);
    EXPECT_LE(Fake().GetPeakGlobalReferences(), globals + 4);
}

}  // namespace
