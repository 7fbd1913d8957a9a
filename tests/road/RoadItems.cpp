#include "RoadItems.h"

#include <algorithm>
#include <cstdint>
#include <sstream>

#include "DataType.h"

namespace {

constexpr unsigned char kNamelessKind = 200;
constexpr DATE kTime = 45000.25;

SessionData MakeSession() {
    SessionData session;
    session.id = 7;
    session.sid = L"S-1-5-21-7";
    session.user = L"us\u00e9r";
    session.domain = L"DOMAIN";
    session.label = kRoadUser;
    session.properties.properties = {
        {L"client", MakeText(L"desk \"8\"")}, {L"colours", MakeInt(32)}, {L"nothing", MakeEmpty()}};
    return session;
}

/// Each type that a metric can have, and one that it cannot.
std::vector<MetricData> MakeMetrics(unsigned __int64 number) {
    return {{L"number", MakeScalar(VT_UI8, number)},
            {L"I2", MakeShort(-2)},
            {L"I4", MakeInt(-2147483647)},
            {L"UI2", MakeScalar(VT_UI2, 65535)},
            {L"UI4", MakeUnsigned(4294967295)},
            {L"I8", MakeInt64(-9007199254740993)},
            {L"flag", MakeBool(true)},
            {L"R4", MakeFloat(0.1F)},
            {L"R8", MakeDouble(-12.5)},
            {L"text", MakeText(L"gr\u00fc\u00df \u4e2d")},
            {L"no text", MakeNullText()}};
}

/// The second has no metrics, and so is nothing to tell of.
std::vector<InstanceData> MakeApps() {
    SampleData busy;
    busy.time = kTime;
    busy.metrics = {{L"cpu", MakeDouble(1.5)}};
    return {{L"busy.exe", busy}, {L"idle.exe", {}}};
}

SampleData MakeFigures(unsigned __int64 number) {
    SampleData figures;
    figures.time = kTime;
    figures.metrics = MakeMetrics(number);
    figures.instances = MakeApps();
    return figures;
}

/// With a session that the host knows, and one that it does not know any more.
SampleData MakeSample(unsigned __int64 number) {
    SampleData session;
    session.time = kTime;
    session.metrics = {{L"load", MakeDouble(0.5)}};
    session.instances = MakeApps();
    SampleData sample;
    sample.time = kTime;
    sample.metrics = MakeMetrics(number);
    sample.instances = {{L"7", session}, {L"8", session}};
    return sample;
}

CHostReference<IUnknown> MakeEvent(const CRecordPointer& record) {
    DataObjectData data;
    data.session = MakeSession();
    return MakeDataObject(record, std::move(data));
}

CHostReference<IUnknown> MakeLogoff(const CRecordPointer& record, unsigned __int64 number) {
    DataObjectData data;
    data.session = MakeSession();
    data.sample = MakeFigures(number);
    return MakeDataObject(record, std::move(data));
}

CHostReference<IUnknown> MakeSampleObject(const CRecordPointer& record, unsigned __int64 number) {
    DataObjectData data;
    data.sample = MakeSample(number);
    return MakeDataObject(record, std::move(data));
}

CHostReference<IUnknown> MakeExtendedData(const CRecordPointer& record, unsigned __int64 number) {
    PropertyBoxData meta;
    meta.properties = {{L"kind", MakeText(L"disk")}, {L"count", MakeInt(2)}, {L"unit", MakeText(L"\u00b5s")}};
    const auto metaData = MakePropertyBox(record, std::move(meta));
    const auto metrics = MakeNameValueEnumerator(
        record, "Metrics",
        {MakeExtendedMetric(L"disk", {{L"C:", MakeDouble(0.25)}, {L"D:", MakeScalar(VT_UI8, number)}}),
         MakeExtendedMetric(L"tape", {})});
    DataObjectData data;
    data.sample.emplace().time = kTime;
    data.properties.emplace().properties = {{L"meta-data", MakeInterface(metaData.Get())},
                                            {L"metrics", MakeInterface(metrics.Get())}};
    return MakeDataObject(record, std::move(data));
}

CHostReference<IUnknown> MakeRoute(const CRecordPointer& record, unsigned __int64 number) {
    PropertyBoxData meta;
    meta.properties = {{L"target", MakeText(L"192.0.2.1")}, {L"hops", MakeInt(2)}};
    const auto metadata = MakePropertyBox(record, std::move(meta));
    DataObjectData data;
    data.properties.emplace().properties = {
        {L"metadata", MakeInterface(metadata.Get())},
        {L"route", MakeText(L"192.0.2.254\r\n192.0.2.1\t" + std::to_wstring(number))}};
    return MakeDataObject(record, std::move(data));
}

// What the objects above are in the server's record.

const std::string kConnection =
    R"("connection":{"id":"part \"9\"","authToken":"the token","uniqueId":"vm 7","version":{"int":393728},)"
    R"("deviceType":"DESKTOP"})";
const std::string kDescriptor =
    R"("clientDescriptor":"<client><type>DesktopAgent</type><name>desk \u00e9\u4e2d</name><id>part \"9\"</id>)"
    R"(<version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>")";
const std::string kDesktop =
    R"("desktop":{"name":"desk \u00e9\u4e2d","fqdn":"desk.example.org","totalMemory":{"int":16384},)"
    R"("networkInterfaces":[{"description":"wire","macAddress":"02-00-00-00-00-07","ipAddress":"192.0.2.7",)"
    R"("subnetMask":"255.255.255.0","subnet":"192.0.2.0","linkSpeed":{"int":1000}},{"description":"\u00e9ther",)"
    R"("macAddress":"","ipAddress":"","subnetMask":"","subnet":"","linkSpeed":{"int":-1}}]})";
const std::string kApps =
    R"("remoteApps":[{"id":"busy.exe","properties":[],"metrics":[{"name":"cpu","value":{"double":1.5}}]}])";
const std::string kTimeLine = R"("time":{"long":1678860000000})";

std::string NumberLine(unsigned __int64 number) {
    return R"({"long":)" + std::to_string(static_cast<std::int64_t>(number)) + "}";
}

std::string IdLine(unsigned __int64 number) {
    return R"("id":)" + NumberLine(number);
}

std::string MetricsLine(unsigned __int64 number) {
    return R"("metrics":[{"name":"number","value":)" + NumberLine(number) +
           R"(},{"name":"I2","value":{"long":-2}},{"name":"I4","value":{"long":-2147483647}},)"
           R"({"name":"UI2","value":{"long":65535}},{"name":"UI4","value":{"long":4294967295}},)"
           R"({"name":"I8","value":{"long":-9007199254740993}},{"name":"R4","value":{"double":0.10000000149011612}},)"
           R"({"name":"R8","value":{"double":-12.5}},{"name":"text","value":"gr\u00fc\u00df \u4e2d"},)"
           R"({"name":"no text","value":""}])";
}

std::string SessionLine(const std::string& metrics, const std::string& apps) {
    return R"({"id":{"int":7},"sid":"S-1-5-21-7","user":"us\u00e9r","domain":"DOMAIN","connected":true,)"
           R"("properties":[["client","desk \"8\""],["colours","32"],["nothing",""]],)" +
           metrics + "," + apps + "}";
}

const std::string kBareSession = R"("session":)" + SessionLine(R"("metrics":[])", R"("remoteApps":[])");

std::string SampleLine(unsigned __int64 number) {
    return R"("sample":{)" + kTimeLine + "," + MetricsLine(number) + R"(,"sessions":[)" +
           SessionLine(R"("metrics":[{"name":"load","value":{"double":0.5}}])", kApps) + "]}";
}

std::string ExtendedLine(unsigned __int64 number) {
    return R"("metaData":[["count","2"],["kind","disk"],["unit","\u00b5s"]],"sample":{)" + kTimeLine +
           R"(,"metrics":[{"name":"disk","instances":[{"name":"C:","value":{"double":0.25}},{"name":"D:","value":)" +
           NumberLine(number) + R"(}]},{"name":"tape"}],"sessions":[]})";
}

std::string RouteLine(unsigned __int64 number) {
    return R"("metaData":[["hops","2"],["target","192.0.2.1"]],"result":"192.0.2.254\r\n192.0.2.1\t)" +
           std::to_string(number) + R"(")";
}

/// Of an array of pairs; no text in it looks like the end of a pair.
std::string SortPairs(const std::string& pairs) {
    static const std::string kSeparator = "],[";
    std::vector<std::string> sorted;
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + kSeparator.size()) {
        end = pairs.find(kSeparator, begin);
        sorted.push_back(pairs.substr(begin, end == std::string::npos ? end : end - begin));
    }
    std::sort(sorted.begin(), sorted.end());
    std::string joined;
    for (const std::string& pair : sorted) {
        joined += (joined.empty() ? "" : kSeparator) + pair;
    }
    return joined;
}

}  // namespace

SystemData MakeRoadSystem() {
    SystemData system;
    system.machineName = L"desk \u00e9\u4e2d";
    system.fqdn = L"desk.example.org";
    system.isDesktop = VARIANT_TRUE;
    system.totalMemory = 16384;
    system.virtualMachineId = L"vm 7";
    system.machineId = L"machine 7";
    system.machineUniqueId = L"unique 7";
    system.networkInterfaces = {{L"wire", L"02-00-00-00-00-07", L"192.0.2.7", L"255.255.255.0", L"192.0.2.0", 1000},
                                {L"\u00e9ther", L"", L"", L"", L"", -1}};
    system.componentsIdentities.properties = {{L"Calderin", MakeText(L"part \"9\"")}};
    return system;
}

CHostReference<ISessionCollection> MakeRoadSessions(CRecordPointer record) {
    return MakeSessionCollection(std::move(record), {MakeSession()});
}

std::vector<RoadItem> MakeRoadItems(const CRecordPointer& record, unsigned __int64 number) {
    const std::string event = kConnection + "," + IdLine(number) + "," + kBareSession;
    std::vector<RoadItem> items;
    const auto add = [&](unsigned char type, CHostReference<IUnknown> data, const char* method,
                         const std::string& arguments) {
        items.push_back({type, number, std::move(data), method, *method ? MakeLine(method, arguments) : ""});
    };
    add(eUserSessionStart, MakeEvent(record), "", "");
    add(eUserSessionLogon, MakeEvent(record), "onUserLogon",
        kConnection + "," + kDesktop + "," + IdLine(number) + "," + kBareSession);
    add(eUserSessionLogoff, MakeLogoff(record, number), "onUserLogoff",
        kConnection + "," + IdLine(number) + R"(,"session":)" + SessionLine(MetricsLine(number), kApps));
    add(eUserSessionRefresh, MakeEvent(record), "refreshSession",
        kConnection + "," + IdLine(number) + "," + kDesktop + "," + kBareSession);
    add(eUserSessionReconnect, MakeEvent(record), "onUserReconnect", event);
    add(eUserSessionDisconnect, MakeEvent(record), "onUserDisconnect", event);
    add(eUserSessionEnd, MakeEvent(record), "", "");
    add(eExtendedData, MakeExtendedData(record, number), "onExtendedDataCollected",
        kConnection + "," + ExtendedLine(number));
    add(eStartup, {}, "onStartup", kDescriptor + "," + kConnection);
    add(eSample, MakeSampleObject(record, number), "onDataCollected", kConnection + "," + SampleLine(number));
    add(eTraceRoute, MakeRoute(record, number), "onActionPerformed", kConnection + "," + RouteLine(number));
    add(kNamelessKind, MakeEvent(record), "", "");
    add(kDesktopPoll, {}, "onDesktopPoll", kConnection + "," + IdLine(number) + R"(,"data":"")");
    return items;
}

std::string MakeStartupLine() {
    return MakeLine("onStartup", kDescriptor + "," + kConnection);
}

std::string JoinLines(const std::vector<RoadItem>& items) {
    std::string lines;
    for (const RoadItem& item : items) {
        lines += item.line;
    }
    return lines;
}

std::string MakeLine(const std::string& method, const std::string& arguments) {
    return R"({"method":")" + method + R"(","arguments":{)" + arguments + "}}\n";
}

std::string SortMaps(const std::string& record) {
    static const std::string kBegin = R"("metaData":[[)";
    std::string sorted;
    std::size_t done = 0;
    for (std::size_t map = record.find(kBegin); map != std::string::npos; map = record.find(kBegin, done)) {
        const std::size_t pairs = map + kBegin.size();
        const std::size_t end = record.find("]]", pairs);
        sorted += record.substr(done, pairs - done) + SortPairs(record.substr(pairs, end - pairs));
        done = end;
    }
    return sorted + record.substr(done);
}
