#pragma once

#include "Readings.h"

/// What is told now and then: texts on the system, and figures of every disk and adapter.
ExtendedReading ReadExtended();
