#pragma once

#include "trelundo/platform/foundation/Locale.h"

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// Every non-overlapping occurrence of `target`, leftmost first, replaced; the replacement is not rescanned.
/// An empty target changes nothing. Matches by canonical equivalence of the texts.
std::string replacingOccurrences(std::string_view text, std::string_view target,
                                 std::string_view replacement);

/// The first occurrence only.
std::string replacingFirstOccurrence(std::string_view text, std::string_view target,
                                     std::string_view replacement);

/// The pieces between `separator`s, empty ones omitted.
std::vector<std::string> split(std::string_view text, char separator);

/// Title case character by character: the first cased letter of every run becomes title case, the rest lower
/// case; case-ignorable characters do not end a run ("o'neil" gives "O'neil", "2nd" gives "2Nd").
std::string capitalized(std::string_view text, Locale const& locale);
std::string localizedCapitalized(std::string_view text);

} // namespace trelundo
