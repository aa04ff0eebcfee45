#pragma once

#include "trelundo/platform/graphics/text/internal/TextParagraph.h"

#include <cstddef>
#include <memory>

namespace trelundo {

/// A line as it is drawn: characters `first` to before `last` of a paragraph.
struct TextLine {
    std::shared_ptr<TextParagraph const> paragraph;
    std::size_t source = 0; // which paragraph of the text this stands for
    std::size_t first = 0;
    std::size_t last = 0;
    double width = 0;   // points, without hanging spaces
    double leading = 0; // indents from the leading and trailing edges, points
    double trailing = 0;
    double top = 0;
    double height = 0;
    double baseline = 0;     // from the top of the text
    bool hasSoftEnd = false; // broken where the text has no line end
    bool breaksWord = false; // broken inside a word for want of width
    NSParagraphStyle style;
};

} // namespace trelundo
