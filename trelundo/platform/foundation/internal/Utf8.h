#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace trelundo {

inline constexpr char32_t replacementCharacter = 0xFFFD;

/// The code point that begins at byte `position`, which moves behind it. None for bytes that are not UTF-8
/// (overlong forms and surrogates included); then `position` moves by one byte.
std::optional<char32_t> takeCodePoint(std::string_view text, std::size_t& position);

/// Appends a code point; a surrogate or a value beyond Unicode becomes the replacement character.
void appendCodePoint(std::string& text, char32_t codePoint);

} // namespace trelundo
