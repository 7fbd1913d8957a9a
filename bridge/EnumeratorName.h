#pragma once

#include <string_view>

#include "CWideString.h"

/// The name of the enumerator that an instantiation of Enum2String is for, cut out of the instantiation's signature as
/// the compiler writes it:
///
///     ... Enum2String<enum DataType,eSample>(enum DataType)                    Microsoft's
///     ... Enum2String(Enum) [with Enum = DataType; Enum N = eSample]           GCC's
///
/// For a value without an enumerator the one writes a hexadecimal literal, the other a cast of a decimal one; both
/// become lower-case hexadecimal with "0x" and without leading zeros. Throws CHresultException when memory is
/// exhausted.
[[nodiscard]] CWideString CutEnumeratorName(std::string_view signature);
