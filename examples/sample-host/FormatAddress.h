#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

#include <string>

/// An IPv4 address, in the network's byte order as everywhere in Windows' network interfaces.
inline std::wstring FormatAddress(DWORD address) {
    IN_ADDR inAddress = {};
    inAddress.s_addr = address;
    wchar_t text[INET_ADDRSTRLEN] = L"";
    InetNtopW(AF_INET, &inAddress, text, INET_ADDRSTRLEN);
    return text;
}
