#include "ReadExtended.h"

#include "ReadMachine.h"

namespace {

/// The roots of all drives ("C:\"), as Windows lists them: texts one after the other.
std::vector<std::wstring> ReadDrives() {
    std::wstring list(GetLogicalDriveStringsW(0, nullptr), L'\0');
    GetLogicalDriveStringsW(static_cast<DWORD>(list.size()), list.data());
    std::vector<std::wstring> drives;
    for (const wchar_t* drive = list.c_str(); *drive; drive += drives.back().size() + 1) {
        drives.emplace_back(drive);
    }
    return drives;
}

const wchar_t* NameKind(UINT driveType) {
    switch (driveType) {
        case DRIVE_FIXED:
            return L"fixed";
        case DRIVE_REMOTE:
            return L"network";
        case DRIVE_REMOVABLE:
            return L"removable";
        case DRIVE_CDROM:
            return L"optical";
        default:
            return L"other";
    }
}

/// A metric for each figure, with the drives as its instances.
std::vector<ExtendedMetric> ReadDisks() {
    ExtendedMetric kind{L"driveKind", {}};
    ExtendedMetric total{L"diskTotalBytes", {}};
    ExtendedMetric free{L"diskFreeBytes", {}};
    for (const std::wstring& drive : ReadDrives()) {
        kind.instances.push_back({drive, _variant_t(NameKind(GetDriveTypeW(drive.c_str())))});
        ULARGE_INTEGER totalBytes = {};
        ULARGE_INTEGER freeBytes = {};
        // A drive without a medium has no figures.
        if (GetDiskFreeSpaceExW(drive.c_str(), nullptr, &totalBytes, &freeBytes)) {
            total.instances.push_back({drive, _variant_t(totalBytes.QuadPart)});
            free.instances.push_back({drive, _variant_t(freeBytes.QuadPart)});
        }
    }
    return {kind, total, free};
}

ExtendedMetric ListLinkSpeeds(const std::vector<AdapterReading>& adapters) {
    ExtendedMetric speed{L"linkSpeedMbit", {}};
    for (const AdapterReading& adapter : adapters) {
        speed.instances.push_back({adapter.description, _variant_t(adapter.linkSpeedMbit)});
    }
    return speed;
}

}  // namespace

ExtendedReading ReadExtended() {
    const MachineReading machine = ReadMachine();
    SYSTEM_INFO system = {};
    GetNativeSystemInfo(&system);
    ExtendedReading reading;
    reading.texts = {
        {L"machine", _variant_t(machine.name.c_str())},
        {L"isDesktop", _variant_t(machine.isDesktop)},
        {L"pageSize", _variant_t(system.dwPageSize)},
        {L"adapters", _variant_t(static_cast<LONG>(machine.adapters.size()))},
    };
    reading.metrics = ReadDisks();
    reading.metrics.push_back(ListLinkSpeeds(machine.adapters));
    return reading;
}
