#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace trelundo {

/// Ends of the user-perceived characters, in UTF-16 units; the last is the text's length.
std::vector<int> characterEnds(std::u16string_view text);

/// Each for the positions 0 to length; independent of the user's language.
struct LineBreaks {
    std::vector<bool> allowed; // whether a line may end before it
    /// Whether it looks well there: a price stays with its unit, a Japanese phrase with itself.
    std::vector<bool> preferred;
};
LineBreaks lineBreaks(std::u16string_view text);

/// Ends of the sentences, in UTF-16 units; the last is the text's length.
std::vector<int> sentenceEnds(std::u16string_view text);

enum class BaseDirection { leftToRight, rightToLeft, none };
/// That of the first strong character outside isolates, by rules P2 and P3 of the Unicode bidirectional
/// algorithm.
BaseDirection baseDirection(std::u16string_view text);

/// Embedding levels by the Unicode bidirectional algorithm; odd is right-to-left.
std::vector<std::uint8_t> embeddingLevels(std::u16string_view text, bool rightToLeft);

/// Which element stands at each place from left to right.
std::vector<int> visualOrder(std::vector<std::uint8_t> const& levels);

} // namespace trelundo
