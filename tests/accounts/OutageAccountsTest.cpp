// A server that fails for days must not fill the host's memory: each exception, with its frames, leaves nothing behind,
// neither in Java nor beside it. On the real runtime, in a process of its own.

#include "CRealAccountsTest.h"

namespace {

constexpr wchar_t kFailing[] = L"rmi://failing?forget&fail=onStartup&depth=40";
constexpr wchar_t kAnswering[] = L"rmi://back?forget&onStartup=welcome";

class OutageAccountsTest : public CRealAccountsTest {
protected:
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

    void Fail() {
        const HRESULT result = Dump(kFailing, L"", eStartup);
        if (m_failed++ % 1'000 == 0) {
            ExpectExceptionWithItsFrames();
        }
        ASSERT_EQ(TakeOutcome(result), (Outcome{E_FAIL, 1, 0, 0}));
    }

private:
    int m_failed = 0;
};

TEST_F(OutageAccountsTest, ManyExceptionsOfFortyFramesLeaveNothingBehind) {
    StartWith(kFailing);

    ExpectNothingLeftBehind({"outage: eStartup", 5 * kCalls, [&] { Fail(); }, &EmptyJavaHeap});

    TakeRegistry();
    EXPECT_EQ(Dump(kAnswering, L"", eStartup), S_OK) << "the first call after the outage";
    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
}

}  // namespace
