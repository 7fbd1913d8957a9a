#include "CMeasurements.h"

#include "ReadProcesses.h"

namespace {

constexpr double kPercent = 100.0;

MEMORYSTATUSEX ReadMemory() {
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    return memory;
}

SYSTEM_INFO ReadSystem() {
    SYSTEM_INFO system = {};
    GetNativeSystemInfo(&system);
    return system;
}

NodeReading ReadSessionNode(LONG sessionId, const SYSTEMTIME& time) {
    NodeReading session;
    session.key = std::to_wstring(sessionId);
    session.time = time;
    session.instances = ReadProcesses(sessionId, time);
    session.metrics = SumUpProcesses(session.instances);
    return session;
}

}  // namespace

SYSTEMTIME ReadTime() {
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    return now;
}

NodeReading CMeasurements::ReadSample(LONG sessionId) {
    const MEMORYSTATUSEX memory = ReadMemory();
    const SYSTEM_INFO system = ReadSystem();
    NodeReading machine;
    machine.time = ReadTime();
    // Each in the type that its source has.
    machine.metrics = {
        {L"processorLoadPercent", _variant_t(ReadProcessorLoad())},
        {L"processors", _variant_t(system.dwNumberOfProcessors)},
        {L"processorLevel", _variant_t(system.wProcessorLevel)},
        {L"memoryLoadPercent", _variant_t(static_cast<LONG>(memory.dwMemoryLoad))},
        {L"memoryTotalBytes", _variant_t(memory.ullTotalPhys)},
        {L"memoryFreeBytes", _variant_t(static_cast<__int64>(memory.ullAvailPhys))},
        {L"memoryFreeShare",
         _variant_t(static_cast<float>(memory.ullAvailPhys) / static_cast<float>(memory.ullTotalPhys))},
        {L"upMilliseconds", _variant_t(static_cast<unsigned __int64>(GetTickCount64()))},
    };
    machine.instances.push_back(ReadSessionNode(sessionId, machine.time));
    return machine;
}

/// In percent since the last call; since the system's start the first time.
double CMeasurements::ReadProcessorLoad() {
    FILETIME idle = {};
    FILETIME kernel = {};  // with the idle time
    FILETIME user = {};
    GetSystemTimes(&idle, &kernel, &user);
    const double newIdle = ToSeconds(idle);
    const double newTotal = ToSeconds(kernel) + ToSeconds(user);
    const double passed = newTotal - m_total;
    const double load = passed > 0 ? kPercent * (1 - (newIdle - m_idle) / passed) : 0;
    m_idle = newIdle;
    m_total = newTotal;
    return load;
}
