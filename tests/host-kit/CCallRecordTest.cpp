#include "CCallRecord.h"

#include <thread>

#include "CAllocationFault.h"
#include "HostKitFixture.h"
#include "RunOnNewThread.h"

namespace {

using testing::ElementsAre;

class CCallRecordTest : public CHostKitTest {
protected:
    CHostReference<IUserSessionInfo> m_session = MakeUserSession(m_record, {3, L"S-1-5", L"anna"});
    CHostReference<ISystemInfo> m_system = MakeSystemInfo(m_record, {L"box", L"box.test"});

    void TearDown() override {
        m_session.Reset();
        m_system.Reset();
        CHostKitTest::TearDown();
    }

    [[nodiscard]] std::string ReadSid() { return Read(m_session.Get(), &IUserSessionInfo::get_sid); }
    [[nodiscard]] std::string ReadUser() { return Read(m_session.Get(), &IUserSessionInfo::get_user); }
};

TEST_F(CCallRecordTest, HoldsTheCallsInOrderWithTheirThread) {
    EXPECT_EQ(ReadSid(), "S-1-5");
    RunOnNewThread([&] { EXPECT_EQ(m_system->Refresh(), S_OK); });

    const std::vector<HostCall> calls = m_record->GetCalls();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].operation, "IUserSessionInfo::get_sid");
    EXPECT_EQ(calls[0].text, "Session 3: get_sid");
    EXPECT_EQ(calls[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(calls[1].text, "System: Refresh");
    EXPECT_NE(calls[1].threadId, GetCurrentThreadId());
}

TEST_F(CCallRecordTest, CountsCallsByOperationTextOrBeginning) {
    EXPECT_EQ(ReadSid(), "S-1-5");
    EXPECT_EQ(ReadUser(), "anna");

    EXPECT_EQ(m_record->CountCalls("IUserSessionInfo::get_user"), 1);
    EXPECT_EQ(m_record->CountCalls("Session 3: get_sid"), 1);
    EXPECT_EQ(m_record->CountCalls("Session 3: *"), 2);
    EXPECT_EQ(m_record->CountCalls("*"), 2);
    EXPECT_EQ(m_record->CountCalls("ISystemInfo::*"), 0);
    m_record->ClearCalls();
    EXPECT_EQ(m_record->CountCalls("*"), 0);
}

TEST_F(CCallRecordTest, AFaultFiresAtTheNthCallAndAsOftenAsTold) {
    m_record->Fail("IUserSessionInfo::get_sid", 2, E_ACCESSDENIED, 2);

    EXPECT_EQ(ReadSid(), "S-1-5");
    EXPECT_EQ(ReadUser(), "anna");
    EXPECT_EQ(ReadSid(), DescribeResult(E_ACCESSDENIED));
    EXPECT_EQ(m_record->CountFiredFaults(), 1);
    EXPECT_EQ(ReadSid(), DescribeResult(E_ACCESSDENIED));
    EXPECT_EQ(ReadSid(), "S-1-5");
    EXPECT_EQ(m_record->CountFiredFaults(), 2);
}

TEST_F(CCallRecordTest, AFaultForEverLastsUntilItIsCleared) {
    m_record->Fail("Session 3: get_sid", 1, E_FAIL, -1);

    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(ReadSid(), DescribeResult(E_FAIL));
    }
    m_record->ClearFaults();

    EXPECT_EQ(ReadSid(), "S-1-5");
    EXPECT_EQ(m_record->CountFiredFaults(), 5);
}

TEST_F(CCallRecordTest, AnAsteriskCountsCallsOfAllObjects) {
    m_record->Fail("*", 3, E_FAIL);

    EXPECT_EQ(ReadSid(), "S-1-5");
    EXPECT_EQ(m_system->Refresh(), S_OK);
    EXPECT_EQ(ReadUser(), DescribeResult(E_FAIL));
    EXPECT_EQ(ReadUser(), "anna");
}

TEST_F(CCallRecordTest, AnAsteriskCountsAnsweredQueriesAlone) {
    m_record->Fail("*", 1, E_UNEXPECTED);

    void* out = nullptr;
    EXPECT_EQ(m_session->QueryInterface(ISystemInfo::kId, &out), E_NOINTERFACE);
    EXPECT_EQ(m_record->CountFiredFaults(), 0);
    EXPECT_EQ(m_session->QueryInterface(IUserSessionInfo::kId, &out), E_UNEXPECTED);
    EXPECT_EQ(m_record->CountFiredFaults(), 1);
}

TEST_F(CCallRecordTest, AFailingCallLeavesTheOutParameter) {
    m_record->Fail("*", 1, E_FAIL);

    LONG id = 77;
    EXPECT_EQ(m_session->get_id(&id), E_FAIL);

    EXPECT_EQ(id, 77);
}

TEST_F(CCallRecordTest, ASuccessCanLeaveTheOutParameter) {
    m_record->LeaveUntouched("IUserSessionInfo::get_id", 2);

    LONG id = 77;
    EXPECT_EQ(m_session->get_id(&id), S_OK);
    EXPECT_EQ(id, 3);
    id = 77;
    EXPECT_EQ(m_session->get_id(&id), S_OK);
    EXPECT_EQ(id, 77);
}

TEST_F(CCallRecordTest, ASuccessCanGiveNull) {
    m_record->GiveNull("*", 1, -1);

    LONG id = 77;
    EXPECT_EQ(m_session->get_id(&id), S_OK);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(ReadSid(), "null");
    IPropertyBox* box = reinterpret_cast<IPropertyBox*>(&id);
    EXPECT_EQ(m_session->get_propertyBox(&box), S_OK);
    EXPECT_EQ(box, nullptr);
    void* queried = &id;
    EXPECT_EQ(m_session->QueryInterface(IUserSessionInfo::kId, &queried), S_OK);
    EXPECT_EQ(queried, nullptr);
}

TEST_F(CCallRecordTest, TheHookRunsOnTheCallersThreadBeforeTheCall) {
    std::vector<std::string> seen;
    DWORD threadId = 0;
    m_record->SetBeforeCall([&](const std::string& call) {
        seen.push_back(call);
        threadId = GetCurrentThreadId();
        m_record->Fail(call, 1, E_ABORT);
    });

    EXPECT_EQ(ReadSid(), DescribeResult(E_ABORT));

    EXPECT_THAT(seen, ElementsAre("Session 3: get_sid"));
    EXPECT_EQ(threadId, GetCurrentThreadId());
    m_record->SetBeforeCall(nullptr);
}

TEST_F(CCallRecordTest, TheHookMayCallTheHostAgain) {
    m_record->SetBeforeCall([&](const std::string& call) {
        if (call == "System: Refresh") {
            EXPECT_EQ(ReadUser(), "anna");
        }
    });

    EXPECT_EQ(m_system->Refresh(), S_OK);

    EXPECT_THAT(m_record->GetCallTexts(), ElementsAre("System: Refresh", "Session 3: get_user"));
    m_record->SetBeforeCall(nullptr);
}

TEST_F(CCallRecordTest, AMissingAddressIsAViolation) {
    EXPECT_EQ(m_session->get_sid(nullptr), E_POINTER);

    ExpectViolations({"Session 3: get_sid without an address for the result"});
}

TEST_F(CCallRecordTest, ExhaustedMemoryIsTheCallsFailure) {
    HRESULT result = S_OK;
    CBstr sid;
    {
        const CAllocationFault fault(1);
        result = m_session->get_sid(sid.Receive());
    }

    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_EQ(ReadSid(), "S-1-5");
}

TEST_F(CCallRecordTest, SeveralThreadsMayCallAtOnce) {
    constexpr long kThreads = 4;
    constexpr long kRounds = 200;

    std::vector<std::thread> threads;
    for (long i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (long round = 0; round < kRounds; ++round) {
                CHostReference<IPropertyBox> box;
                EXPECT_EQ(m_session->get_propertyBox(box.Receive()), S_OK);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(m_record->CountCalls("IUserSessionInfo::get_propertyBox"), kThreads * kRounds);
    EXPECT_EQ(m_record->CountLiveObjects(), 2);
}

}  // namespace
