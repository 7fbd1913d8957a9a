#pragma once

#include <windows.h>

#include <oleauto.h>

// What CImportHook puts in the place of functions that memory comes from, for as long as there is to be none.

/// In the place of HeapAlloc.
inline void* WINAPI RefuseMemory(HANDLE, DWORD, SIZE_T) {
    return nullptr;
}
/// In the place of SysAllocStringLen.
inline BSTR WINAPI RefuseText(const OLECHAR*, UINT) {
    return nullptr;
}
