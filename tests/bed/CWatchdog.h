#pragma once

#include <windows.h>

/// The exit code of a process that a watchdog ended.
constexpr UINT kWatchdogExitCode = 97;

/// Ends the process when something runs for too long: writes what it was and the stacks of all threads to the standard
/// output, then terminates with kWatchdogExitCode, without any clean-up that might hang in its turn.
///
/// Make it early in main: its threads are running when the constructor returns, so that a test which hangs with the
/// loader lock held does not keep them from starting. They write to the standard output of that moment, even when it
/// has been redirected since. Should the look-up of names hang (a test holds the loader's lock for ever), a second
/// thread writes the stacks as bare offsets 10 s later; should writing hang too (nobody reads the pipe, a test holds
/// the heap's lock), a third ends the process all the same, 20 s after the limit.
///
/// The threads and what they use last until the process ends, whatever becomes of this object: a thread that ended
/// would run the thread-end code of every library under test.
///
/// Any thread may call; one thing is watched at a time.
class CWatchdog {
public:
    CWatchdog();
    /// Disarms.
    ~CWatchdog();

    CWatchdog(const CWatchdog&) = delete;
    CWatchdog& operator=(const CWatchdog&) = delete;

    /// Starts the clock for `what` (copied, cut off at 255 bytes) from now; replaces what was watched before.
    void Arm(const char* what, DWORD limitMs);
    void Disarm();

private:
    struct State;

    State& m_state;
};
