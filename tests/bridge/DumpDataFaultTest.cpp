#include "CHostFaults.h"
#include "DumpDataFixture.h"

namespace {

/// A start-up that the host lets down: which failures end the item, and with which result. That each leaves nothing
/// behind is proved for every kind of item in tests/faults.
class DumpDataFaultTest : public CDumpDataFixture {
protected:
    void SetUp() override {
        CDumpDataFixture::SetUp();
        Start();
    }

    /// Of the calls that a start-up makes, those whose failure takes nothing away from it.
    static bool IsDispensable(const std::string& call) {
        return call.find("Refresh") != std::string::npos || IsBehindTheIdentities(call);
    }
    static bool IsBehindTheIdentities(const std::string& call) {
        return call.find("get_machineName") != std::string::npos || call.find("get_isDesktop") != std::string::npos ||
               call.find("GetProperty") != std::string::npos;
    }
};

TEST_F(DumpDataFaultTest, EachCallOfTheHostsEndsTheItemWithItsResultOrTakesNothingAway) {
    CHostFaults faults(Host());

    const FaultRoundCounts counts = FailEachCall(faults, [&](CFaultRound& round) {
        const FaultOutcome sent = round.Run([&] { return Dump(eStartup); });

        const std::string failed = round.HasFired() ? round.NameFailed().front() : "GetProperty";
        const bool isWhole = round.IsForEver() ? IsBehindTheIdentities(failed) : IsDispensable(failed);
        EXPECT_FALSE(sent.IsThrown()) << round;
        EXPECT_EQ(sent.result, isWhole ? S_OK : CHostFaults::kRefusal) << round;
        EXPECT_EQ(Dump(eStartup), S_OK) << round << ": the next one";
    });

    EXPECT_EQ(counts.once, 9) << "eight calls";
    EXPECT_EQ(counts.forEver, 9) << "eight calls";
}

}  // namespace
