#pragma once

#include "Readings.h"

/// Measures the machine. It remembers the processors' times of the measurement before: how busy they are is a
/// difference.
class CMeasurements {
public:
    /// The machine's figures with, below it, those of one session and its processes.
    NodeReading ReadSample(LONG sessionId);

private:
    double ReadProcessorLoad();

    double m_idle = 0;
    double m_total = 0;
};

/// Now, in UTC.
SYSTEMTIME ReadTime();
