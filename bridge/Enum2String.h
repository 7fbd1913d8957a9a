#pragma once

#include <type_traits>

#include "EnumeratorName.h"

/// The name of `value` for messages: of an enumerator as it is spelled in the code, of another value its hexadecimal
/// form ("0xff"). No table of names has to be kept: the instantiation that belongs to the value cuts the name out of
/// its own signature. Called with the first value of the enumeration, from where the look-up walks on; made for log
/// lines, not for speed. Throws CHresultException when memory is exhausted.
template <typename Enum, Enum N>
[[nodiscard]] CWideString Enum2String(Enum value) {
    using Number = std::underlying_type_t<Enum>;
    static_assert(sizeof(Number) == 1, "the walk has an end only where no value is larger than a byte");
    constexpr unsigned kLast = 0xff;
    if constexpr (static_cast<Number>(N) < kLast) {
        if (value != N) {
            return Enum2String<Enum, static_cast<Enum>(static_cast<Number>(N) + 1)>(value);
        }
    }
#ifdef _MSC_VER
    return CutEnumeratorName(__FUNCSIG__);
#else
    return CutEnumeratorName(__PRETTY_FUNCTION__);
#endif
}
