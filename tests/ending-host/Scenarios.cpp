#include "Scenarios.h"

#include <windows.h>

#include <atomic>
#include <cstring>
#include <map>
#include <stdexcept>
#include <vector>

#include "CEndingHost.h"
#include "CHostThread.h"
#include "CLibrary.h"
#include "CRecordingCallback.h"
#include "DataType.h"
#include "HeapBlocks.h"
#include "JavaWitness.h"

/// Of the library beside this program, which is told of the process's end.
extern "C" __declspec(dllimport) void CallAtTheEnd(void (*call)());

namespace {

using Reports = CRecordingCallback::Reports;

constexpr unsigned char kNamelessKind = 11;
constexpr wchar_t kUrl[] = L"rmi://first";
constexpr char kDispose[] = "DesktopMessageClient.dispose()";

// ---- the ends of processes ----------------------------------------------------------------------------------------

/// Ends the process with another code when it is released: nothing may be, once the process is ending.
CRecordingCallback& UnreleasedCallback() {
    static auto* const callback = [] {
        auto* const made = new CRecordingCallback;  // to the process's end, like what refers to it
        made->SetLastRelease([] { TerminateProcess(GetCurrentProcess(), 99); });
        return made;
    }();
    return *callback;
}

/// The whole of a simple life: a start, an answer, a switch. At its end nothing is called: Java's dispose, or the
/// release of the callback, would end the process with a code of its own.
void ReturnFromMain(CEndingHost& host) {
    CRecordingCallback& callback = UnreleasedCallback();
    CLibrary library;
    host.Expect(library.Register(L"rmi://first?onStartup=welcome", &callback) == S_OK, "a callback is registered");
    host.Expect(library.Dump(L"rmi://first?onStartup=welcome", eStartup) == S_OK, "the start-up is sent");
    host.Expect(callback.Told() == Reports{{eStartup, L"welcome"}}, "the answer is heard");
    host.Expect(library.Dump(L"rmi://second?onStartup=hello&halt=dispose", eStartup) == S_OK,
                "and sent to another server");
    host.Expect(callback.Told().size() == 2 && callback.Told()[1].second == L"hello", "whose answer is heard");
    host.Expect(CountJavaCalls("DesktopMessageClient.initialize(") == 2, "which was switched to");
    library.Keep();
}

void ExitFromAWorker(CEndingHost& host) {
    CLibrary library;
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    const CHostThread worker([&] {
        host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends");
        ExitProcess(static_cast<UINT>(host.GetExitCode()));
    });
}

void ReturnWithAttachedWorkers(CEndingHost& host) {
    CLibrary library;
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    for (int i = 0; i < 4; ++i) {
        const CHostThread worker([&] { host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends"); });
    }
    library.Keep();
}

/// Has a thread of its own call Java, which does not return; comes back once Java has been entered.
void StayInJava(const CLibrary& library) {
    const std::wstring file = std::wstring(TestPaths::kRuntimes) + L"\\stays " + std::to_wstring(GetCurrentProcessId());
    DeleteFileW(file.c_str());
    std::thread([&library, url = L"rmi://first?stay=" + file] {
        static_cast<void>(library.Dump(url, eStartup));
    }).detach();
    while (GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES) {
        Sleep(1);
    }
    DeleteFileW(file.c_str());
}

void ReturnWithAWorkerInJava(CEndingHost& host) {
    auto* const library = new CLibrary;  // not freed: it is being called
    host.Expect(library->Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    StayInJava(*library);
}

void ReturnWithTheStartingThreadInJava(CEndingHost& host) {
    auto* const library = new CLibrary;
    StayInJava(*library);
    host.Expect(CountJavaCalls("DesktopMessageClient.onStartup(") == 1, "the thread that started the bridge is there");
}

CLibrary* g_calledAtTheEnd = nullptr;

void CallTheLibrary() {
    const bool isRefused = g_calledAtTheEnd->Dump(kUrl, kNamelessKind) == E_FAIL;
    const bool isIgnored = g_calledAtTheEnd->Unregister(kUrl, &UnreleasedCallback()) == S_OK &&
                           g_calledAtTheEnd->Register(kUrl, &UnreleasedCallback()) == S_OK;
    TerminateProcess(GetCurrentProcess(), isRefused && isIgnored ? kAllWell : 1);
}

/// Out of another library's end, while a thread that is gone holds the manager's lock for ever.
void CallWhenTheProcessIsEnding(CEndingHost& host) {
    g_calledAtTheEnd = new CLibrary;
    host.Expect(g_calledAtTheEnd->Register(kUrl, &UnreleasedCallback()) == S_OK, "a callback is registered");
    host.Expect(g_calledAtTheEnd->Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    StayInJava(*g_calledAtTheEnd);
    CallAtTheEnd(&CallTheLibrary);
    if (host.GetExitCode() == kAllWell) {
        ExitProcess(3);  // unless the call has the last word
    }
}

void ExitFromAWorkerWithAnotherInJava(CEndingHost& host) {
    auto* const library = new CLibrary;
    host.Expect(library->Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    StayInJava(*library);
    const CHostThread worker([&] { ExitProcess(static_cast<UINT>(host.GetExitCode())); });
}

/// Nobody is told of such an end: whatever the library holds goes with the process.
void TerminateFromAWorker(CEndingHost& host) {
    CLibrary library;
    host.Expect(library.Register(kUrl, &UnreleasedCallback()) == S_OK, "a callback is registered");
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    const CHostThread worker([&] {
        host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends");
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(host.GetExitCode()));
    });
}

void TerminateInTheMiddleOfACall(CEndingHost& host) {
    CLibrary library;
    StayInJava(library);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(host.GetExitCode()));
}

// ---- the ends of threads ------------------------------------------------------------------------------------------

void EndTheStartingThread(CEndingHost& host) {
    CLibrary library;
    CHostThread starter([&] { host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts"); });
    CHostThread worker([&] { host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends"); });

    starter.End();
    host.Expect(TellJavaCalls().back() == kDispose, "the client is disposed with the thread that started the bridge");
    host.Expect(library.Dump(kUrl, kNamelessKind) == E_FAIL, "nothing is sent any more");
    host.Expect(host.HasLogged(L"because RMI manager has been uninitialized"), "which the log says");

    const std::size_t calls = TellJavaCalls().size();
    worker.End();
    host.Expect(TellJavaCalls().size() == calls, "a worker that ends later calls nothing");
    library.Keep();
}

// ---- the unload of the library ------------------------------------------------------------------------------------

/// Has the system make no lock, for every module of the process, as long as it lives.
class CNoLocks {
public:
    CNoLocks() {
        HMODULE const kernel = GetModuleHandleW(L"kernel32.dll");
        m_function = reinterpret_cast<void*>(GetProcAddress(kernel, "InitializeCriticalSectionAndSpinCount"));
        std::memcpy(m_original, m_function, sizeof(m_original));
        Write(kReturnFalse);
    }
    ~CNoLocks() { Write(m_original); }

    CNoLocks(const CNoLocks&) = delete;
    CNoLocks& operator=(const CNoLocks&) = delete;

private:
    static constexpr BYTE kReturnFalse[] = {0x31, 0xC0, 0xC3};  // xor eax, eax; ret

    void Write(const BYTE* code) {
        DWORD protection = 0;
        VirtualProtect(m_function, sizeof(m_original), PAGE_EXECUTE_READWRITE, &protection);
        std::memcpy(m_function, code, sizeof(m_original));
        VirtualProtect(m_function, sizeof(m_original), protection, &protection);
    }

    void* m_function;
    BYTE m_original[sizeof(kReturnFalse)];
};

/// The library cannot be without its lock: what it throws then goes no further than the loader.
void FailToLoadWithoutALock(CEndingHost& host) {
    {
        const CNoLocks noLocks;
        host.Expect(LoadLibraryW(TestPaths::kProduct) == nullptr, "the library does not load");
    }
    CRecordingCallback callback;
    CLibrary library;
    host.Expect(library.Register(kUrl, &callback) == S_OK, "later it does, and works");
    host.Expect(library.Free(), "the library is gone");
    host.ExpectReleased();
}

void FreeBeforeAnyStart(CEndingHost& host) {
    CRecordingCallback callback;
    CLibrary library;
    host.Expect(library.Register(kUrl, &callback) == S_OK, "a callback is registered");
    host.Expect(library.Free(), "the library is gone");
    host.Expect(callback.CountReferences() == 0, "the callback is released");
    host.ExpectReleased();
}

void FreeOnTheStartingThread(CEndingHost& host) {
    CRecordingCallback callback;
    CLibrary library;
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    host.Expect(library.Register(kUrl, &callback) == S_OK, "a callback is registered");
    CHostThread worker([&] { host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends"); });

    host.Expect(library.Free(), "the library is gone");
    host.Expect(TellJavaCalls().back() == kDispose, "the client is disposed");
    host.Expect(callback.CountReferences() == 0, "the callback is released");
    worker.End();
    host.ExpectReleased();
}

void FreeOnAnotherThread(CEndingHost& host) {
    CLibrary library;
    CHostThread starter([&] { host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts"); });
    CHostThread worker([&] { host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends"); });
    const std::size_t calls = TellJavaCalls().size();

    host.Expect(library.Free(), "the library is gone");
    host.Expect(TellJavaCalls().size() == calls, "Java was not called");
    starter.End();
    worker.End();
    host.Expect(TellJavaCalls().size() == calls, "nor is it when the threads end");
    host.ExpectReleased();
}

void FreeOnAnAttachedWorker(CEndingHost& host) {
    CLibrary library;
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    CHostThread worker([&] {
        host.Expect(library.Dump(kUrl, eStartup) == S_OK, "a worker sends");
        const long calls = CountJavaCalls("");
        host.Expect(library.Free(), "the library is gone");
        host.Expect(CountJavaCalls("") == calls, "Java was not called");
    });
    worker.End();
    host.ExpectReleased();
}

void FreeAfterTheStartingThread(CEndingHost& host) {
    CLibrary library;
    CHostThread starter([&] { host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts"); });
    starter.End();
    host.Expect(library.Free(), "the library is gone");
    host.Expect(CountJavaCalls(kDispose) == 1, "the client was disposed once");
    host.ExpectReleased();
}

/// A runtime makes one machine in a process: a library that is loaded again gets none, and says so.
void LoadAgainAfterTheEnd(CEndingHost& host) {
    CLibrary library;
    host.Expect(library.Dump(kUrl, kNamelessKind) == S_OK, "the bridge starts");
    host.Expect(library.Free(), "the library is gone");

    CLibrary again;
    host.Expect(again.Dump(kUrl, kNamelessKind) == E_FAIL, "there is no second machine");
    host.Expect(host.HasLogged(L"Failed to create a Java virtual machine instance.  Error code 0xfffffffb."),
                "which the log says");
    host.Expect(again.Free(), "it goes, too");
    host.ExpectReleased();
}

// ---- many -----------------------------------------------------------------------------------------------------------

void ManyThreads(CEndingHost& host) {
    constexpr int kThreads = 16;
    CLibrary library;
    host.Expect(library.Dump(kUrl, eStartup) == S_OK, "the bridge starts");
    const int javaThreads = CountJavaThreads();
    std::atomic<int> failures{0};
    std::vector<CRecordingCallback> callbacks(kThreads);
    for (int round = 0; round < 5; ++round) {
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (CRecordingCallback& callback : callbacks) {
            threads.emplace_back([&] {
                const std::wstring url = L"rmi://first?onStartup=" + std::to_wstring(GetCurrentThreadId());
                failures += library.Register(url, &callback) != S_OK;
                for (int i = 0; i < 10; ++i) {
                    failures += library.Dump(url, eStartup) != S_OK;
                }
                failures += library.Unregister(url, &callback) != S_OK;
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    host.Expect(failures == 0, "every call of theirs succeeds");
    for (const CRecordingCallback& callback : callbacks) {
        host.Expect(callback.Told().size() == 50, "each thread's callback hears its own answers");
        host.Expect(callback.CountReferences() == 0, "and is released");
    }
    host.Expect(CountJavaThreads() == javaThreads, "Java knows none of them any more");
    library.Keep();
}

void AThousandShortLivedThreads(CEndingHost& host) {
    constexpr int kThreads = 1000;
    constexpr int kAtOnce = 8;
    CLibrary library;
    host.Expect(library.Dump(kUrl, eStartup) == S_OK, "the bridge starts");
    const int javaThreads = CountJavaThreads();
    std::atomic<int> failures{0};
    std::atomic<bool> allEnded{false};
    std::thread spawner([&] {
        for (int i = 0; i < kThreads; i += kAtOnce) {
            std::vector<std::thread> threads;
            threads.reserve(kAtOnce);
            for (int j = 0; j < kAtOnce; ++j) {
                threads.emplace_back(
                    [&] { failures += library.Dump(L"rmi://first?garbage=onStartup", eStartup) != S_OK; });
            }
            for (std::thread& thread : threads) {
                thread.join();
            }
        }
        allEnded = true;
    });
    while (!allEnded) {
        failures += library.Dump(L"rmi://first?garbage=onStartup", eStartup) != S_OK;
    }
    spawner.join();
    host.Expect(failures == 0, "every call succeeds while Java collects its garbage");
    host.Expect(CountJavaThreads() == javaThreads, "Java knows none of the threads any more");
    library.Keep();
}

DWORD NextFlsIndex() {
    const DWORD index = FlsAlloc(nullptr);
    FlsFree(index);
    return index;
}

DWORD NextTlsIndex() {
    const DWORD index = TlsAlloc();
    TlsFree(index);
    return index;
}

void LoadAndFreeOverAndOver(CEndingHost& host) {
    CRecordingCallback callback;
    const auto loadAndFree = [&] {
        CLibrary library;
        host.Expect(library.Register(kUrl, &callback) == S_OK, "a callback is registered");
        host.Expect(library.Free(), "the library is gone");
    };
    for (int i = 0; i < 50; ++i) {
        loadAndFree();
    }
    const long heapBlocks = CountHeapBlocks();
    const DWORD flsIndex = NextFlsIndex();
    const DWORD tlsIndex = NextTlsIndex();
    for (int i = 0; i < 500; ++i) {
        loadAndFree();
    }
    host.Expect(CountHeapBlocks() == heapBlocks, "no memory stays behind");
    host.Expect(NextFlsIndex() == flsIndex, "no index of fiber-local storage");
    host.Expect(NextTlsIndex() == tlsIndex, "no index of thread-local storage");
    host.ExpectReleased();
}

const std::map<std::string, void (*)(CEndingHost&)> kScenarios = {
    {"ReturnFromMain", &ReturnFromMain},
    {"ExitFromAWorker", &ExitFromAWorker},
    {"ReturnWithAttachedWorkers", &ReturnWithAttachedWorkers},
    {"ReturnWithAWorkerInJava", &ReturnWithAWorkerInJava},
    {"ReturnWithTheStartingThreadInJava", &ReturnWithTheStartingThreadInJava},
    {"ExitFromAWorkerWithAnotherInJava", &ExitFromAWorkerWithAnotherInJava},
    {"CallWhenTheProcessIsEnding", &CallWhenTheProcessIsEnding},
    {"TerminateFromAWorker", &TerminateFromAWorker},
    {"TerminateInTheMiddleOfACall", &TerminateInTheMiddleOfACall},
    {"EndTheStartingThread", &EndTheStartingThread},
    {"FailToLoadWithoutALock", &FailToLoadWithoutALock},
    {"FreeBeforeAnyStart", &FreeBeforeAnyStart},
    {"FreeOnTheStartingThread", &FreeOnTheStartingThread},
    {"FreeOnAnotherThread", &FreeOnAnotherThread},
    {"FreeOnAnAttachedWorker", &FreeOnAnAttachedWorker},
    {"FreeAfterTheStartingThread", &FreeAfterTheStartingThread},
    {"LoadAgainAfterTheEnd", &LoadAgainAfterTheEnd},
    {"ManyThreads", &ManyThreads},
    {"AThousandShortLivedThreads", &AThousandShortLivedThreads},
    {"LoadAndFreeOverAndOver", &LoadAndFreeOverAndOver},
};

}  // namespace

void RunScenario(const std::string& name, CEndingHost& host) {
    const auto found = kScenarios.find(name);
    if (found == kScenarios.end()) {
        throw std::runtime_error("no such scenario: " + name);
    }
    found->second(host);
}
