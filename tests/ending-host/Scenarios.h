#pragma once

#include <string>

class CEndingHost;

/// Runs the scenario of this name, on the process's main thread; some of them do not return. Throws std::runtime_error
/// when there is none of this name.
void RunScenario(const std::string& name, CEndingHost& host);
