#include "CThreadSlots.h"

#include <boost/thread/detail/tss_hooks.hpp>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
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

TEST_F(CThreadSlotsTest, ACleanerWithoutRoomCleansAtOnce) {
    for (long nth = 1;; ++nth) {
        g_cleaned = 0;
        const CAllocationFault fault(nth);
        try {
            m_slots.SetCleaner(Manager(), &NoteCleaning);
            break;
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(g_cleaned, nth == 1 ? 0 : 1) << "none was made yet, or it ran";
        }
    }
    m_slots.RunCleaner();
    EXPECT_EQ(g_cleaned, 1);
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
