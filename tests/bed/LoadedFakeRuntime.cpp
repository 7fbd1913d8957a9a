#include "LoadedFakeRuntime.h"

#include <windows.h>

#include <stdexcept>
#include <string>

#include "TestPaths.h"

namespace {

IFakeRuntime* LoadFakeRuntime() {
    const HMODULE library = LoadLibraryW((std::wstring(TestPaths::kFakeRuntime) + TestPaths::kLibrary).c_str());
    auto* const getRuntime = reinterpret_cast<GetFakeRuntimeFunction>(
        reinterpret_cast<void*>(library ? GetProcAddress(library, kGetFakeRuntime) : nullptr));
    if (!getRuntime) {
        throw std::runtime_error("the fake Java runtime cannot be loaded");
    }
    return getRuntime();
}

}  // namespace

IFakeRuntime& LoadedFakeRuntime() {
    static IFakeRuntime* const runtime = LoadFakeRuntime();
    return *runtime;
}
