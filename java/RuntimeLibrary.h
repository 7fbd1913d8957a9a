#pragma once

#include <windows.h>

#include <jni.h>

#include <string>

#include "SystemHandles.h"

/// JNI_CreateJavaVM, the invocation function of a runtime library.
using CreateJavaVMFunction = jint(JNICALL*)(JavaVM**, void**, void*);

/// Loads the runtime library at `libraryPath` with `binDirectory`, where the libraries lie that it needs, as the
/// process's DLL search directory for that time. S_OK, or the Win32 error as HRESULT with `library` left empty; a load
/// that fails without a last error returns S_OK and leaves it empty too. A relative path (a runtime directory that is
/// empty) counts as a library that is not found: nothing is loaded from wherever the process happens to stand.
[[nodiscard]] HRESULT LoadRuntimeLibrary(const std::wstring& binDirectory, const std::wstring& libraryPath,
                                         CModule& library);

/// The library's JNI_CreateJavaVM; null when it has none, the last error saying so.
[[nodiscard]] CreateJavaVMFunction FindCreateJavaVM(const CModule& library) noexcept;

/// Keeps the library that holds `function` mapped until the process ends, whatever handles are freed. False on failure,
/// with the last error.
[[nodiscard]] bool PinRuntimeLibrary(CreateJavaVMFunction function) noexcept;
