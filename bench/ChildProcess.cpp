#include "ChildProcess.h"

#include <windows.h>

#include <stdexcept>

#include "CUniqueHandle.h"
#include "ProductName.h"

namespace {

constexpr DWORD kMostMilliseconds = 120000;

struct HandleTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
using CHandle = CUniqueHandle<HandleTraits>;

std::wstring MakeCommandLine(const std::string& phase) {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    return L"\"" + std::wstring(program) + L"\" --product \"" + ProductName() + L"\" --phase " +
           std::wstring(phase.begin(), phase.end());
}

/// A pipe of which a child inherits the end that is written to.
void MakePipe(CHandle& readEnd, CHandle& writeEnd) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (!CreatePipe(readEnd.Receive(), writeEnd.Receive(), &inherited, 0) ||
        !SetHandleInformation(readEnd.Get(), HANDLE_FLAG_INHERIT, 0)) {
        throw std::runtime_error("there is no pipe for a process of its own");
    }
}

CHandle Start(std::wstring commandLine, HANDLE output) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) {
        throw std::runtime_error("a process of its own does not start");
    }
    CloseHandle(process.hThread);
    return CHandle(process.hProcess);
}

/// What is written until nobody is left who could write.
std::string ReadAll(HANDLE pipe) {
    std::string text;
    char part[512];
    DWORD bytes = 0;
    while (ReadFile(pipe, part, sizeof part, &bytes, nullptr) && bytes > 0) {
        text.append(part, bytes);
    }
    return text;
}

}  // namespace

std::string RunPhaseInChild(const std::string& phase) {
    CHandle readEnd;
    CHandle writeEnd;
    MakePipe(readEnd, writeEnd);
    const CHandle process = Start(MakeCommandLine(phase), writeEnd.Get());
    writeEnd.Reset();

    // The few words that it prints fit into the pipe, so it never waits for a reader.
    if (WaitForSingleObject(process.Get(), kMostMilliseconds) != WAIT_OBJECT_0) {
        TerminateProcess(process.Get(), 1);
        throw std::runtime_error("the phase " + phase + " does not end");
    }
    DWORD exitCode = 1;
    GetExitCodeProcess(process.Get(), &exitCode);
    if (exitCode != 0) {
        throw std::runtime_error("the phase " + phase + " failed");
    }
    return ReadAll(readEnd.Get());
}
