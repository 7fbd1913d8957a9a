#include "CWatchdog.h"

#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>

#include "CUniqueHandle.h"
#include "ThreadStacks.h"

namespace {

// Both count from when the limit has passed. Names for all threads of a process with a Java VM take about 2 s.
constexpr DWORD kPlainStacksAfterMs = 10000;
constexpr DWORD kEndAfterMs = 20000;

struct EventTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle event) noexcept { CloseHandle(event); }
};
using CEvent = CUniqueHandle<EventTraits>;

CEvent MakeAutoResetEvent() {
    return CEvent(CreateEventW(nullptr, FALSE, FALSE, nullptr));
}

CEvent MakeManualResetEvent() {
    return CEvent(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

void WriteText(HANDLE output, const char* text) {
    DWORD written = 0;
    WriteFile(output, text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

/// A handle of our own for the standard output, never closed. Null when there is none.
HANDLE DuplicateStandardOutput() {
    const HANDLE self = GetCurrentProcess();
    HANDLE copy = nullptr;
    DuplicateHandle(self, GetStdHandle(STD_OUTPUT_HANDLE), self, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
    return copy;
}

}  // namespace

/// What the threads share with the object. Never freed: the threads use it until the process ends.
struct CWatchdog::State {
    const CEvent changed = MakeAutoResetEvent();
    const CEvent expired = MakeManualResetEvent();
    const CEvent threadRuns = MakeAutoResetEvent();
    const HANDLE output = DuplicateStandardOutput();

    /// Guards the members below. Held for a few instructions only, never while waiting or writing.
    std::mutex lock;
    bool isArmed = false;
    ULONGLONG armedAtMs = 0;
    DWORD limitMs = 0;
    char what[256] = {};

    template <typename Body>
    void StartThread(Body body) {
        std::thread([this, body] {
            SetEvent(threadRuns.Get());
            body();
        }).detach();
        WaitForSingleObject(threadRuns.Get(), INFINITE);
    }

    void Change(const char* newWhat, DWORD newLimitMs) {
        {
            const std::lock_guard<std::mutex> guard(lock);
            isArmed = newWhat != nullptr;
            armedAtMs = GetTickCount64();
            limitMs = newLimitMs;
            std::snprintf(what, sizeof(what), "%s", isArmed ? newWhat : "");
        }
        SetEvent(changed.Get());
    }

    DWORD RemainingMs() {
        const std::lock_guard<std::mutex> guard(lock);
        if (!isArmed) {
            return INFINITE;
        }
        const ULONGLONG elapsedMs = GetTickCount64() - armedAtMs;
        return elapsedMs < limitMs ? static_cast<DWORD>(limitMs - elapsedMs) : 0;
    }

    /// The first thread: waits for the limit to pass, then reports and ends the process.
    [[noreturn]] void Watch() {
        for (DWORD remainingMs = INFINITE; remainingMs != 0; remainingMs = RemainingMs()) {
            WaitForSingleObject(changed.Get(), remainingMs);
        }
        SetEvent(expired.Get());
        PrintTitle();
        PrintAllThreadStacks(output);
        End();
    }

    /// The second thread: says what is known when the first one is stuck in its report.
    [[noreturn]] void ReportPlainly() {
        WaitForSingleObject(expired.Get(), INFINITE);
        Sleep(kPlainStacksAfterMs);
        WriteText(output, "\nwatchdog: no names to be had; stacks as offsets:\n");
        if (!PrintCollectedStacksPlainly(output)) {
            WriteText(output, "watchdog: the threads could not be listed, the heap may be locked\n");
        }
        for (;;) {
            Sleep(INFINITE);
        }
    }

    /// The third thread: makes sure of the end when nothing can be written either.
    [[noreturn]] void EndInAnyCase() {
        WaitForSingleObject(expired.Get(), INFINITE);
        Sleep(kEndAfterMs);
        End();
    }

    void PrintTitle() {
        char title[sizeof(what) + 100] = {};
        {
            const std::lock_guard<std::mutex> guard(lock);
            std::snprintf(title, sizeof(title), "\nwatchdog: %s has run for %llu s; stacks of all threads:\n", what,
                          (GetTickCount64() - armedAtMs) / 1000);
        }
        WriteText(output, title);
    }

    [[noreturn]] static void End() {
        TerminateProcess(GetCurrentProcess(), kWatchdogExitCode);
        // Not reached; tells the compiler so.
        for (;;) {
            Sleep(INFINITE);
        }
    }
};

CWatchdog::CWatchdog() : m_state(*new State) {
    State& state = m_state;
    state.StartThread([&state] { state.Watch(); });
    state.StartThread([&state] { state.ReportPlainly(); });
    state.StartThread([&state] { state.EndInAnyCase(); });
}

CWatchdog::~CWatchdog() {
    Disarm();
}

void CWatchdog::Arm(const char* what, DWORD limitMs) {
    m_state.Change(what, limitMs);
}

void CWatchdog::Disarm() {
    m_state.Change(nullptr, 0);
}
