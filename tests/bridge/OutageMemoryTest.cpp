// A server that fails for days must not fill the host's memory: each exception leaves nothing behind, neither in Java
// nor beside it. On the real runtime, in a process of its own.

#include "CRealManagedTest.h"
#include "JavaWitness.h"
#include "ProcessMemory.h"

namespace {

constexpr int kCalls = 50'000;
/// What the machine compiles, and how far it lets its heap grow, has settled by then.
constexpr int kCallsUntilSettled = 5'000;
constexpr long long kHeapMargin = 5'000'000;
/// Less than 100 bytes for each of the calls that are watched. Two or three times as much disappears in what the
/// machine's start left free; the texts of an exception's 40 frames alone are thousands.
constexpr long long kMemoryMargin = 4'000'000;

constexpr wchar_t kFailing[] = L"rmi://failing?forget&fail=onStartup&depth=40";
constexpr wchar_t kAnswering[] = L"rmi://back?forget&onStartup=welcome";

class OutageMemoryTest : public CRealManagedTest {
protected:
    OutageMemoryTest() : CRealManagedTest(TestPaths::kRecordingClientFolder) {}

    void Fail(int calls) {
        for (int call = 0; call < calls; ++call) {
            ASSERT_EQ(Dump(kFailing, L"", eStartup), E_FAIL) << "call " << call;
            ASSERT_EQ(Host().Log().GetEntries().size(), 1U) << "call " << call;
            if (call % 1000 == 0) {
                ExpectExceptionWithItsFrames();
            }
            Host().Log().Clear();
        }
    }

    void ExpectExceptionWithItsFrames() {
        ExpectLastError(
            L"Failed to send data with type eStartup to the message server.  "
            L"java.lang.IllegalStateException: ordered: onStartup\r\n\tcom.orvane.");
        const std::wstring text = LoggedErrors().back();
        long frames = 0;
        for (std::size_t at = text.find(L"\r\n\t"); at != std::wstring::npos; at = text.find(L"\r\n\t", at + 1)) {
            ++frames;
        }
        EXPECT_EQ(frames, 43) << "the ordered depth, and from there to the client's method";
    }
};

TEST_F(OutageMemoryTest, FiftyThousandFailingCallsLeaveNothingBehind) {
    Host().Record().SetKeepsHistory(false);
    ASSERT_EQ(m_manager->SetCurrentServerConfig(kFailing, kToken, L""), S_OK);
    GiveBackRegistry();
    Host().Log().Clear();
    Fail(kCallsUntilSettled);
    const long long heap = CountJavaHeap();
    const auto memory = static_cast<long long>(CountPrivateMemory());

    Fail(kCalls - kCallsUntilSettled);

    EXPECT_LT(CountJavaHeap(), heap + kHeapMargin);
    EXPECT_LT(static_cast<long long>(CountPrivateMemory()), memory + kMemoryMargin);
    TakeRegistry();
    EXPECT_EQ(Dump(kAnswering, L"", eStartup), S_OK) << "the first call after the outage";
    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
}

}  // namespace
