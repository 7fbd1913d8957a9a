#include "ReadMachine.h"

#include <versionhelpers.h>

#include "Text.h"

namespace {

constexpr DWORDLONG kBytesPerMegabyte = 1ULL << 20;

std::wstring ReadComputerName(COMPUTER_NAME_FORMAT format) {
    DWORD size = 0;
    GetComputerNameExW(format, nullptr, &size);
    std::wstring name(size, L'\0');
    // Without the closing zero in the length, once there is room for it.
    return GetComputerNameExW(format, name.data(), &size) ? name.substr(0, size) : std::wstring();
}

/// Made by the system's installation, and kept until the next one.
std::wstring ReadMachineGuid() {
    wchar_t guid[64] = L"";
    DWORD size = sizeof(guid);
    RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Cryptography", L"MachineGuid", RRF_RT_REG_SZ, nullptr, guid,
                 &size);
    return guid;
}

/// Stands for the id that a hypervisor would give. The narrow form: Wine has no other, and it is ASCII.
std::wstring ReadHardwareProfile() {
    HW_PROFILE_INFOA profile = {};
    return GetCurrentHwProfileA(&profile) ? FromUtf8(profile.szHwProfileGuid) : std::wstring();
}

LONG ReadTotalMemoryMb() {
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof(memory);
    return GlobalMemoryStatusEx(&memory) ? static_cast<LONG>(memory.ullTotalPhys / kBytesPerMegabyte) : 0;
}

}  // namespace

MachineReading ReadMachine() {
    MachineReading machine;
    machine.name = ReadComputerName(ComputerNamePhysicalNetBIOS);
    machine.fullyQualifiedName = ReadComputerName(ComputerNamePhysicalDnsFullyQualified);
    machine.id = ReadMachineGuid();
    machine.virtualMachineId = ReadHardwareProfile();
    machine.isDesktop = !IsWindowsServer();
    machine.totalMemoryMb = ReadTotalMemoryMb();
    machine.adapters = ReadAdapters();
    return machine;
}
