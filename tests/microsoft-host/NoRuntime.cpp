// What a C++ runtime would bring. Nobody runs dynamic initialisers here: objects of static storage are constant.

#include "NoRuntime.h"

#include <windows.h>

extern "C" {

/// Each object that computes with floating-point numbers asks for it.
int _fltused = 0;

/// Where the linker is told to start the program.
void mainCRTStartup() {  // NOLINT(readability-identifier-naming): its customary name
    ExitProcess(static_cast<UINT>(RunHost()));
}

}  // extern "C"
