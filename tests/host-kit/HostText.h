#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

[[nodiscard]] std::string ToUtf8(std::wstring_view text);

/// The text as a call's input is shown; "null" for a null BSTR.
[[nodiscard]] std::string DescribeText(BSTR text);

/// Type and value in short: `I4 5`, `BSTR route`, `UNKNOWN object`, `DISPATCH null`, `type 16396`. An XML node is
/// shown by its XML in place of "object".
[[nodiscard]] std::string DescribeValue(const VARIANT& value);
