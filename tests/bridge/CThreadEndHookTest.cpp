#include "CThreadEndHook.h"

#include <boost/thread/detail/tss_hooks.hpp>
#include <boost/thread/tss.hpp>
#include <optional>

#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "LoaderLock.h"
#include "RunOnNewThread.h"

namespace {

enum class CleanUp { eNone, eWithoutLoaderLock, eUnderLoaderLock };

CleanUp g_cleanUp = CleanUp::eNone;
DWORD g_cleanUpThread = 0;

/// Lies in a slot and notes how it was cleaned away.
struct NotesItsEnd {
    NotesItsEnd() = default;
    ~NotesItsEnd() {
        g_cleanUp = HasLoaderLock() ? CleanUp::eUnderLoaderLock : CleanUp::eWithoutLoaderLock;
        g_cleanUpThread = GetCurrentThreadId();
    }

    NotesItsEnd(const NotesItsEnd&) = delete;
    NotesItsEnd& operator=(const NotesItsEnd&) = delete;
};

class CThreadEndHookTest : public CLeakCheckedTest {
protected:
    void SetUp() override {
        CLeakCheckedTest::SetUp();
        g_cleanUp = CleanUp::eNone;
        g_cleanUpThread = 0;
    }

    boost::thread_specific_ptr<NotesItsEnd> m_slot;
};

TEST_F(CThreadEndHookTest, AWatchedThreadsSlotsAreCleanedWithoutTheLoaderLock) {
    const CThreadEndHook hook;
    DWORD threadId = 0;

    RunOnNewThread([&] {
        threadId = GetCurrentThreadId();
        hook.WatchThread();
        m_slot.reset(new NotesItsEnd);
    });

    EXPECT_EQ(g_cleanUp, CleanUp::eWithoutLoaderLock);
    EXPECT_EQ(g_cleanUpThread, threadId);
}

TEST_F(CThreadEndHookTest, AThreadThatNobodyWatchesIsLeftToTheLoadersHook) {
    const CThreadEndHook hook;

    RunOnNewThread([&] { m_slot.reset(new NotesItsEnd); });

    EXPECT_EQ(g_cleanUp, CleanUp::eUnderLoaderLock);
}

TEST_F(CThreadEndHookTest, AThreadThatEndsAsAFiberIsLeftToTheLoadersHook) {
    const CThreadEndHook hook;

    RunOnNewThread([&] {
        hook.WatchThread();
        m_slot.reset(new NotesItsEnd);
        ASSERT_NE(ConvertThreadToFiber(nullptr), nullptr);
    });

    EXPECT_EQ(g_cleanUp, CleanUp::eUnderLoaderLock);
}

struct FiberWork {
    const CThreadEndHook& hook;
    void* back;
};

void WINAPI WatchInFiber(void* parameter) {
    const auto& work = *static_cast<const FiberWork*>(parameter);
    work.hook.WatchThread();
    SwitchToFiber(work.back);
}

TEST_F(CThreadEndHookTest, TheEndOfAFiberIsNotItsThreadsEnd) {
    const CThreadEndHook hook;

    RunOnNewThread([&] {
        m_slot.reset(new NotesItsEnd);
        FiberWork work{hook, ConvertThreadToFiber(nullptr)};
        ASSERT_NE(work.back, nullptr);
        void* const fiber = CreateFiber(0, &WatchInFiber, &work);
        ASSERT_NE(fiber, nullptr);
        SwitchToFiber(fiber);

        DeleteFiber(fiber);

        EXPECT_EQ(g_cleanUp, CleanUp::eNone);
        ConvertFiberToThread();
    });
}

TEST_F(CThreadEndHookTest, TheHooksOwnEndCleansNobody) {
    std::optional<CThreadEndHook> hook(std::in_place);
    hook->WatchThread();
    m_slot.reset(new NotesItsEnd);

    hook.reset();

    EXPECT_EQ(g_cleanUp, CleanUp::eNone);
    m_slot.reset();
    boost::on_thread_exit();
}

TEST_F(CThreadEndHookTest, AThreadThatOutlivesTheHookIsLeftToTheLoadersHook) {
    std::optional<CThreadEndHook> hook(std::in_place);

    RunOnNewThread([&] {
        hook->WatchThread();
        m_slot.reset(new NotesItsEnd);
        RunOnNewThread([&] { hook.reset(); });
        EXPECT_EQ(g_cleanUp, CleanUp::eNone);
    });

    EXPECT_EQ(g_cleanUp, CleanUp::eUnderLoaderLock);
}

TEST_F(CThreadEndHookTest, TheIndexIsGivenBack) {
    const DWORD before = FlsAlloc(nullptr);
    FlsFree(before);

    { const CThreadEndHook hook; }

    const DWORD after = FlsAlloc(nullptr);
    FlsFree(after);
    EXPECT_EQ(after, before);
}

DWORD WINAPI GiveNoIndex(PFLS_CALLBACK_FUNCTION) {
    return FLS_OUT_OF_INDEXES;
}

TEST_F(CThreadEndHookTest, WithoutAnIndexTheLoadersHookDoesIt) {
    const CImportHook noIndex(GetModuleHandleW(nullptr), "FlsAlloc", AddressOf(&GiveNoIndex));
    const CThreadEndHook hook;

    RunOnNewThread([&] {
        hook.WatchThread();
        m_slot.reset(new NotesItsEnd);
    });

    EXPECT_EQ(g_cleanUp, CleanUp::eUnderLoaderLock);
}

}  // namespace
