#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>

#include <string>

// What the host tells of its work: a line of JSON, in ASCII, on the standard output for each event, written at once.

/// Keeps the order in which members are added.
using Json = nlohmann::ordered_json;

struct MachineReading;
struct MessageServer;

struct SentItem {
    int number = 0;
    unsigned char type = 0;
    const char* name = "";
    const char* method = nullptr;  ///< of the message server's; null for an item that is not sent on
    HRESULT result = S_OK;
    double milliseconds = 0;
    Json arguments;  ///< what the server ought to hear
};
/// Which server the library has found, and the machine's unique id, which may be part of that.
void ReportServer(const MessageServer& server, const MachineReading& machine);
void ReportSent(const SentItem& item);
void ReportEnd(int itemsSent);

// These are called out of the library: they throw nothing, and always succeed.

HRESULT ReportAnswer(ULONG type, const wchar_t* text) noexcept;
HRESULT ReportAction(const wchar_t* text) noexcept;
HRESULT ReportLog(const char* level, const wchar_t* text) noexcept;
