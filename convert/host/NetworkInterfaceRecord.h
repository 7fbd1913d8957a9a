#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>

/// One network adapter, as an element of the one-dimensional array that ISystemInfo::get_networkInterfaces gives. The
/// texts belong to the array.
struct NetworkInterfaceRecord {
    void* reserved;    ///< the host's own; the library does not read it
    BSTR description;  ///< the adapter's name
    BSTR macAddress;   ///< as text
    BSTR ipAddress;    ///< as text
    BSTR subnetMask;   ///< as text
    BSTR subnet;       ///< as text
    LONG linkSpeed;    ///< as the host measures it; handed on unchanged
    LONG padding;      ///< to the size of the record
};

static_assert(sizeof(NetworkInterfaceRecord) == 56);
static_assert(offsetof(NetworkInterfaceRecord, description) == 8);
static_assert(offsetof(NetworkInterfaceRecord, macAddress) == 16);
static_assert(offsetof(NetworkInterfaceRecord, ipAddress) == 24);
static_assert(offsetof(NetworkInterfaceRecord, subnetMask) == 32);
static_assert(offsetof(NetworkInterfaceRecord, subnet) == 40);
static_assert(offsetof(NetworkInterfaceRecord, linkSpeed) == 48);
