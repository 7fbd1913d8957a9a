// A library that tells on standard error what it sees when it is detached.

#include <windows.h>

#include <cstring>

#include "ProcessEnd.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_DETACH) {
        const char* const text = IsProcessEnding() ? "detached: the process ends\n" : "detached: the process goes on\n";
        DWORD written = 0;
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
    }
    return TRUE;
}
