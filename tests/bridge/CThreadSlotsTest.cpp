#include "CThreadSlots.h"

#include <boost/thread/detail/tss_hooks.hpp>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CHresultException.h"
#include "CImportHook.h"
#include "RunOnNewThread.h"

namespace {

using Names = std::vector<std::string>;

long g_cleaned = 0;
CRMICommManagerImpl* g_cleanedManager = nullptr;

void NoteCleaning(CRMICommManagerImpl& manager) noexcept {
    ++g_cleaned;
    g_cleanedManager = &manager;
}

/// What the slots do with threads, on the fake runtime. The manager's address is all they know of it.
class CThreadSlotsTest : public CFakeJvmTest {
protected:
    void SetUp() override {
        CFakeJvmTest::SetUp();
        g_cleaned = 0;
        g_cleanedManager = nullptr;
    }

    void TearDown() override {
        boost::on_thread_exit();
        CFakeJvmTest::TearDown();
    }

    /// The fixture's machine, shared without owning it.
    std::shared_ptr<CJavaVM> Machine() { return {std::shared_ptr<void>(), &VM()}; }
    CRMICommManagerImpl& Manager() { return reinterpret_cast<CRMICommManagerImpl&>(m_address); }

    CThreadSlots m_slots;

private:
    long m_address = 0;
};

TEST_F(CThreadSlotsTest, ACleanerRunsWhenItsThreadEnds) {
    RunOnNewThread([&] {
        m_slots.WatchThread();
        m_slots.SetCleaner(Manager(), &NoteCleaning);
        EXPECT_EQ(g_cleaned, 0);
    });

    EXPECT_EQ(g_cleaned, 1);
    EXPECT_EQ(g_cleanedManager, &Manager());
}

TEST_F(CThreadSlotsTest, AThreadHasOneCleaner) {
    RunOnNewThread([&] {
        m_slots.SetCleaner(Manager(), &NoteCleaning);
        m_slots.SetCleaner(Manager(), [](CRMICommManagerImpl&) noexcept { ADD_FAILURE() << "the second one"; });
    });

    EXPECT_EQ(g_cleaned, 1);
}

TEST_F(CThreadSlotsTest, RunningTheCleanerIsForTheCallingThreadAlone) {
    m_slots.SetCleaner(Manager(), &NoteCleaning);
    RunOnNewThread([&] { m_slots.RunCleaner(); });
    EXPECT_EQ(g_cleaned, 0);

    m_slots.RunCleaner();
    m_slots.RunCleaner();

    EXPECT_EQ(g_cleaned, 1);
}

TEST_F(CThreadSlotsTest, ACleanerWithoutRoomIsNotLeftInTheSlot) {
    for (long nth = 1;; ++nth) {
        const CAllocationFault fault(nth);
        try {
            m_slots.SetCleaner(Manager(), &NoteCleaning);
            break;
        } catch (const std::bad_alloc&) {
            g_cleaned = 0;
            m_slots.RunCleaner();
            EXPECT_EQ(g_cleaned, 0) << nth;
        }
    }
    m_slots.RunCleaner();
    EXPECT_EQ(g_cleaned, 1);
}

BOOL WINAPI StoreNothing(DWORD, void*) {
    return FALSE;
}

TEST_F(CThreadSlotsTest, AThreadForWhichTheSystemHasNoStorageIsRefused) {
    RunOnNewThread([&] {
        const CImportHook noStorage(GetModuleHandleW(nullptr), "TlsSetValue", AddressOf(&StoreNothing));
        EXPECT_THROW(m_slots.AttachThread(Machine()), std::bad_alloc);
        EXPECT_THROW(m_slots.SetCleaner(Manager(), &NoteCleaning), std::bad_alloc);
    });

    EXPECT_EQ(Calls(), Names{});
}

DWORD WINAPI GiveNoIndex() {
    SetLastError(ERROR_NO_SYSTEM_RESOURCES);
    return TLS_OUT_OF_INDEXES;
}

TEST_F(CThreadSlotsTest, WithoutAnIndexOfStorageThereAreNoSlots) {
    const CImportHook noIndex(GetModuleHandleW(nullptr), "TlsAlloc", AddressOf(&GiveNoIndex));
    try {
        const CThreadSlots slots;
        ADD_FAILURE() << "made";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), HRESULT_FROM_WIN32(ERROR_NO_SYSTEM_RESOURCES));
    }
}

TEST_F(CThreadSlotsTest, AThreadIsAttachedOnceForItsLife) {
    RunOnNewThread([&] {
        m_slots.AttachThread(Machine());
        m_slots.AttachThread(Machine());
        EXPECT_NE(VM().GetEnv(), nullptr);
    });

    EXPECT_EQ(Calls(), (Names{"AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(CThreadSlotsTest, TheThreadWithTheCleanerIsNotAttached) {
    m_slots.SetCleaner(Manager(), &NoteCleaning);

    m_slots.AttachThread(Machine());

    EXPECT_EQ(Calls(), Names{});
    m_slots.RunCleaner();
}

TEST_F(CThreadSlotsTest, AThreadThatCouldNotBeAttachedIsTriedAgain) {
    Fake().Fail("AttachCurrentThread", 1);

    RunOnNewThread([&] {
        m_slots.AttachThread(Machine());
        EXPECT_EQ(VM().GetEnv(), nullptr);
        m_slots.AttachThread(Machine());
        EXPECT_NE(VM().GetEnv(), nullptr);
    });

    EXPECT_EQ(Calls(), (Names{"AttachCurrentThread", "AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(CThreadSlotsTest, AnEnvironmentLeftByAnEarlierThreadOfTheSameIdIsNotUsed) {
    RunOnNewThread([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), JNI_OK);  // not through the slots, as if it were not this thread's

        m_slots.AttachThread(Machine());

        EXPECT_NE(VM().GetEnv(), nullptr);
    });

    EXPECT_EQ(Calls(), (Names{"AttachCurrentThread", "AttachCurrentThread", "DetachCurrentThread"}));
}

TEST_F(CThreadSlotsTest, WithoutMemoryAThreadStaysAsItWas) {
    RunOnNewThread([&] {
        for (long nth = 1;; ++nth) {
            const CAllocationFault fault(nth);
            try {
                m_slots.AttachThread(Machine());
                break;
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(VM().GetEnv(), nullptr) << nth;
                EXPECT_FALSE(Fake().IsThreadAttached()) << nth;
            }
        }
        EXPECT_NE(VM().GetEnv(), nullptr);
    });

    EXPECT_EQ(Fake().GetAttachedThreads(), 0);
}

}  // namespace
