#include "trelundo/platform/graphics/text/TextLayout.h"

#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/text/internal/TextPainter.h"
#include "trelundo/platform/graphics/text/internal/Typesetter.h"

#include <algorithm>

namespace trelundo {

namespace {

Typesetter started(std::vector<TextRun> const& runs, TextLimits const& limits) {
    startGraphics();
    return {runs, limits};
}

} // namespace

struct TextLayout::State {
    Typesetter set;
};

TextLayout::TextLayout(std::vector<TextRun> const& runs, TextLimits const& limits)
    : state_(std::make_unique<State>(State{started(runs, limits)})) {}

TextLayout::~TextLayout() = default;
TextLayout::TextLayout(TextLayout&&) noexcept = default;
TextLayout& TextLayout::operator=(TextLayout&&) noexcept = default;

CGSize TextLayout::size() const {
    CGSize size{0, state_->set.height};
    for (auto const& line : state_->set.lines) size.width = std::max(size.width, line.leading + line.width);
    return size;
}

int TextLayout::lineCount() const { return static_cast<int>(state_->set.lines.size()); }
bool TextLayout::isTruncated() const { return state_->set.isTruncated; }
bool TextLayout::breaksWord() const { return std::ranges::any_of(state_->set.lines, &TextLine::breaksWord); }

bool TextLayout::isWrapped() const {
    return std::ranges::any_of(state_->set.lines, &TextLine::hasSoftEnd) ||
           std::ranges::adjacent_find(state_->set.lines, {}, &TextLine::source) != state_->set.lines.end();
}

double TextLayout::firstBaseline() const {
    return state_->set.lines.empty() ? 0 : state_->set.lines.front().baseline;
}

double TextLayout::lastBaseline() const {
    return state_->set.lines.empty() ? 0 : state_->set.lines.back().baseline;
}

void TextLayout::draw(Canvas& canvas, CGPoint origin, double width) const {
    TextPainter painter(canvas, state_->set.styles);
    for (auto const& line : state_->set.lines) painter.draw(line, origin, width);
}

} // namespace trelundo
