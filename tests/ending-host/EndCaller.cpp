// A library that calls back on the one thread that is left when the process is ending.

#include <windows.h>

namespace {

void (*g_call)() = nullptr;

}  // namespace

extern "C" __declspec(dllexport) void CallAtTheEnd(void (*call)()) {
    g_call = call;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* isProcessEnd) {
    if (reason == DLL_PROCESS_DETACH && isProcessEnd && g_call) {
        g_call();
    }
    return TRUE;
}
