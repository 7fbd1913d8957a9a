#include "Workloads.h"

#include "DataType.h"

namespace {

constexpr unsigned char kDesktopPoll = 255;
constexpr unsigned char kUnnamed = 11;

constexpr int kExtendedMetrics = 50;
constexpr int kInstances = 20;

constexpr SampleSize kServerSize{60, 40, 30, 5, 6, 8};

constexpr SampleSize Times(int factor, SampleSize size) {
    size.metrics *= factor;
    size.sessions *= factor;
    return size;
}

std::string Describe(const SampleSize& size) {
    std::string text = std::to_string(size.metrics) + " metrics";
    if (size.sessions > 0) {
        text += ", " + std::to_string(size.sessions) + (size.sessions == 1 ? " session of " : " sessions of ") +
                std::to_string(size.sessionMetrics);
    }
    if (size.applications > 0) {
        text += ", " + std::to_string(size.properties) + " properties and " + std::to_string(size.applications) +
                " applications of " + std::to_string(size.applicationMetrics);
    }
    return text;
}

Workload MakeSample(CLeanHost& host, const char* name, const SampleSize& size) {
    return {name, Describe(size), eSample, &host.MakeSample(size), size.CountMetrics()};
}

}  // namespace

std::vector<Workload> MakeWorkloads(CLeanHost& host) {
    // One of the server's sessions by itself.
    SampleSize oneSession = kServerSize;
    oneSession.metrics = 0;
    oneSession.sessions = 1;
    IUnknown& session = host.MakeSession(oneSession);
    IUnknown& extended = host.MakeExtendedData(kExtendedMetrics, kInstances);
    Workload slowHost = MakeSample(host, "empty, slow host", {});
    slowHost.isHostSlow = true;
    return {
        MakeSample(host, kEmpty, {}),
        slowHost,
        MakeSample(host, kSmall, {10, 1, 5}),
        MakeSample(host, kServer, kServerSize),
        MakeSample(host, kLarge, Times(10, kServerSize)),
        MakeSample(host, kManySessions, Times(20, kServerSize)),
        {"start-up", "no data", eStartup, nullptr, 0},
        {"session start", "5 properties; sent to nobody", eUserSessionStart, &session, 0},
        {"logon", "5 properties, the machine", eUserSessionLogon, &session, 0},
        {"logoff", "one of the server's sessions", eUserSessionLogoff, &session, oneSession.CountMetrics()},
        {"refresh", "5 properties, the machine", eUserSessionRefresh, &session, 0},
        {"reconnect", "5 properties", eUserSessionReconnect, &session, 0},
        {"disconnect", "5 properties", eUserSessionDisconnect, &session, 0},
        {"session end", "5 properties; sent to nobody", eUserSessionEnd, &session, 0},
        {"extended data", "50 metrics of 20 instances", eExtendedData, &extended, kExtendedMetrics * kInstances},
        {"desktop poll", "the machine, which is looked at and not sent", kDesktopPoll, nullptr, 0},
        {"unnamed type", "sent to nobody", kUnnamed, nullptr, 0},
    };
}
