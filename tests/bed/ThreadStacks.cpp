#include "ThreadStacks.h"

#include <dbghelp.h>
#include <tlhelp32.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

#include "CUniqueHandle.h"

namespace {

constexpr size_t kMaxFrames = 100;
constexpr size_t kMaxNameLength = 512;
constexpr size_t kMaxLineLength = 2048;

struct ThreadTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle thread) noexcept { CloseHandle(thread); }
};
using CThreadHandle = CUniqueHandle<ThreadTraits>;

struct SnapshotTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle snapshot) noexcept { CloseHandle(snapshot); }
};
using CSnapshot = CUniqueHandle<SnapshotTraits>;

struct ExceptionHandlerTraits {
    using Handle = void*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle handler) noexcept { RemoveVectoredExceptionHandler(handler); }
};
using CExceptionHandler = CUniqueHandle<ExceptionHandlerTraits>;

/// The return addresses of one thread, innermost first.
struct ThreadStack {
    DWORD threadId = 0;
    size_t frameCount = 0;
    DWORD64 frames[kMaxFrames] = {};
};

/// Where the walking thread continues when reading a stack faults. One for the process: walks follow one another.
struct FaultReturn {
    volatile DWORD walkingThreadId = 0;
    volatile bool faulted = false;
    CONTEXT context = {};
};

/// Guards what follows, except that PrintCollectedStacksPlainly reads `walkedStacks` without it once
/// `areStacksCollected`.
std::mutex walkLock;
std::vector<ThreadStack> walkedStacks;
std::atomic<bool> areStacksCollected{false};
FaultReturn faultReturn;

LONG CALLBACK ReturnFromFault(EXCEPTION_POINTERS* fault) {
    if (GetCurrentThreadId() != faultReturn.walkingThreadId) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    faultReturn.walkingThreadId = 0;
    faultReturn.faulted = true;
    *fault->ContextRecord = faultReturn.context;
    return EXCEPTION_CONTINUE_EXECUTION;
}

DWORD64 ReadStack(DWORD64 address) noexcept {
    return *reinterpret_cast<const DWORD64*>(address);
}

const IMAGE_DATA_DIRECTORY& FindImageDirectory(DWORD64 imageBase, size_t index) noexcept {
    const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(imageBase);
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS64*>(imageBase + static_cast<DWORD64>(dosHeader->e_lfanew));
    return headers->OptionalHeader.DataDirectory[index];
}

/// The unwind table's entry for `address` in the image at `imageBase`; null for a function that needs none.
/// RtlLookupFunctionEntry finds it too, but takes a lock that the stopped thread may hold.
RUNTIME_FUNCTION* FindFunctionEntry(DWORD64 imageBase, DWORD64 address) noexcept {
    const IMAGE_DATA_DIRECTORY& table = FindImageDirectory(imageBase, IMAGE_DIRECTORY_ENTRY_EXCEPTION);
    auto* const first = reinterpret_cast<RUNTIME_FUNCTION*>(imageBase + table.VirtualAddress);
    auto* const last = first + table.Size / sizeof(RUNTIME_FUNCTION);

    const auto offset = static_cast<DWORD>(address - imageBase);
    auto* const entry = std::partition_point(
        first, last, [offset](const RUNTIME_FUNCTION& function) { return function.EndAddress <= offset; });
    return entry != last && entry->BeginAddress <= offset ? entry : nullptr;
}

/// Goes from a frame of a loaded image to its caller. `lookUpAddress` lies inside the frame's function.
void UnwindImageFrame(CONTEXT& context, DWORD64 imageBase, DWORD64 lookUpAddress) {
    RUNTIME_FUNCTION* const entry = FindFunctionEntry(imageBase, lookUpAddress);
    if (!entry) {
        context.Rip = ReadStack(context.Rsp);
        context.Rsp += sizeof(DWORD64);
        return;
    }
    void* handlerData = nullptr;
    DWORD64 establisherFrame = 0;
    RtlVirtualUnwind(UNW_FLAG_NHANDLER, imageBase, context.Rip, entry, &context, &handlerData, &establisherFrame,
                     nullptr);
}

/// Goes from a frame of generated code to its caller by the frame pointer: such code has no unwind table worth the
/// name, but Java's interpreter and its entry from native code keep the pointer, so that the native callers of an
/// interpreted method are still found. False where the pointer cannot be one (a compiled method uses the register
/// otherwise).
bool FollowFramePointer(CONTEXT& context) noexcept {
    const DWORD64 frame = context.Rbp;
    if (frame < context.Rsp || frame % sizeof(DWORD64) != 0) {
        return false;
    }
    context.Rbp = ReadStack(frame);
    context.Rip = ReadStack(frame + sizeof(DWORD64));
    context.Rsp = frame + 2 * sizeof(DWORD64);
    return true;
}

/// Goes to the caller's frame; false at the end of what can be walked. May fault on a damaged stack.
bool StepToCaller(CONTEXT& context, bool isInnermost) {
    // A return address may be the first byte after its function, when the call never comes back.
    const DWORD64 lookUpAddress = isInnermost ? context.Rip : context.Rip - 1;
    constexpr DWORD executable = PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    MEMORY_BASIC_INFORMATION memory = {};
    if (!VirtualQuery(reinterpret_cast<const void*>(lookUpAddress), &memory, sizeof(memory)) ||
        memory.State != MEM_COMMIT || !(memory.Protect & executable)) {
        return false;
    }

    const DWORD64 previousStackPointer = context.Rsp;
    if (memory.Type == MEM_IMAGE) {
        UnwindImageFrame(context, reinterpret_cast<DWORD64>(memory.AllocationBase), lookUpAddress);
    } else if (!FollowFramePointer(context)) {
        return false;
    }
    return context.Rip != 0 && context.Rsp > previousStackPointer;
}

/// Fills `stack` from `context`, which is used up. Neither allocates nor takes a lock: the thread walked is stopped and
/// may hold any. Not inlined, and its last act a store: after a fault it is entered anew in the middle, so its frame
/// must still be there.
[[gnu::noinline]] void WalkStack(CONTEXT& context, ThreadStack& stack) {
    faultReturn.faulted = false;
    RtlCaptureContext(&faultReturn.context);
    if (faultReturn.faulted) {
        return;
    }
    faultReturn.walkingThreadId = GetCurrentThreadId();
    do {
        stack.frames[stack.frameCount++] = context.Rip;
    } while (stack.frameCount < kMaxFrames && StepToCaller(context, stack.frameCount == 1));
    faultReturn.walkingThreadId = 0;
}

void CollectOwnStack(ThreadStack& stack) {
    CONTEXT context = {};
    RtlCaptureContext(&context);
    WalkStack(context, stack);
}

/// Stops the thread, walks its stack and lets it run on. Leaves `stack` without frames when the thread is gone.
void CollectStoppedStack(ThreadStack& stack) {
    const CThreadHandle thread(
        OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_QUERY_INFORMATION, FALSE, stack.threadId));
    if (!thread || SuspendThread(thread.Get()) == static_cast<DWORD>(-1)) {
        return;
    }
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_CONTROL | CONTEXT_INTEGER;  // NOLINT(misc-redundant-expression): flags of one family
    if (GetThreadContext(thread.Get(), &context)) {
        WalkStack(context, stack);
    }
    ResumeThread(thread.Get());
}

/// One entry per thread of this process, frames still empty.
std::vector<ThreadStack> ListThreads() {
    std::vector<ThreadStack> stacks;
    const CSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = snapshot && Thread32First(snapshot.Get(), &entry); more;
         more = Thread32Next(snapshot.Get(), &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) {
            stacks.emplace_back().threadId = entry.th32ThreadID;
        }
    }
    return stacks;
}

/// One written line, cut off where it grows too long. Straight to the handle: the stream's lock may be held.
class COutputLine {
public:
    void Append(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(m_text + m_length, sizeof(m_text) - m_length, format, arguments);
        va_end(arguments);
        m_length += std::strlen(m_text + m_length);
    }

    void Write(HANDLE output) {
        m_text[m_length] = '\n';  // in place of the final zero
        DWORD written = 0;
        WriteFile(output, m_text, static_cast<DWORD>(m_length + 1), &written, nullptr);
    }

private:
    char m_text[kMaxLineLength] = {};
    size_t m_length = 0;
};

/// Names for the addresses of this process.
class CSymbols {
public:
    CSymbols() {
        // A handle of our own: the library keeps its state per handle, and the Java VM uses it with
        // GetCurrentProcess().
        const HANDLE self = GetCurrentProcess();
        DuplicateHandle(self, self, self, m_process.Receive(), 0, FALSE, DUPLICATE_SAME_ACCESS);
        SymSetOptions(SymGetOptions() | SYMOPT_LOAD_LINES | SYMOPT_UNDNAME);
        SymInitialize(m_process.Get(), nullptr, TRUE);
    }
    ~CSymbols() { SymCleanup(m_process.Get()); }

    CSymbols(const CSymbols&) = delete;
    CSymbols& operator=(const CSymbols&) = delete;

    /// Appends "module!function+0x1c (file:line)", or as much of it as is known. `lookUpAddress` lies inside the
    /// function; `address` is what the offset is counted to.
    void Describe(DWORD64 lookUpAddress, DWORD64 address, COutputLine& line) const {
        IMAGEHLP_MODULE64 module = {};
        module.SizeOfStruct = sizeof(module);
        if (!SymGetModuleInfo64(m_process.Get(), lookUpAddress, &module)) {
            line.Append("(generated code)");
            return;
        }
        struct {
            SYMBOL_INFO info;
            char restOfName[kMaxNameLength];
        } symbol = {};
        symbol.info.SizeOfStruct = sizeof(symbol.info);
        symbol.info.MaxNameLen = kMaxNameLength;
        DWORD64 offset = 0;
        if (SymFromAddr(m_process.Get(), lookUpAddress, &offset, &symbol.info)) {
            line.Append("%s!%s+0x%llx", module.ModuleName, symbol.info.Name, offset + (address - lookUpAddress));
        } else {
            line.Append("%s+0x%llx", module.ModuleName, address - module.BaseOfImage);
        }
        IMAGEHLP_LINE64 source = {};
        source.SizeOfStruct = sizeof(source);
        DWORD lineOffset = 0;
        if (SymGetLineFromAddr64(m_process.Get(), lookUpAddress, &lineOffset, &source)) {
            line.Append(" (%s:%lu)", source.FileName, source.LineNumber);
        }
    }

private:
    CThreadHandle m_process;
};

/// Appends "module+0x1c"; takes no lock and allocates nothing.
void DescribePlainly(DWORD64 address, COutputLine& line) {
    MEMORY_BASIC_INFORMATION memory = {};
    if (!VirtualQuery(reinterpret_cast<const void*>(address), &memory, sizeof(memory)) || memory.Type != MEM_IMAGE) {
        line.Append("(generated code)");
        return;
    }
    const auto imageBase = reinterpret_cast<DWORD64>(memory.AllocationBase);
    // A library's own name for itself; a program has none. The loader knows better, but only under its lock.
    const IMAGE_DATA_DIRECTORY& directory = FindImageDirectory(imageBase, IMAGE_DIRECTORY_ENTRY_EXPORT);
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(imageBase + directory.VirtualAddress);
    const char* name = directory.Size != 0 ? reinterpret_cast<const char*>(imageBase + exports->Name) : "program";
    line.Append("%s+0x%llx", name, address - imageBase);
}

/// `describeFrame(lookUpAddress, address, line)` appends what it knows of one frame.
template <typename DescribeFrame>
void PrintStack(HANDLE output, const ThreadStack& stack, DescribeFrame describeFrame) {
    COutputLine title;
    title.Append("thread %04lx%s%s", stack.threadId, stack.threadId == GetCurrentThreadId() ? " (this one)" : "",
                 stack.frameCount == 0 ? " cannot be read" : "");
    title.Write(output);
    for (size_t frame = 0; frame < stack.frameCount; ++frame) {
        const DWORD64 address = stack.frames[frame];
        COutputLine line;
        line.Append("  #%zu 0x%016llx ", frame, address);
        describeFrame(frame == 0 ? address : address - 1, address, line);
        line.Write(output);
    }
}

void CollectAllStacks() {
    areStacksCollected = false;
    walkedStacks = ListThreads();
    const CExceptionHandler guard(AddVectoredExceptionHandler(TRUE, ReturnFromFault));
    for (ThreadStack& stack : walkedStacks) {
        if (stack.threadId == GetCurrentThreadId()) {
            CollectOwnStack(stack);
        } else {
            CollectStoppedStack(stack);
        }
    }
    areStacksCollected = true;
}

}  // namespace

void PrintAllThreadStacks(HANDLE output) {
    const std::lock_guard<std::mutex> oneWalkAtATime(walkLock);

    CollectAllStacks();

    const CSymbols symbols;
    for (const ThreadStack& stack : walkedStacks) {
        PrintStack(output, stack, [&symbols](DWORD64 lookUpAddress, DWORD64 address, COutputLine& line) {
            symbols.Describe(lookUpAddress, address, line);
        });
    }
}

bool PrintCollectedStacksPlainly(HANDLE output) {
    if (!areStacksCollected) {
        return false;
    }
    for (const ThreadStack& stack : walkedStacks) {
        PrintStack(output, stack, [](DWORD64 /*lookUpAddress*/, DWORD64 address, COutputLine& line) {
            DescribePlainly(address, line);
        });
    }
    return true;
}
