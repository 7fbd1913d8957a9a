#pragma once

// Of msvcrt.dll, which every Windows has. MinGW's own <stdio.h> would bring functions of a library of MinGW's.
extern "C" int __cdecl printf(const char* format, ...);  // NOLINT(readability-identifier-naming): msvcrt's name
extern "C" int __cdecl fflush(void* stream);             // NOLINT(readability-identifier-naming): msvcrt's name

/// What the host does; its result is the process's exit code.
int RunHost();
