#pragma once

#include <windows.h>

#include <oleauto.h>

#include "CWideString.h"

/// `date` as text by a `wcsftime` format, taken as it is, without a time zone. Empty when the value is no date (before
/// the year 100, after 9999, not a number) or the format yields no text of up to 255 characters.
/// Throws CHresultException when memory is exhausted.
[[nodiscard]] CWideString FormatDateTime(DATE date, const wchar_t* format);
