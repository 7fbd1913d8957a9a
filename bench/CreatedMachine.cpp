#include "CreatedMachine.h"

#include <windows.h>

#include <stdexcept>

JavaVM& FindCreatedMachine() {
    using GetMachines = jint(JNICALL*)(JavaVM**, jsize, jsize*);
    const auto getMachines = reinterpret_cast<GetMachines>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"jvm.dll"), "JNI_GetCreatedJavaVMs")));
    JavaVM* machine = nullptr;
    jsize count = 0;
    if (!getMachines || getMachines(&machine, 1, &count) != JNI_OK || count != 1) {
        throw std::runtime_error("the library has started no Java");
    }
    return *machine;
}
