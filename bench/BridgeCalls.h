#pragma once

#include <windows.h>

#include <unknwn.h>

// The library as the measured host calls it: always for the same message server.

inline constexpr wchar_t kAuthToken[] = L"the authentication token";
inline constexpr __int64 kItemId = 4711;

/// Throws std::runtime_error for anything but S_OK.
void DumpItem(unsigned char type, IUnknown* data);

/// An item that sends nothing: the first one starts Java.
void DumpNothing();
