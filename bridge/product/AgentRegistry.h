#pragma once

#include <windows.h>

#include <string>

/// The host agent's own key under HKEY_LOCAL_MACHINE, that of the product that hosts the library. Throws
/// std::bad_alloc.
[[nodiscard]] std::wstring AgentKeyPath();

/// The key under HKEY_LOCAL_MACHINE that an administrator's policy writes for the same product. Throws std::bad_alloc.
[[nodiscard]] std::wstring PolicyKeyPath();

/// Reads a text from the registry under HKEY_LOCAL_MACHINE (the process's own view of it), up to its first zero;
/// REG_EXPAND_SZ is not expanded. Any thread. Throws CHresultException when memory is exhausted.
///
/// @param text replaced on success; on ERROR_INVALID_DATA for a text that is damaged (an odd number of bytes, no
/// closing
///             zero) replaced by what could be read; else untouched
/// @return S_OK; the registry's error as HRESULT; ERROR_INVALID_DATA as HRESULT for a value of another type
[[nodiscard]] HRESULT ReadAgentRegistryString(const std::wstring& keyPath, const wchar_t* valueName,
                                              std::wstring& text);
