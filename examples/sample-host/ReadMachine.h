#pragma once

#include "Readings.h"

/// What the machine is called, what it is, and which network adapters it has now.
MachineReading ReadMachine();

/// The adapters that have an IPv4 address, each with its first one.
std::vector<AdapterReading> ReadAdapters();
