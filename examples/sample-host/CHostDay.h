#pragma once

#include <windows.h>

#include "CItemSender.h"
#include "CMeasurements.h"
#include "FindServer.h"
#include "Options.h"
#include "Readings.h"
#include "ServiceObjects.h"

/// What a host has to tell from its start to its end, in order: its start-up, a session's logon, samples at each
/// interval, the rarer items once, and the session's end. Of a session that really goes on all the while: a real host
/// is told by Windows (WM_WTSSESSION_CHANGE) when users come and go.
class CHostDay {
public:
    /// @param stopped an event that brings the end about early
    CHostDay(const Options& options, const MessageServer& server, CItemSender& sender, CSessionCollection& sessions,
             HANDLE stopped) noexcept
        : m_options(options), m_server(server), m_sender(sender), m_sessions(sessions), m_stopped(stopped) {}

    /// On the thread that Java is to belong to. Throws CannotGoOnException.
    void Run();

private:
    void SendStartup();
    void SendLogon();
    void SendSamples();
    void SendEnd();

    void SendSample();
    void SendExtendedData();
    void SendTraceRoute();
    void SendPoll();
    void SendSessionEvent(const CItemSender::Kind& kind, SHORT state);
    void SendRefresh();
    void SendLogoff();

    SessionReading ReadSession(SHORT state) const;

    const Options& m_options;
    const MessageServer& m_server;
    CItemSender& m_sender;
    CSessionCollection& m_sessions;
    const HANDLE m_stopped;
    CMeasurements m_measurements;
    LONG m_sessionId = 0;
};
