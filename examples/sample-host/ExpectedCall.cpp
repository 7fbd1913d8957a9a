#include "ExpectedCall.h"

#include <oleauto.h>

#include <cmath>

#include "Text.h"

namespace {

/// Of the messages that the server hears, 6.2, as this library speaks it.
constexpr int kMessageVersion = 0x60200;
constexpr wchar_t kAgentVersion[] = L"6.2.0.3274634";

Json TypedInt(LONG value) {
    return {{"int", value}};
}

Json TypedLong(__int64 value) {
    return {{"long", value}};
}

/// JSON knows no infinities and no NaN: they are texts.
Json TypedDouble(double value) {
    if (std::isnan(value)) {
        return {{"double", "NaN"}};
    }
    if (std::isinf(value)) {
        return {{"double", value > 0 ? "Infinity" : "-Infinity"}};
    }
    return {{"double", value}};
}

/// As Java has it: whole seconds, told in milliseconds since 1970.
Json TypedTime(const SYSTEMTIME& time) {
    constexpr __int64 kTicksPerSecond = 10000000;
    constexpr __int64 kSecondsTo1970 = 11644473600;
    FILETIME fileTime = {};
    SystemTimeToFileTime(&time, &fileTime);
    const ULARGE_INTEGER ticks{{fileTime.dwLowDateTime, fileTime.dwHighDateTime}};
    return TypedLong((static_cast<__int64>(ticks.QuadPart) / kTicksPerSecond - kSecondsTo1970) * 1000);
}

/// Whole numbers of all sizes are longs to the server, and fractions of all sizes doubles.
Json MetricValue(const VARIANT& value) {
    switch (V_VT(&value)) {
        case VT_I2:
            return TypedLong(V_I2(&value));
        case VT_I4:
            return TypedLong(V_I4(&value));
        case VT_I8:
            return TypedLong(V_I8(&value));
        case VT_UI2:
            return TypedLong(V_UI2(&value));
        case VT_UI4:
            return TypedLong(V_UI4(&value));
        case VT_UI8:
            return TypedLong(static_cast<__int64>(V_UI8(&value)));
        case VT_R4:
            return TypedDouble(V_R4(&value));
        case VT_R8:
            return TypedDouble(V_R8(&value));
        default:
            return ToUtf8(V_BSTR(&value));
    }
}

Json Metrics(const NamedValues& values) {
    Json metrics = Json::array();
    for (const NamedValue& value : values) {
        metrics.push_back({{"name", ToUtf8(value.name)}, {"value", MetricValue(value.value)}});
    }
    return metrics;
}

Json RemoteApps(const NodeReading& session) {
    Json apps = Json::array();
    for (const NodeReading& app : session.instances) {
        apps.push_back({{"id", ToUtf8(app.key)}, {"properties", Json::array()}, {"metrics", Metrics(app.metrics)}});
    }
    return apps;
}

Json Adapters(const MachineReading& machine) {
    Json adapters = Json::array();
    for (const AdapterReading& adapter : machine.adapters) {
        adapters.push_back({{"description", ToUtf8(adapter.description)},
                            {"macAddress", ToUtf8(adapter.macAddress)},
                            {"ipAddress", ToUtf8(adapter.ipAddress)},
                            {"subnetMask", ToUtf8(adapter.subnetMask)},
                            {"subnet", ToUtf8(adapter.subnet)},
                            {"linkSpeed", TypedInt(adapter.linkSpeedMbit)}});
    }
    return adapters;
}

/// A value that has no text is sent as an empty one.
std::string TextOf(const VARIANT& value) {
    _variant_t text(value);
    return SUCCEEDED(VariantChangeType(&text, &text, 0, VT_BSTR)) ? ToUtf8(V_BSTR(&text)) : std::string();
}

}  // namespace

Json ExpectedConnection(const MachineReading& machine, const std::wstring& authToken) {
    return {{"id", ToUtf8(machine.id)},
            {"authToken", ToUtf8(authToken)},
            {"uniqueId", ToUtf8(machine.virtualMachineId)},
            {"version", TypedInt(kMessageVersion)},
            {"deviceType", machine.isDesktop ? "DESKTOP" : "SERVER"}};
}

Json ExpectedClientDescriptor(const MachineReading& machine) {
    return ToUtf8(L"<client><type>DesktopAgent</type><name>" + machine.name + L"</name><id>" + machine.id +
                  L"</id><version>" + kAgentVersion + L"</version><uniqueid>" + machine.virtualMachineId +
                  L"</uniqueid></client>");
}

Json ExpectedDesktop(const MachineReading& machine) {
    return {{"name", ToUtf8(machine.name)},
            {"fqdn", ToUtf8(machine.fullyQualifiedName)},
            {"totalMemory", TypedInt(machine.totalMemoryMb)},
            {"networkInterfaces", Adapters(machine)}};
}

Json ExpectedSession(const SessionReading& session, const NodeReading* figures) {
    return {{"id", TypedInt(session.id)},
            {"sid", ToUtf8(session.sid)},
            {"user", ToUtf8(session.user)},
            {"domain", ToUtf8(session.domain)},
            {"connected", session.state == kSessionConnected},
            {"properties", ExpectedTexts(session.properties)},
            {"metrics", figures ? Metrics(figures->metrics) : Json::array()},
            {"remoteApps", figures ? RemoteApps(*figures) : Json::array()}};
}

Json ExpectedSample(const NodeReading& machine, const SessionReading& session) {
    Json sessions = Json::array();
    for (const NodeReading& node : machine.instances) {
        sessions.push_back(ExpectedSession(session, &node));
    }
    return {{"time", TypedTime(machine.time)}, {"metrics", Metrics(machine.metrics)}, {"sessions", sessions}};
}

Json ExpectedExtendedSample(const ExtendedReading& reading, const SYSTEMTIME& time) {
    Json metrics = Json::array();
    for (const ExtendedMetric& metric : reading.metrics) {
        metrics.push_back({{"name", ToUtf8(metric.name)}, {"instances", Metrics(metric.instances)}});
    }
    return {{"time", TypedTime(time)}, {"metrics", metrics}, {"sessions", Json::array()}};
}

Json ExpectedTexts(const NamedValues& values) {
    Json texts = Json::array();
    for (const NamedValue& value : values) {
        texts.push_back(Json::array({ToUtf8(value.name), TextOf(value.value)}));
    }
    return texts;
}

Json ExpectedText(const std::wstring& text) {
    return ToUtf8(text);
}

Json ExpectedId(unsigned __int64 id) {
    return TypedLong(static_cast<__int64>(id));
}
