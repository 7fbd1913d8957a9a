#pragma once

#include "Readings.h"

/// The session that this process runs in, and the user that it runs as.
SessionReading ReadOwnSession();
