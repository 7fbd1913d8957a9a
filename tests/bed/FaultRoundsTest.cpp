#include "FaultRounds.h"

#include <stdexcept>
#include <vector>

namespace {

/// Calls of which nothing depends but these tests.
class CCountedFaults final : public CFaultSource {
public:
    [[nodiscard]] const char* GetName() const noexcept override { return "counted"; }
    void Start(long nth, bool isForEver) override {
        m_callsToFault = nth;
        m_isForEver = isForEver;
        m_fired = 0;
        m_isInForce = true;
    }
    void Stop() noexcept override { m_isInForce = false; }
    [[nodiscard]] bool HasFired() const override { return m_fired != 0; }
    [[nodiscard]] std::vector<std::string> NameFailed() const override { return {"a call"}; }
    [[nodiscard]] bool HasSaid(HRESULT result) const override { return result == E_ABORT; }

    [[nodiscard]] bool Call() {
        if (m_isInForce && (m_fired != 0 ? m_isForEver : --m_callsToFault == 0)) {
            ++m_fired;
            return false;
        }
        return true;
    }
    [[nodiscard]] bool IsInForce() const noexcept { return m_isInForce; }
    [[nodiscard]] long CountFired() const noexcept { return m_fired; }

private:
    long m_callsToFault = 0;
    bool m_isForEver = false;
    long m_fired = 0;
    bool m_isInForce = false;
};

using Numbers = std::vector<long>;

/// The loop that every fault test runs in.
class FaultRoundsTest : public testing::Test {
protected:
    CCountedFaults m_faults;
};

TEST_F(FaultRoundsTest, EachCallFailsAloneAndThenWithAllBehindIt) {
    Numbers fired;

    const FaultRoundCounts counts = FailEachCall(m_faults, [&](CFaultRound& round) {
        static_cast<void>(round.Run([&] {
            for (int i = 0; i < 3; ++i) {
                static_cast<void>(m_faults.Call());
            }
            return S_OK;
        }));
        fired.push_back(m_faults.CountFired());
    });

    EXPECT_EQ(fired, (Numbers{1, 1, 1, 0, 3, 2, 1, 0}));
    EXPECT_EQ(counts.once, 4);
    EXPECT_EQ(counts.forEver, 4);
}

TEST_F(FaultRoundsTest, AnOperationWithoutCallsRunsOneRoundEach) {
    const FaultRoundCounts counts = FailEachCall(m_faults, [&](CFaultRound& round) {
        EXPECT_EQ(round.Run([] { return S_FALSE; }).result, S_FALSE);
        EXPECT_FALSE(round.HasFired());
        EXPECT_EQ(round.NameFailed(), std::vector<std::string>{});
    });

    EXPECT_EQ(counts.once, 1);
    EXPECT_EQ(counts.forEver, 1);
}

TEST_F(FaultRoundsTest, ACallThatIsMadeAnewEachTimeItFailsEndsTheRoundsAllTheSame) {
    const FaultRoundCounts counts = FailEachCall(m_faults, [&](CFaultRound& round) {
        const FaultOutcome outcome = round.Run([&] { return m_faults.Call() || m_faults.Call() ? S_OK : E_ABORT; });

        EXPECT_EQ(outcome.result, round.HasFired() && round.IsForEver() ? E_ABORT : S_OK) << round;
    });

    EXPECT_EQ(counts.once, 2);
    EXPECT_EQ(counts.forEver, 2);
}

TEST_F(FaultRoundsTest, TheFaultIsInForceInsideTheRunAlone) {
    static_cast<void>(FailEachCall(m_faults, [&](CFaultRound& round) {
        EXPECT_FALSE(m_faults.IsInForce());
        static_cast<void>(round.Run([&] {
            EXPECT_TRUE(m_faults.IsInForce());
            return S_OK;
        }));
        EXPECT_FALSE(m_faults.IsInForce());
    }));
}

TEST_F(FaultRoundsTest, TheExceptionsThatStandForExhaustedResourcesAreOutcomes) {
    using End = FaultOutcome::End;
    CFaultRound round(m_faults, 1, false);

    const FaultOutcome badAlloc = round.Run([]() -> HRESULT { throw std::bad_alloc(); });
    EXPECT_TRUE(badAlloc.end == End::eBadAlloc && badAlloc.result == E_OUTOFMEMORY) << badAlloc;
    const FaultOutcome comError = round.Run([]() -> HRESULT { throw _com_error(E_ABORT); });
    EXPECT_TRUE(comError.end == End::eComError && comError.result == E_ABORT) << comError;
    const FaultOutcome hresult = round.Run([]() -> HRESULT { throw CHresultException(E_PENDING); });
    EXPECT_TRUE(hresult.end == End::eHresult && hresult.result == E_PENDING) << hresult;
    EXPECT_FALSE(m_faults.IsInForce());
}

TEST_F(FaultRoundsTest, AnyOtherExceptionGoesOnWithTheFaultOutOfForce) {
    CFaultRound round(m_faults, 1, false);

    EXPECT_THROW(static_cast<void>(round.Run([]() -> HRESULT { throw std::logic_error("a defect"); })),
                 std::logic_error);
    EXPECT_FALSE(m_faults.IsInForce());
}

}  // namespace
