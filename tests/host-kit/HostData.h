#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CVariantValue.h"

// What the host's objects say, as plain data. A `name` is how the object appears in the record of calls.

/// How an enumerator strays from giving one item after the other. Positions count from 0; -1 is never.
struct WalkData {
    long failAt = -1;             ///< here every call fails with `failure`
    HRESULT failure = E_FAIL;     ///< see failAt
    long nullNameAt = -1;         ///< S_OK with a null name (key)
    long nullItemAt = -1;         ///< S_OK with a null instance, or a value left VT_EMPTY
    HRESULT endResult = S_FALSE;  ///< after the last item
};

/// A value under a name: a metric or a property. The value of an extended metric is an object that enumerates `items`;
/// each time it is asked for, it is a new one.
struct NameValueData {
    std::wstring name{};
    CVariantValue value{};
    bool isExtended = false;
    std::vector<NameValueData> items{};
    WalkData itemsWalk{};
};
using MetricData = NameValueData;
using PropertyData = NameValueData;

/// A metric whose value is an enumerator of the values of its instances.
[[nodiscard]] inline MetricData MakeExtendedMetric(std::wstring name, std::vector<NameValueData> items) {
    return {std::move(name), {}, true, std::move(items)};
}

struct InstanceData;

/// A node of a sample.
struct SampleData {
    DATE time = 0;
    std::vector<MetricData> metrics{};
    std::vector<InstanceData> instances{};
    WalkData metricsWalk{};
    WalkData instancesWalk{};
    std::string name = "Sample";
};

/// A node below another; in the record it has its parent's name, a slash, and its key.
struct InstanceData {
    std::wstring key{};
    SampleData sample{};
};

struct PropertyBoxData {
    std::string name = "PropertyBox";
    std::vector<PropertyData> properties{};
    WalkData walk{};
    HRESULT missingResult = DISP_E_UNKNOWNNAME;  ///< for a name that is not there
};

/// A user session; in the record it is "Session" and its id.
struct SessionData {
    LONG id = 0;
    std::wstring sid{};
    std::wstring user{};
    std::wstring domain{};
    SHORT state = 1;
    std::wstring label{};
    PropertyBoxData properties{};
};

struct NetworkInterfaceData {
    std::wstring description{};
    std::wstring macAddress{};
    std::wstring ipAddress{};
    std::wstring subnetMask{};
    std::wstring subnet{};
    LONG linkSpeed = 0;
};

/// What the array of network adapters looks like; as it is, a well-formed one.
struct NetworkArrayShape {
    bool isNull = false;
    ULONG elementSize = 56;  ///< a smaller element holds the fields that fit
    USHORT rank = 1;         ///< further dimensions have one element each
    LONG lowerBound = 0;     ///< of the first dimension
};

struct SystemData {
    std::wstring machineName{};
    std::wstring fqdn{};
    VARIANT_BOOL isDesktop = VARIANT_FALSE;
    LONG totalMemory = 0;
    std::wstring virtualMachineId{};
    std::wstring machineId{};
    std::wstring machineUniqueId{};
    std::vector<NetworkInterfaceData> networkInterfaces{};
    NetworkArrayShape networkArray{};
    PropertyBoxData componentsIdentities{};
};

/// One object with as many interfaces as there are parts of it: ISampleNode, IUserSessionInfo, IPropertyBox and, for
/// `values`, INameValueEnumerator.
struct DataObjectData {
    std::string name = "Data";
    std::optional<SampleData> sample{};
    std::optional<SessionData> session{};
    std::optional<PropertyBoxData> properties{};
    std::optional<std::vector<NameValueData>> values{};
    WalkData valuesWalk{};
};
