#pragma once

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace trelundo {

/// A glyph placed from its character's left edge and the baseline, in ems; y grows downward.
struct ShapedGlyph {
    std::uint32_t index;
    double x;
    double y;
};

/// A user-perceived character.
struct ShapedCharacter {
    double advance; // ems
    std::size_t firstGlyph;
    std::size_t glyphCount;
};

/// A stretch of one face and direction, shaped for every size at once: without hinting all distances scale.
struct ShapedWord {
    std::vector<ShapedGlyph> glyphs;
    std::vector<ShapedCharacter> characters; // in the order of the text
};

struct WordToShape {
    std::u16string text;
    FontFace* face;
    bool usesKerning; // the font's own
    bool isRightToLeft;
};

/// Shapes a word whose characters end at `ends` (UTF-16 units). Words are kept for the next time.
std::shared_ptr<ShapedWord const> shapeWord(WordToShape const& word, std::vector<int> const& ends);

} // namespace trelundo
