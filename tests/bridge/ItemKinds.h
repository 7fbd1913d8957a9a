#pragma once

#include "DataType.h"

inline constexpr unsigned char kDesktopPoll = 255;

/// A kind of item that goes to Java, or comes as far as there.
struct ItemKind {
    unsigned char type;
    const wchar_t* name;  ///< as messages call it
    const char* method;   ///< the message client's; null: none is called
    bool isAnswered;      ///< the method returns a text
};

inline constexpr ItemKind kItemKinds[] = {
    {eUserSessionStart, L"eUserSessionStart", nullptr, false},
    {eUserSessionLogon, L"eUserSessionLogon", "onUserLogon", true},
    {eUserSessionLogoff, L"eUserSessionLogoff", "onUserLogoff", false},
    {eUserSessionRefresh, L"eUserSessionRefresh", "refreshSession", false},
    {eUserSessionReconnect, L"eUserSessionReconnect", "onUserReconnect", false},
    {eUserSessionDisconnect, L"eUserSessionDisconnect", "onUserDisconnect", false},
    {eUserSessionEnd, L"eUserSessionEnd", nullptr, false},
    {eExtendedData, L"eExtendedData", "onExtendedDataCollected", true},
    {eStartup, L"eStartup", "onStartup", true},
    {eSample, L"eSample", "onDataCollected", true},
    {eTraceRoute, L"eTraceRoute", "onActionPerformed", true},
    {kDesktopPoll, L"0xff", "onDesktopPoll", true},
};
