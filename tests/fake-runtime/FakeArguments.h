#pragma once

#include <cstdarg>
#include <optional>
#include <string>

#include "CFakeCall.h"

/// The arguments of a call of `method` as the method log has them: `("abc", 5)`. Nothing, the misuse being reported,
/// when one of them is a bad reference or no string where the method takes one.
[[nodiscard]] std::optional<std::string> DescribeArguments(CFakeCall& call, const FakeMethod& method,
                                                           std::va_list arguments);
