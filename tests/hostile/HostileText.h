#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "CRandom.h"

// Texts that parsers do not expect. Never a zero among them, unless it is one of the favourites.

/// One UTF-16 unit: one of `favourites` (the characters that mean something to the reader under test, at least one), a
/// letter, a control character, half of a surrogate pair, a blank of another kind, or any other.
[[nodiscard]] wchar_t HostileCharacter(CRandom& random, std::wstring_view favourites);

/// A text of such characters: as a rule short, at times as long as `longest`.
[[nodiscard]] std::wstring HostileText(CRandom& random, std::wstring_view favourites, std::size_t longest);

/// `text` with some small things wrong: characters left out, doubled, swapped, replaced or put in, another case, the
/// end cut off, or a part said twice.
[[nodiscard]] std::wstring NearMiss(CRandom& random, std::wstring text, std::wstring_view favourites);
