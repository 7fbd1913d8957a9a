#pragma once

#include <windows.h>

#include <comutil.h>

#include <string>
#include <vector>

// What the host has read of its machine, as plain data. The COM objects that the library asks and the report of what
// was sent are both made from it, so that they cannot disagree.

/// A metric or a property. Metrics are of the types I2, I4, I8, UI2, UI4, UI8, R4, R8 and BSTR: others are left out by
/// the library. Properties may be of any type, and are sent as text.
struct NamedValue {
    std::wstring name;
    _variant_t value;
};
using NamedValues = std::vector<NamedValue>;

/// What was measured at one node of a sample (the machine, a session, an application), and the nodes below it.
struct NodeReading {
    std::wstring key;
    SYSTEMTIME time = {};  ///< in UTC
    NamedValues metrics;
    std::vector<NodeReading> instances;
};

struct SessionReading {
    LONG id = 0;
    std::wstring sid;
    std::wstring user;
    std::wstring domain;
    SHORT state = 0;  ///< kSessionConnected, or another one of the host's
    NamedValues properties;
};
/// The one state that the library takes for connected.
constexpr SHORT kSessionConnected = 1;
constexpr SHORT kSessionDisconnected = 4;

/// A metric with a value for each of its instances, a disk for example.
struct ExtendedMetric {
    std::wstring name;
    NamedValues instances;
};
struct ExtendedReading {
    NamedValues texts;
    std::vector<ExtendedMetric> metrics;
};

struct RouteReading {
    NamedValues texts;
    std::wstring route;
};

struct AdapterReading {
    std::wstring description;
    std::wstring macAddress;
    std::wstring ipAddress;
    std::wstring subnetMask;
    std::wstring subnet;
    LONG linkSpeedMbit = 0;
};

struct MachineReading {
    std::wstring name;
    std::wstring fullyQualifiedName;
    std::wstring id;
    std::wstring virtualMachineId;
    bool isDesktop = false;
    LONG totalMemoryMb = 0;
    std::vector<AdapterReading> adapters;
};
