#pragma once

#include "Readings.h"

/// The way to the host of a message server's URL (rmi://host[:port][/name]), a line for each hop. Where the system lets
/// nobody send echo requests, the table of routes stands in its place.
RouteReading TraceRoute(const std::wstring& url);
