#pragma once

#include <string>
#include <string_view>

/// Modified UTF-8, the encoding of JNI: a zero takes two bytes, each half of a surrogate pair three.
[[nodiscard]] std::string EncodeModifiedUtf8(std::u16string_view units);

/// The reverse; four-byte sequences of standard UTF-8 are understood too. A byte that fits nowhere becomes U+FFFD.
[[nodiscard]] std::u16string DecodeModifiedUtf8(std::string_view bytes);

/// In quotation marks and in ASCII alone: everything else, quotation marks and backslashes included, as \uXXXX.
[[nodiscard]] std::string QuoteText(std::u16string_view units);

/// A class name as Java's texts have it: with dots.
[[nodiscard]] std::string DottedName(std::string_view className);
