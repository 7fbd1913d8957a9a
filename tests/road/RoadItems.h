#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>
#include <vector>

#include "HostObjects.h"

inline constexpr unsigned char kDesktopPoll = 255;

/// A data item as a host hands it over, and what becomes of it.
struct RoadItem {
    unsigned char type;
    unsigned __int64 id;
    CHostReference<IUnknown> data;
    std::string method;  ///< the server's that hears it; empty: none does
    std::string line;    ///< of the server's record, its line break included; empty where no method hears it
};

/// What the items tell of a host: its machine, which has every part, and the sessions that its samples speak of.
[[nodiscard]] SystemData MakeRoadSystem();
[[nodiscard]] CHostReference<ISessionCollection> MakeRoadSessions(CRecordPointer record);

/// How the user of all session events is named in messages.
inline constexpr wchar_t kRoadUser[] = L"the user";

/// An item of each kind, sparing no type of value. The `number` is in each of them but the one for the start-up, which
/// has no place for one.
[[nodiscard]] std::vector<RoadItem> MakeRoadItems(const CRecordPointer& record, unsigned __int64 number);

/// A line of the server's record: that machine's start-up.
[[nodiscard]] std::string MakeStartupLine();

/// The server's record of these items, in their order.
[[nodiscard]] std::string JoinLines(const std::vector<RoadItem>& items);

/// A line of the server's record.
[[nodiscard]] std::string MakeLine(const std::string& method, const std::string& arguments);

/// The record with the pairs of each hash map in the order of their names: the map's own order is nobody's.
[[nodiscard]] std::string SortMaps(const std::string& record);
