#include "CThreadEndHook.h"

#include <atomic>
#include <boost/thread/detail/tss_hooks.hpp>

#include "LoaderLockRule.h"
#include "ProcessEnd.h"

namespace {

/// While an index is given back, the system calls the callback on the thread that does it, for every thread's value.
std::atomic<bool> g_isFreeingIndex{false};

/// The values are their threads' ids: the system calls back for a deleted fiber, too, on whichever thread deletes it.
void WINAPI OnThreadEnd(void* threadId) {
    const bool isThreadsOwnEnd =
        reinterpret_cast<ULONG_PTR>(threadId) == GetCurrentThreadId() && !IsThreadAFiber() && !g_isFreeingIndex;
    if (isThreadsOwnEnd && !IsProcessEnding()) {
        AssertOutsideLoaderLock();
        boost::on_thread_exit();
    }
}

}  // namespace

CThreadEndHook::CThreadEndHook() noexcept : m_index(FlsAlloc(&OnThreadEnd)) {}

CThreadEndHook::~CThreadEndHook() {
    if (m_index != FLS_OUT_OF_INDEXES) {
        g_isFreeingIndex = true;
        FlsFree(m_index);
        g_isFreeingIndex = false;
    }
}

void CThreadEndHook::WatchThread() const noexcept {
    if (m_index != FLS_OUT_OF_INDEXES && !IsThreadAFiber()) {
        FlsSetValue(m_index, reinterpret_cast<void*>(static_cast<ULONG_PTR>(GetCurrentThreadId())));
    }
}
