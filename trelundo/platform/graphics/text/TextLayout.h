#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/graphics/text/TextStyle.h"

#include <memory>
#include <vector>

namespace trelundo {

class Canvas;

/// What a text may fill.
struct TextLimits {
    double width = greatestFiniteMagnitude;  // points; the greatest magnitude never wraps
    double height = greatestFiniteMagnitude; // lines that do not fit whole are cut
    int numberOfLines = 0;                   // 0: unlimited
    /// How the last allowed line ends; absent: as its paragraph style says.
    std::optional<NSLineBreakMode> lineBreakMode = std::nullopt;
    /// All fonts, kerning and line spacing multiplied by this.
    double fontScale = 1;
    /// Direction of natural alignment where the text itself has none, and of the paragraph's base.
    bool isRightToLeft = false;
};

/// Text set in lines. Line ends are LF, CR, CRLF, U+2028 and U+2029. A line is as high as its tallest font;
/// line spacing stands between lines only. Immutable once made; drawing is repeatable.
class TextLayout {
public:
    TextLayout(std::vector<TextRun> const& runs, TextLimits const& limits);
    ~TextLayout();
    TextLayout(TextLayout&&) noexcept;
    TextLayout& operator=(TextLayout&&) noexcept;

    /// Width of the longest line and height of all, fractional points.
    CGSize size() const;
    int lineCount() const;
    /// Whether text was left out or replaced by an ellipsis.
    bool isTruncated() const;
    /// Whether a line is broken where the text has no line end.
    bool isWrapped() const;
    /// Whether a word was broken inside for want of width.
    bool breaksWord() const;
    /// Distances of the first and last line's baselines from the top, points.
    double firstBaseline() const;
    double lastBaseline() const;

    /// Draws with the top left corner at `origin`; lines are aligned within `width`.
    void draw(Canvas& canvas, CGPoint origin, double width) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
