// A server that is gone for long must not fill the host's memory, and is called again as soon as it is back.

#include "CRoadTest.h"
#include "DataType.h"
#include "JavaWitness.h"
#include "ProcessMemory.h"

namespace {

constexpr int kCalls = 500;
/// What the machine loads and compiles for a refused connection has settled by then.
constexpr int kCallsUntilSettled = 100;
constexpr long long kHeapMargin = 5'000'000;
/// 10 KB for each of the calls that are watched.
constexpr long long kMemoryMargin = 4'000'000;

class OutageRoadTest : public CRoadTest {
protected:
    void FindGone(const CMessageServer& server, int calls) {
        for (int call = 0; call < calls; ++call) {
            ASSERT_EQ(Dump(server, eStartup), kServerNotReached) << "call " << call;
            ExpectLastError(
                L"Failed to send data with type eStartup to the message server.  java.rmi.ConnectException: ");
            Host().Log().Clear();
        }
    }
};

TEST_F(OutageRoadTest, FiveHundredCallsToAServerThatIsGoneLeaveNothingBehind) {
    Host().Record().SetKeepsHistory(false);
    CMessageServer server("server", Way::ePlain, {"--answer", "onStartup=welcome"});
    ASSERT_EQ(Dump(server, eStartup), S_OK);
    GiveBackRegistry();
    server.Stop();
    FindGone(server, kCallsUntilSettled);
    const long long heap = CountJavaHeap();
    const auto memory = static_cast<long long>(CountPrivateMemory());

    FindGone(server, kCalls - kCallsUntilSettled);

    EXPECT_LT(CountJavaHeap(), heap + kHeapMargin);
    EXPECT_LT(static_cast<long long>(CountPrivateMemory()), memory + kMemoryMargin);
    server.StartAgain({"--answer", "onStartup=back"});
    EXPECT_EQ(Dump(server, eStartup), S_OK) << "the first call after the outage";
    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}, {eStartup, L"back"}}));
}

}  // namespace
