#pragma once

#include <windows.h>

/// Runs Boost's clean-up of the per-thread slots when a thread ends, before the loader does. Boost's own hook runs
/// under the loader lock, and there a thread that detaches from Java can lock up with one that Java starts at that
/// moment: Java starts threads with its list of threads locked, starting one needs the loader lock, detaching needs the
/// list. Callbacks of fiber-local storage run at a thread's end without the loader lock (FlsAlloc, Windows
/// documentation).
///
/// What this hook leaves out, Boost's does: threads whose end nobody watched, threads that end as fibers, and all of
/// them where the system has no storage index to give.
class CThreadEndHook {
public:
    CThreadEndHook() noexcept;
    /// Ends the watch over all threads, without cleaning any slot.
    ~CThreadEndHook();

    CThreadEndHook(const CThreadEndHook&) = delete;
    CThreadEndHook& operator=(const CThreadEndHook&) = delete;

    /// The calling thread's slots are cleaned at its end. Called before the thread attaches to Java.
    void WatchThread() const noexcept;

private:
    const DWORD m_index;
};
