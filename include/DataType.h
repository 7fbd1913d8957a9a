#pragma once

/// The kinds of data items that a host hands over; they travel as one byte. Every other value is a kind without a name,
/// of which 255, a poll of the desktop, alone is sent on.
enum DataType : unsigned char {
    eUserSessionStart = 0,
    eUserSessionLogon = 1,
    eUserSessionLogoff = 2,
    eUserSessionRefresh = 3,
    eUserSessionReconnect = 4,
    eUserSessionDisconnect = 5,
    eUserSessionEnd = 6,
    eExtendedData = 7,
    eStartup = 8,
    eSample = 9,
    eTraceRoute = 10,
};
