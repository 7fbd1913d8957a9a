#pragma once

#include <string>
#include <string_view>

/// UTF-8, as the libraries for JSON and command lines take it. Half surrogate pairs become U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);
