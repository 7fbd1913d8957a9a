// Registrations that come and go, with Java running and answers heard in between.

#include "CRealAccountsTest.h"

namespace {

constexpr wchar_t kAnswering[] = L"rmi://server?forget&onStartup=welcome";

class CallbackAccountsTest : public CRealAccountsTest {};

TEST_F(CallbackAccountsTest, RegistrationsThatEndLeaveNothingBehind) {
    CRecordingCallback callback;
    StartWith(kAnswering);

    ExpectNothingLeftBehind(
        {"callback registered and unregistered", kCalls,
         [&] {
             EXPECT_EQ(m_manager->RegisterDataDumpCallback(kAnswering, kToken, L"", &callback), S_OK);
             EXPECT_EQ(callback.CountReferences(), 1);
             EXPECT_EQ(Dump(kAnswering, L"", eStartup), S_OK);
             EXPECT_EQ(callback.Told(), (Reports{{eStartup, L"welcome"}}));
             EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kAnswering, kToken, L"", &callback), S_OK);
             ASSERT_EQ(callback.CountReferences(), 0);
             callback.Clear();
         },
         &EmptyJavaHeap});
}

}  // namespace
