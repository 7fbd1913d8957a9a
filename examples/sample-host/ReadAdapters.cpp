#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include "FormatAddress.h"
#include "ReadMachine.h"

namespace {

constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
constexpr ULONG64 kBitsPerMegabit = 1000000;
/// What an adapter says that does not know its speed.
constexpr ULONG64 kUnknownSpeed = ~ULONG64{0};

std::wstring FormatMacAddress(const BYTE* bytes, ULONG count) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring text;
    for (ULONG i = 0; i < count; ++i) {
        if (i > 0) {
            text += L'-';
        }
        text += kDigits[bytes[i] / 16];
        text += kDigits[bytes[i] % 16];
    }
    return text;
}

AdapterReading ReadAdapter(const IP_ADAPTER_ADDRESSES& adapter, const IP_ADAPTER_UNICAST_ADDRESS& unicast) {
    const DWORD address = reinterpret_cast<const SOCKADDR_IN*>(unicast.Address.lpSockaddr)->sin_addr.s_addr;
    DWORD mask = 0;
    ConvertLengthToIpv4Mask(unicast.OnLinkPrefixLength, &mask);

    AdapterReading reading;
    reading.description = adapter.Description;
    reading.macAddress = FormatMacAddress(adapter.PhysicalAddress, adapter.PhysicalAddressLength);
    reading.ipAddress = FormatAddress(address);
    reading.subnetMask = FormatAddress(mask);
    reading.subnet = FormatAddress(address & mask);
    if (adapter.TransmitLinkSpeed != kUnknownSpeed) {
        reading.linkSpeedMbit = static_cast<LONG>(adapter.TransmitLinkSpeed / kBitsPerMegabit);
    }
    return reading;
}

/// The system's list of adapters; null where it has none to give.
const IP_ADAPTER_ADDRESSES* FetchAdapters(std::vector<BYTE>& buffer) {
    ULONG size = 16 * 1024;
    ULONG result = ERROR_BUFFER_OVERFLOW;
    // Again where the list has grown since its size was told.
    for (int tries = 0; result == ERROR_BUFFER_OVERFLOW && tries < 3; ++tries) {
        buffer.resize(size);
        result = GetAdaptersAddresses(AF_INET, kFlags, nullptr, reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()),
                                      &size);
    }
    return result == NO_ERROR ? reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(buffer.data()) : nullptr;
}

}  // namespace

std::vector<AdapterReading> ReadAdapters() {
    std::vector<AdapterReading> readings;
    std::vector<BYTE> buffer;
    for (const IP_ADAPTER_ADDRESSES* adapter = FetchAdapters(buffer); adapter; adapter = adapter->Next) {
        if (adapter->FirstUnicastAddress) {
            readings.push_back(ReadAdapter(*adapter, *adapter->FirstUnicastAddress));
        }
    }
    return readings;
}
