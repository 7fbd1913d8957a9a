#include "TraceRoute.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <icmpapi.h>

#include "FormatAddress.h"

namespace {

constexpr UCHAR kMostHops = 30;
constexpr DWORD kTimeoutMs = 1000;
constexpr DWORD kPayloadSize = 32;

/// Winsock, for as long as names are looked up.
class CWinsock {
public:
    CWinsock() noexcept {
        WSADATA data = {};
        m_isStarted = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~CWinsock() {
        if (m_isStarted) {
            WSACleanup();
        }
    }
    CWinsock(const CWinsock&) = delete;
    CWinsock& operator=(const CWinsock&) = delete;

private:
    bool m_isStarted;
};

std::wstring GetHost(const std::wstring& url) {
    const std::size_t slashes = url.find(L"//");
    const std::size_t start = slashes == std::wstring::npos ? 0 : slashes + 2;
    const bool isBracketed = start < url.size() && url[start] == L'[';  // an IPv6 address
    const std::size_t end = isBracketed ? url.find(L']', start) + 1 : url.find_first_of(L":/", start);
    return url.substr(start, end - start);
}

/// 0 where there is no IPv4 address of that name.
DWORD LookUp(const std::wstring& host) {
    ADDRINFOW wanted = {};
    wanted.ai_family = AF_INET;
    ADDRINFOW* found = nullptr;
    if (GetAddrInfoW(host.c_str(), nullptr, &wanted, &found) != 0) {
        return 0;
    }
    const DWORD address = reinterpret_cast<const SOCKADDR_IN*>(found->ai_addr)->sin_addr.s_addr;
    FreeAddrInfoW(found);
    return address;
}

/// The hops up to the target; empty where no echo request can be sent.
std::wstring TraceHops(DWORD target, ULONG& hops) {
    std::wstring route;
    const HANDLE icmp = IcmpCreateFile();
    if (icmp == INVALID_HANDLE_VALUE) {
        return route;
    }
    char payload[kPayloadSize] = {};
    // Room for an error message as well, and for what the system keeps behind the answer.
    alignas(ICMP_ECHO_REPLY) BYTE answer[sizeof(ICMP_ECHO_REPLY) + kPayloadSize + 64] = {};
    const auto& reply = *reinterpret_cast<const ICMP_ECHO_REPLY*>(answer);
    bool isReached = false;
    for (UCHAR hop = 1; hop <= kMostHops && !isReached; ++hop) {
        IP_OPTION_INFORMATION options = {};
        options.Ttl = hop;
        if (IcmpSendEcho(icmp, target, payload, kPayloadSize, &options, answer, sizeof(answer), kTimeoutMs) == 0) {
            if (GetLastError() != IP_REQ_TIMED_OUT) {
                break;
            }
            route += std::to_wstring(hop) + L" *\n";
        } else {
            route += std::to_wstring(hop) + L' ' + FormatAddress(reply.Address) + L' ' +
                     std::to_wstring(reply.RoundTripTime) + L" ms\n";
            isReached = reply.Status != IP_TTL_EXPIRED_TRANSIT;
        }
        hops = hop;
    }
    IcmpCloseHandle(icmp);
    return route;
}

std::wstring ListRoutes() {
    ULONG size = 0;
    GetIpForwardTable(nullptr, &size, TRUE);
    std::vector<BYTE> buffer(size);
    auto* const table = reinterpret_cast<MIB_IPFORWARDTABLE*>(buffer.data());
    std::wstring routes;
    if (size == 0 || GetIpForwardTable(table, &size, TRUE) != NO_ERROR) {
        return routes;
    }
    for (DWORD i = 0; i < table->dwNumEntries; ++i) {
        const MIB_IPFORWARDROW& row = table->table[i];
        routes += FormatAddress(row.dwForwardDest) + L" mask " + FormatAddress(row.dwForwardMask) + L" via " +
                  FormatAddress(row.dwForwardNextHop) + L'\n';
    }
    return routes;
}

}  // namespace

RouteReading TraceRoute(const std::wstring& url) {
    const CWinsock winsock;
    const std::wstring host = GetHost(url);
    const DWORD target = LookUp(host);
    ULONG hops = 0;
    RouteReading reading;
    reading.route = TraceHops(target, hops);
    const bool isTraced = !reading.route.empty();
    if (!isTraced) {
        reading.route = ListRoutes();
    }
    reading.texts = {
        {L"target", _variant_t(host.c_str())},
        {L"address", _variant_t(FormatAddress(target).c_str())},
        {L"hops", _variant_t(static_cast<LONG>(hops))},
        {L"isTraced", _variant_t(isTraced)},
    };
    return reading;
}
