#include "CHostDay.h"

#include <chrono>

#include "DataObjects.h"
#include "DataType.h"
#include "ExpectedCall.h"
#include "ReadExtended.h"
#include "ReadSession.h"
#include "StopSignal.h"
#include "TraceRoute.h"

using Microsoft::WRL::ComPtr;

namespace {

using Kind = CItemSender::Kind;
constexpr Kind kStartup = {eStartup, "eStartup", "onStartup"};
constexpr Kind kSessionStart = {eUserSessionStart, "eUserSessionStart", nullptr};
constexpr Kind kLogon = {eUserSessionLogon, "eUserSessionLogon", "onUserLogon"};
constexpr Kind kSample = {eSample, "eSample", "onDataCollected"};
constexpr Kind kExtendedData = {eExtendedData, "eExtendedData", "onExtendedDataCollected"};
constexpr Kind kTraceRoute = {eTraceRoute, "eTraceRoute", "onActionPerformed"};
constexpr Kind kPoll = {kDesktopPoll, "poll", "onDesktopPoll"};
constexpr Kind kDisconnect = {eUserSessionDisconnect, "eUserSessionDisconnect", "onUserDisconnect"};
constexpr Kind kReconnect = {eUserSessionReconnect, "eUserSessionReconnect", "onUserReconnect"};
constexpr Kind kRefresh = {eUserSessionRefresh, "eUserSessionRefresh", "refreshSession"};
constexpr Kind kLogoff = {eUserSessionLogoff, "eUserSessionLogoff", "onUserLogoff"};
constexpr Kind kSessionEnd = {eUserSessionEnd, "eUserSessionEnd", nullptr};

/// What the server knows an event by: this host takes the time, which needs all of the 64 bits.
unsigned __int64 MakeEventId() {
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return ULARGE_INTEGER{{now.dwLowDateTime, now.dwHighDateTime}}.QuadPart;
}

ComPtr<CUserSession> MakeSession(const SessionReading& session, SharedNode figures = std::make_shared<NodeReading>()) {
    return MakeComObject<CUserSession>(session, std::move(figures));
}

/// Of an object with several interfaces, IUnknown is the first one's.
IUnknown* AsUnknown(const ComPtr<CUserSession>& session) {
    return static_cast<ISampleNode*>(session.Get());
}

}  // namespace

void CHostDay::Run() {
    m_sessionId = ReadOwnSession().id;
    SendStartup();
    SendLogon();
    SendSamples();
    SendEnd();
}

/// After a failed start every other item would fail as well. That the server is away is no such failure.
void CHostDay::SendStartup() {
    constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);
    const HRESULT result = m_sender.Send(kStartup, 0, nullptr, [](Json& arguments, const MachineReading& machine) {
        arguments["clientDescriptor"] = ExpectedClientDescriptor(machine);
    });
    if (FAILED(result) && result != kServerNotReached) {
        throw CannotGoOnException(
            "the start-up was not sent; the log above says why. Are the values of this --product in the registry "
            "(docs/host-guide.md), and is the certificate there the server's?");
    }
}

void CHostDay::SendLogon() {
    SendSessionEvent(kSessionStart, kSessionConnected);
    const SessionReading session = ReadSession(kSessionConnected);
    const unsigned __int64 id = MakeEventId();
    m_sender.Send(kLogon, id, AsUnknown(MakeSession(session)), [&](Json& arguments, const MachineReading& machine) {
        arguments["desktop"] = ExpectedDesktop(machine);
        arguments["id"] = ExpectedId(id);
        arguments["session"] = ExpectedSession(session, nullptr);
    });
}

void CHostDay::SendSamples() {
    using Seconds = std::chrono::duration<double>;
    const auto begun = std::chrono::steady_clock::now();
    bool isRareSent = false;
    double passed = 0;
    do {
        SendSample();
        if (!isRareSent && passed + m_options.intervalSeconds > m_options.durationSeconds / 2) {
            isRareSent = true;
            SendExtendedData();
            SendTraceRoute();
            SendPoll();
        }
        const double sending = Seconds(std::chrono::steady_clock::now() - begun).count() - passed;
        if (WaitForStop(m_stopped, m_options.intervalSeconds - sending)) {
            return;
        }
        passed = Seconds(std::chrono::steady_clock::now() - begun).count();
    } while (passed < m_options.durationSeconds);
}

void CHostDay::SendEnd() {
    SendSessionEvent(kDisconnect, kSessionDisconnected);
    SendSessionEvent(kReconnect, kSessionConnected);
    SendRefresh();
    SendSample();
    SendLogoff();
    SendSessionEvent(kSessionEnd, kSessionDisconnected);
}

/// Its nodes name sessions by their ids: the library asks the collection for what else there is to say of them.
void CHostDay::SendSample() {
    const SessionReading session = ReadSession(kSessionConnected);
    const auto sample = std::make_shared<const NodeReading>(m_measurements.ReadSample(m_sessionId));
    m_sessions.SetSession(m_sessionId, MakeSession(session));
    m_sender.Send(kSample, 0, MakeComObject<CSampleNode>(sample).Get(), [&](Json& arguments, const MachineReading&) {
        arguments["sample"] = ExpectedSample(*sample, session);
    });
}

void CHostDay::SendExtendedData() {
    const SYSTEMTIME time = ReadTime();
    const ExtendedReading reading = ReadExtended();
    m_sender.Send(kExtendedData, 0, MakeExtendedData(reading, time).Get(), [&](Json& arguments, const MachineReading&) {
        arguments["metaData"] = ExpectedTexts(reading.texts);
        arguments["sample"] = ExpectedExtendedSample(reading, time);
    });
}

void CHostDay::SendTraceRoute() {
    const RouteReading reading = TraceRoute(m_server.url);
    m_sender.Send(kTraceRoute, 0, MakeRouteData(reading).Get(), [&](Json& arguments, const MachineReading&) {
        arguments["metaData"] = ExpectedTexts(reading.texts);
        arguments["result"] = ExpectedText(reading.route);
    });
}

void CHostDay::SendPoll() {
    const unsigned __int64 id = MakeEventId();
    m_sender.Send(kPoll, id, nullptr, [&](Json& arguments, const MachineReading&) {
        arguments["id"] = ExpectedId(id);
        arguments["data"] = ExpectedText(L"");
    });
}

/// For the events that say nothing but which session they are about.
void CHostDay::SendSessionEvent(const Kind& kind, SHORT state) {
    const SessionReading session = ReadSession(state);
    const unsigned __int64 id = MakeEventId();
    m_sender.Send(kind, id, AsUnknown(MakeSession(session)), [&](Json& arguments, const MachineReading&) {
        arguments["id"] = ExpectedId(id);
        arguments["session"] = ExpectedSession(session, nullptr);
    });
}

void CHostDay::SendRefresh() {
    const SessionReading session = ReadSession(kSessionConnected);
    const unsigned __int64 id = MakeEventId();
    m_sender.Send(kRefresh, id, AsUnknown(MakeSession(session)), [&](Json& arguments, const MachineReading& machine) {
        arguments["id"] = ExpectedId(id);
        arguments["desktop"] = ExpectedDesktop(machine);
        arguments["session"] = ExpectedSession(session, nullptr);
    });
}

/// With the session's last figures: the data is the session and its node in one object.
void CHostDay::SendLogoff() {
    const SessionReading session = ReadSession(kSessionDisconnected);
    const auto sample = std::make_shared<const NodeReading>(m_measurements.ReadSample(m_sessionId));
    const SharedNode figures(sample, &sample->instances.front());
    const unsigned __int64 id = MakeEventId();
    m_sender.Send(kLogoff, id, AsUnknown(MakeSession(session, figures)), [&](Json& arguments, const MachineReading&) {
        arguments["id"] = ExpectedId(id);
        arguments["session"] = ExpectedSession(session, figures.get());
    });
}

/// The session as it is now, in the state that the event brings it to.
SessionReading CHostDay::ReadSession(SHORT state) const {
    SessionReading session = ReadOwnSession();
    session.state = state;
    return session;
}
