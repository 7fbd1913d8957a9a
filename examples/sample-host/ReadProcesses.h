#pragma once

#include "Readings.h"

/// The processes of a session, each a remote application: a node under "name (process id)" with what it uses.
/// Processes that this one may not look into tell less.
std::vector<NodeReading> ReadProcesses(LONG sessionId, const SYSTEMTIME& time);

/// The sums over processes, which are a session's own metrics.
NamedValues SumUpProcesses(const std::vector<NodeReading>& processes);

/// How long that is, in seconds.
double ToSeconds(const FILETIME& duration);
