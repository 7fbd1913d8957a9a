#pragma once

#include "Readings.h"
#include "Report.h"

// What the message server ought to hear of a reading, in the form in which it writes down what it hears
// (docs/message-server.md). Made from what the host has read alone: comparing the two shows that everything arrived.

Json ExpectedConnection(const MachineReading& machine, const std::wstring& authToken);
Json ExpectedClientDescriptor(const MachineReading& machine);
Json ExpectedDesktop(const MachineReading& machine);
/// With the session's figures where the call has them.
Json ExpectedSession(const SessionReading& session, const NodeReading* figures);
/// With the session's figures of the nodes below the machine's.
Json ExpectedSample(const NodeReading& machine, const SessionReading& session);
Json ExpectedExtendedSample(const ExtendedReading& reading, const SYSTEMTIME& time);
Json ExpectedTexts(const NamedValues& values);
Json ExpectedText(const std::wstring& text);
Json ExpectedId(unsigned __int64 id);
