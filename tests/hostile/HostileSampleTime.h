#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string>

// What becomes of a host's time. The system alone is asked what day and second a DATE is; the rest is counted here.

/// As Java is given it, in milliseconds.
[[nodiscard]] std::int64_t ModelJavaTime(DATE time);

/// As messages name a sample.
[[nodiscard]] std::wstring ModelTimeName(DATE time);
