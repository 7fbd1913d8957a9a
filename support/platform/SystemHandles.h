#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include "CUniqueHandle.h"

struct RegistryKeyTraits {
    using Handle = HKEY;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle key) noexcept { RegCloseKey(key); }
};
/// An open registry key.
using CRegistryKey = CUniqueHandle<RegistryKeyTraits>;

struct ModuleTraits {
    using Handle = HMODULE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle module) noexcept { FreeLibrary(module); }
};
/// One counted reference to a loaded library.
using CModule = CUniqueHandle<ModuleTraits>;

struct FindHandleTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle find) noexcept { FindClose(find); }
};
/// A directory enumeration in progress.
using CFindHandle = CUniqueHandle<FindHandleTraits>;

struct CoTaskMemTextTraits {
    using Handle = wchar_t*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle text) noexcept { CoTaskMemFree(text); }
};
/// A text from COM's task allocator.
using CCoTaskMemText = CUniqueHandle<CoTaskMemTextTraits>;

struct SafeArrayTraits {
    using Handle = SAFEARRAY*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle array) noexcept { SafeArrayDestroy(array); }
};
/// An array of OLE Automation's, with what its elements own.
using CSafeArray = CUniqueHandle<SafeArrayTraits>;
