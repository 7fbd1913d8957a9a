#include <windows.h>

#include <process.h>

#include <atomic>
#include <boost/thread/tss.hpp>

#include "CLeakCheckedTest.h"

namespace {

// What the product's per-thread clean-up stands on: Boost.Thread as it is built here.
class BoostThreadTest : public CLeakCheckedTest {};

std::atomic<int> g_destroyed{0};

struct CNoticed {
    ~CNoticed() { ++g_destroyed; }
};

boost::thread_specific_ptr<CNoticed> g_slot;

DWORD WINAPI UseSlot(void*) {
    g_slot.reset(new CNoticed);
    return 0;
}

unsigned WINAPI UseSlotUnderTheRuntime(void*) {
    return UseSlot(nullptr);
}

void WaitAndClose(HANDLE thread) {
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

TEST_F(BoostThreadTest, APlainThreadsSlotIsDeletedAtItsEnd) {
    g_destroyed = 0;

    WaitAndClose(CreateThread(nullptr, 0, UseSlot, nullptr, 0, nullptr));

    EXPECT_EQ(g_destroyed, 1);
}

TEST_F(BoostThreadTest, ARuntimeThreadsSlotIsDeletedAtItsEnd) {
    g_destroyed = 0;

    WaitAndClose(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, UseSlotUnderTheRuntime, nullptr, 0, nullptr)));

    EXPECT_EQ(g_destroyed, 1);
}

TEST_F(BoostThreadTest, AThreadThatNeverUsedItsSlotDeletesNothing) {
    g_destroyed = 0;

    WaitAndClose(CreateThread(
        nullptr, 0, [](void*) -> DWORD { return 0; }, nullptr, 0, nullptr));

    EXPECT_EQ(g_destroyed, 0);
}

}  // namespace
