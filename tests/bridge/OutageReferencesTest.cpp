#include "ItemFixture.h"

namespace {

/// A server that stays away for long, while the host goes on and on.
class OutageTest : public CItemFixture {};

TEST_F(OutageTest, ItCostsNoReferences) {
    constexpr long kItems = OUTAGE_ITEMS;
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
