#include "ReadProcesses.h"

#include <psapi.h>
#include <tlhelp32.h>

#include "Handles.h"

namespace {

constexpr double kTicksPerSecond = 1e7;
constexpr wchar_t kThreads[] = L"threads";
constexpr wchar_t kWorkingSet[] = L"workingSetBytes";

/// What only a process's handle tells.
void AddUse(DWORD processId, NamedValues& metrics) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    if (!process) {
        return;
    }
    PROCESS_MEMORY_COUNTERS memory = {};
    if (GetProcessMemoryInfo(process.get(), &memory, sizeof(memory))) {
        metrics.push_back({kWorkingSet, _variant_t(static_cast<unsigned __int64>(memory.WorkingSetSize))});
        metrics.push_back({L"pageFaults", _variant_t(memory.PageFaultCount)});
    }
    FILETIME created = {};
    FILETIME exited = {};
    FILETIME kernel = {};
    FILETIME user = {};
    if (GetProcessTimes(process.get(), &created, &exited, &kernel, &user)) {
        metrics.push_back({L"kernelSeconds", _variant_t(ToSeconds(kernel))});
        metrics.push_back({L"userSeconds", _variant_t(ToSeconds(user))});
    }
}

NodeReading ReadProcess(const PROCESSENTRY32W& entry, const SYSTEMTIME& time) {
    NodeReading process;
    process.key = std::wstring(entry.szExeFile) + L" (" + std::to_wstring(entry.th32ProcessID) + L")";
    process.time = time;
    process.metrics = {
        {kThreads, _variant_t(entry.cntThreads)},
        {L"basePriority", _variant_t(static_cast<short>(entry.pcPriClassBase))},
        {L"image", _variant_t(entry.szExeFile)},
    };
    AddUse(entry.th32ProcessID, process.metrics);
    return process;
}

bool IsInSession(DWORD processId, LONG sessionId) {
    DWORD id = 0;
    return ProcessIdToSessionId(processId, &id) && static_cast<LONG>(id) == sessionId;
}

}  // namespace

std::vector<NodeReading> ReadProcesses(LONG sessionId, const SYSTEMTIME& time) {
    std::vector<NodeReading> processes;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return processes;
    }
    const UniqueHandle closed(snapshot);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL found = Process32FirstW(snapshot, &entry); found; found = Process32NextW(snapshot, &entry)) {
        if (IsInSession(entry.th32ProcessID, sessionId)) {
            processes.push_back(ReadProcess(entry, time));
        }
    }
    return processes;
}

NamedValues SumUpProcesses(const std::vector<NodeReading>& processes) {
    ULONG threads = 0;
    unsigned __int64 workingSet = 0;
    for (const NodeReading& process : processes) {
        for (const NamedValue& metric : process.metrics) {
            if (metric.name == kThreads) {
                threads += metric.value.ulVal;
            } else if (metric.name == kWorkingSet) {
                workingSet += metric.value.ullVal;
            }
        }
    }
    return {
        {L"processes", _variant_t(static_cast<unsigned short>(processes.size()))},
        {kThreads, _variant_t(threads)},
        {kWorkingSet, _variant_t(workingSet)},
    };
}

double ToSeconds(const FILETIME& duration) {
    return static_cast<double>(ULARGE_INTEGER{{duration.dwLowDateTime, duration.dwHighDateTime}}.QuadPart) /
           kTicksPerSecond;
}
