#include <windows.h>

/// A sound library in a runtime's place that has nothing of a Java runtime.
extern "C" __declspec(dllexport) DWORD GetNumberOfNothing() {
    return 0;
}
