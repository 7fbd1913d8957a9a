#include <new>

#include "CAllocationFault.h"
#include "CRecordingCallback.h"
#include "DumpDataFixture.h"

namespace {

/// Whatever fails on an item's way, and wherever.
class DumpDataFaultTest : public CDumpDataFixture {};

/// Of the host's calls that a start-up makes, those whose failure takes nothing away from it.
bool IsDispensable(const std::string& call) {
    return call.find("Refresh") != std::string::npos || call.find("get_machineName") != std::string::npos ||
           call.find("get_isDesktop") != std::string::npos || call.find("GetProperty") != std::string::npos;
}

TEST_F(DumpDataFaultTest, EachCallOfTheHostsMayFail) {
    Start();
    ASSERT_EQ(Dump(eStartup), S_OK);
    const Calls asked = Host().Record().GetCallTexts();
    ASSERT_EQ(asked.size(), 8U);
    for (std::size_t i = 0; i < asked.size(); ++i) {
        Host().Record().Fail("*", static_cast<long>(i) + 1, E_ACCESSDENIED);

        EXPECT_EQ(Dump(eStartup), IsDispensable(asked[i]) ? S_OK : E_ACCESSDENIED) << asked[i];

        Host().Record().ClearFaults();
        EXPECT_EQ(Dump(eStartup), S_OK) << asked[i];
    }
}

TEST_F(DumpDataFaultTest, EachCallOfTheHostsMayFailForEver) {
    Start();
    for (long nth = 1; nth <= 8; ++nth) {
        Host().Record().Fail("*", nth, E_ACCESSDENIED, -1);

        EXPECT_EQ(Dump(eStartup), nth <= 5 ? E_ACCESSDENIED : S_OK) << nth;  // up to the identities

        Host().Record().ClearFaults();
        EXPECT_EQ(Dump(eStartup), S_OK) << nth;
    }
}

/// An item whose answer a callback hears, or which Java refuses.
class AnsweredItemFaultTest : public CDumpDataFixture {
protected:
    void SetUp() override {
        CDumpDataFixture::SetUp();
        Fake().MakeMethodReturnText(kClient, "onStartup", "welcome");
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(kUrl, kToken, kCertificate, &m_callback), S_OK);
        Start();
    }

    void TearDown() override {
        EXPECT_EQ(m_manager->UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &m_callback), S_OK);
        CDumpDataFixture::TearDown();
    }

    /// With each allocation failing in its turn the item comes to `expected` or the exception leaves, with nothing left
    /// behind either way.
    void DumpInScarcity(HRESULT expected) {
        const long globals = Fake().GetGlobalReferences();
        bool fired = true;
        for (long nth = 1; fired; ++nth) {
            {
                const CAllocationFault fault(nth);
                try {
                    const long sent = Dump(eStartup);
                    // The host's own allocations fail as well.
                    EXPECT_TRUE(sent == expected || (fault.HasFired() && sent == E_OUTOFMEMORY)) << nth << ' ' << sent;
                } catch (const std::bad_alloc&) {
                    EXPECT_TRUE(fault.HasFired()) << nth;
                }
                fired = fault.HasFired();
            }
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_EQ(Fake().GetGlobalReferences(), globals) << nth;
            EXPECT_EQ(Dump(eStartup), expected) << nth;
        }
    }

    /// The same for the calls of JNI, once or for ever.
    void DumpWithoutJni(long first, long times) {
        long fired = 1;
        for (long nth = first; fired != 0; ++nth) {
            Fake().Fail("*", nth, times);

            const long sent = Dump(eStartup);

            fired = Fake().GetFaultsFired();
            const bool isFrame = fired == 1 && std::string(Fake().GetFailedFunction()) == "PushLocalFrame";
            Fake().ClearFaults();
            EXPECT_EQ(sent, fired == 0 || isFrame ? S_OK : E_FAIL) << nth;
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
            EXPECT_EQ(Dump(eStartup), S_OK) << nth;
        }
    }

    CRecordingCallback m_callback;
};

TEST_F(AnsweredItemFaultTest, EachCallOfJnisMayFail) {
    DumpWithoutJni(1, 1);
}

TEST_F(AnsweredItemFaultTest, EachCallOfJnisMayFailForEver) {
    // From the second on: the first is the frame, without which the exception's reference stays to the thread's end.
    DumpWithoutJni(2, -1);
}

TEST_F(AnsweredItemFaultTest, EachAllocationMayFail) {
    DumpInScarcity(S_OK);
}

TEST_F(AnsweredItemFaultTest, EachAllocationMayFailWhereJavaRefusesTheItem) {
    Fake().MakeMethodThrow(kClient, "onStartup", Exception("no answer"));

    DumpInScarcity(E_FAIL);
}

TEST_F(DumpDataFaultTest, EachAllocationOfAStartMayFail) {
    bool fired = true;
    for (long nth = 1; fired; ++nth) {
        Fake().Reset();
        CRMICommManagerImpl manager(Slots());
        long result = E_PENDING;
        {
            const CAllocationFault fault(nth);
            try {
                result = manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, kNamelessKind, nullptr);
            } catch (const std::bad_alloc&) {
            }
            fired = fault.HasFired();
        }
        // A start that was broken off is final; a switch that was, is tried again.
        const long next = manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, 1, kNamelessKind, nullptr);
        EXPECT_EQ(next, manager.GetState() == ManagerState::eInitialised ? S_OK : E_FAIL) << nth;
        EXPECT_NE(manager.GetState(), ManagerState::eNotInitialised) << nth;
        EXPECT_TRUE(result == E_PENDING || result == S_OK || result == E_FAIL || result == E_OUTOFMEMORY)
            << nth << ' ' << result;  // the last is the host's own, whose allocations fail as well
        Slots().RunCleaner();
        boost::on_thread_exit();
        EXPECT_EQ(Fake().GetGlobalReferences(), 0) << nth;
    }
}

}  // namespace
