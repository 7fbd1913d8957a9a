#pragma once

#include <windows.h>

/// The class that a host registers and the library creates to reach the host's objects.
constexpr CLSID kServiceClassId = {0x2D6D321D, 0x3A1D, 0x4BB9, {0x91, 0x61, 0x21, 0x91, 0xD7, 0x01, 0x01, 0x1D}};
