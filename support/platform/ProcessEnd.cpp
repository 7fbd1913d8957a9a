#include "ProcessEnd.h"

#include <windows.h>

// Documented, but in no header of MinGW's.
extern "C" __declspec(dllimport) BOOLEAN NTAPI RtlDllShutdownInProgress();

bool IsProcessEnding() noexcept {
    return RtlDllShutdownInProgress() != FALSE;
}
