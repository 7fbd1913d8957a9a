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

Workload MakeSample(CKitItems& items, const char* name, const SampleSize& size) {
    return {name, Describe(size), eSample, &items.MakeSample(size), size.CountMetrics()};
}

/// The same with the lean host's objects.
Workload MakeLeanSample(CLeanHost& host, const char* name, const SampleSize& size) {
    return {std::string(name) + ", lean", Describe(size), eSample, &host.MakeSample(size), size.CountMetrics(), true};
}

}  // namespace

std::vector<Workload> MakeWorkloads(CKitItems& items, CLeanHost& host) {
    constexpr SampleSize kSmallSize{10, 1, 5};
    constexpr SampleSize kLargeSize = Times(10, kServerSize);
    // One of the server's sessions by itself.
    SampleSize oneSession = kServerSize;
    oneSession.metrics = 0;
    oneSession.sessions = 1;
    IUnknown& session = items.MakeSession(oneSession);
    IUnknown& extended = items.MakeExtendedData(kExtendedMetrics, kInstances);
    Workload slowHost = MakeSample(items, "empty, slow host", {});
    slowHost.isHostSlow = true;
    return {
        MakeSample(items, kEmpty, {}),
        slowHost,
        MakeSample(items, kSmall, kSmallSize),
        MakeSample(items, kServer, kServerSize),
        MakeSample(items, kLarge, kLargeSize),
        MakeSample(items, kManySessions, Times(20, kServerSize)),
        MakeLeanSample(host, kSmall, kSmallSize),
        MakeLeanSample(host, kServer, kServerSize),
        MakeLeanSample(host, kLarge, kLargeSize),
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
