#include "trelundo/platform/uikit/text/internal/UILabelState.h"
#include "trelundo/platform/uikit/views/UIScreen.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr std::size_t keptLayouts = 4;
constexpr double unlimited = greatestFiniteMagnitude;
constexpr int scaleRounds = 8;      // a line's width is nearly proportional to its font size
constexpr double safeScale = 0.998; // so that the rounds end on the fitting side
constexpr int bisectionSteps = 8;   // of the range of scales

bool isSame(TextLimits const& a, TextLimits const& b) {
    return a.width == b.width && a.height == b.height && a.numberOfLines == b.numberOfLines &&
           a.lineBreakMode == b.lineBreakMode && a.fontScale == b.fontScale &&
           a.isRightToLeft == b.isRightToLeft;
}

} // namespace

double UILabel::pixelScale() const {
    double const scale = window() ? traitCollection().displayScale : 0;
    return scale > 0 ? scale : UIScreen::main().scale();
}

NSLineBreakMode UILabel::effectiveLineBreakMode() const {
    if (isPlain_ || !attributedText_ || attributedText_->empty()) return lineBreakMode_;
    auto const style = attributedText_->runs().front().attributes.get(NSAttributedStringKey::paragraphStyle);
    if (!style) return lineBreakMode_;
    // Word wrapping is what a style says that only gives a spacing: the label's own tail then still counts.
    bool const wraps = style->lineBreakMode == NSLineBreakMode::byWordWrapping;
    return wraps && lineBreakMode_ == NSLineBreakMode::byTruncatingTail ? lineBreakMode_
                                                                        : style->lineBreakMode;
}

std::vector<TextRun> const& UILabel::layoutRuns() const {
    auto const style = traitCollection().userInterfaceStyle;
    if (state_->runs && state_->style == style) return *state_->runs;
    state_->layouts.clear();
    state_->fitted.reset();
    state_->style = style;
    state_->runs = resolvedRuns();
    // Truncating modes concern the last line alone; the lines above it are wrapped by words.
    for (auto& run : *state_->runs)
        if (run.paragraph.lineBreakMode != NSLineBreakMode::byCharWrapping)
            run.paragraph.lineBreakMode = NSLineBreakMode::byWordWrapping;
    return *state_->runs;
}

TextLimits UILabel::limits(double width, double height, int lines, double fontScale) const {
    return {.width = width,
            .height = height,
            .numberOfLines = lines,
            .lineBreakMode = effectiveLineBreakMode(),
            .fontScale = fontScale,
            .isRightToLeft = isRightToLeft()};
}

TextLayout const& UILabel::layout(TextLimits const& limits) const {
    auto const& runs = layoutRuns();
    auto& layouts = state_->layouts;
    auto const known =
        std::ranges::find_if(layouts, [&](auto const& kept) { return isSame(kept.limits, limits); });
    if (known != layouts.end()) return known->layout;
    if (layouts.size() == keptLayouts) layouts.erase(layouts.begin());
    layouts.push_back({limits, TextLayout{runs, limits}});
    return layouts.back().layout;
}

TextLayout const& UILabel::naturalLayout(double width) const {
    return layout(limits(width, unlimited, numberOfLines_));
}

CGSize UILabel::naturalSize(double width) const {
    if (!drawsContents()) return {};
    auto const size = naturalLayout(width).size();
    return {ceilToPixel(size.width, pixelScale()), ceilToPixel(size.height, pixelScale())};
}

double UILabel::wrappingWidth() const {
    if (numberOfLines_ == 1) return unlimited;
    if (preferredMaxLayoutWidth_ > 0) return preferredMaxLayoutWidth_;
    if (state_->layoutWidth <= 0) return unlimited;
    return std::max(textBounds({0, 0, state_->layoutWidth, unlimited}).size.width, 0.0);
}

CGSize UILabel::intrinsicContentSize() const {
    double const width = wrappingWidth();
    // The layout's width limits the height alone, so that the label can grow again when there is more room.
    auto const natural = naturalSize(preferredMaxLayoutWidth_ > 0 ? width : unlimited);
    return width < natural.width ? CGSize{natural.width, naturalSize(width).height} : natural;
}

bool UILabel::layoutWidthDidChange(double width) {
    if (numberOfLines_ == 1 || preferredMaxLayoutWidth_ > 0 || width == state_->layoutWidth) return false;
    double const before = intrinsicContentSize().height;
    state_->layoutWidth = width;
    return intrinsicContentSize().height != before;
}

CGSize UILabel::sizeThatFits(CGSize size) const {
    bool const isLimited = numberOfLines_ != 1 && size.width > 0;
    return naturalSize(isLimited ? size.width : unlimited);
}

CGRect UILabel::textRect(CGRect bounds, int numberOfLines) const {
    if (!drawsContents()) return {bounds.origin, {}};
    auto const size = layout(limits(bounds.size.width, bounds.size.height, numberOfLines)).size();
    return {bounds.origin, {ceilToPixel(size.width, pixelScale()), ceilToPixel(size.height, pixelScale())}};
}

std::optional<double> UILabel::firstBaselineOffsetFromTop() const {
    if (!drawsContents()) return std::nullopt;
    auto const size = intrinsicContentSize();
    auto const& text = naturalLayout(wrappingWidth());
    auto const area = textBounds({{}, size});
    return area.minY() + (area.size.height - text.size().height) / 2 + text.firstBaseline();
}

std::optional<double> UILabel::lastBaselineOffsetFromBottom() const {
    if (!drawsContents()) return std::nullopt;
    auto const size = intrinsicContentSize();
    auto const& text = naturalLayout(wrappingWidth());
    auto const area = textBounds({{}, size});
    double const top = area.minY() + (area.size.height - text.size().height) / 2;
    return size.height - top - text.lastBaseline();
}

TextLimits UILabel::fittingLimits(CGSize size, double fontScale, double slack) const {
    // A single line is drawn whole, however low the rectangle is.
    double const height = numberOfLines_ == 1 ? unlimited : size.height + slack;
    return limits(size.width + slack, height, numberOfLines_, fontScale);
}

bool UILabel::fits(CGSize size, double fontScale, double slack) const {
    TextLayout const text{layoutRuns(), fittingLimits(size, fontScale, slack)};
    return !text.isTruncated() && !text.breaksWord() && text.size().width <= size.width + slack;
}

bool UILabel::mayShrink() const {
    auto const mode = effectiveLineBreakMode();
    return adjustsFontSizeToFitWidth_ && minimumScaleFactor_ > 0 && minimumScaleFactor_ < 1 &&
           mode != NSLineBreakMode::byCharWrapping && mode != NSLineBreakMode::byClipping;
}

double UILabel::fittingScale(CGSize size) const {
    if (!mayShrink() || fits(size, 1, 1 / pixelScale())) return 1;
    return numberOfLines_ == 1 ? fittingScaleOfLine(size.width) : fittingScaleOfLines(size);
}

double UILabel::fittingScaleOfLine(double width) const {
    double scale = 1;
    for (int round = 0; round < scaleRounds; ++round) {
        TextLayout const text{layoutRuns(), limits(unlimited, unlimited, 1, scale)};
        if (text.isTruncated()) return minimumScaleFactor_;
        if (text.size().width <= width) return scale;
        scale *= safeScale * width / text.size().width;
        if (scale <= minimumScaleFactor_) return minimumScaleFactor_;
    }
    return minimumScaleFactor_;
}

double UILabel::fittingScaleOfLines(CGSize size) const {
    double best = minimumScaleFactor_;
    double tooLarge = 1;
    for (int step = 0; step < bisectionSteps; ++step) {
        double const middle = (best + tooLarge) / 2;
        (fits(size, middle, 0) ? best : tooLarge) = middle;
    }
    return best;
}

UILabel::Fitted const& UILabel::fitted(CGSize size) const {
    auto const& runs = layoutRuns();
    auto& kept = state_->fitted;
    if (kept && kept->size == size && kept->isRightToLeft == isRightToLeft()) return *kept;
    double const scale = fittingScale(size);
    // Edges are rounded to pixels one by one, so a frame may be a pixel smaller than what was measured.
    TextLayout text{runs, fittingLimits(size, scale, 1 / pixelScale())};
    if (text.lineCount() == 0) text = TextLayout{runs, limits(size.width, unlimited, 1, scale)};
    Fit const fit{.scale = scale,
                  .truncated = text.isTruncated(),
                  .breaksWord = text.breaksWord(),
                  .lineCount = text.lineCount()};
    kept.emplace(Fitted{size, isRightToLeft(), fit, std::move(text)});
    return *kept;
}

UILabel::Fit UILabel::fit() const {
    if (!drawsContents()) return {};
    auto const area = textBounds(bounds());
    if (area.size.width > 0) return fitted(area.size).fit;
    return {.lineCount = naturalLayout(unlimited).lineCount()};
}

bool UILabel::drawsContents() const { return attributedText_ && !attributedText_->empty(); }

/// A line that is higher than the label reaches out of it at both ends.
CGRect UILabel::drawingRect(CALayer const& layer) const {
    auto const usual = UIView::drawingRect(layer);
    auto const area = textBounds(bounds());
    if (!drawsContents() || area.size.width <= 0) return usual;
    double const excess = fitted(area.size).layout.size().height - area.size.height;
    return excess > 0 ? usual.unionWith(area.insetBy(0, -excess / 2)) : usual;
}

void UILabel::draw(CGRect /*rect*/, Canvas& canvas) {
    canvas.save();
    if (!isEnabled_) canvas.multiplyOpacity(0.5);
    drawText(bounds(), canvas);
    canvas.restore();
}

void UILabel::drawText(CGRect rect, Canvas& canvas) {
    if (!drawsContents() || rect.size.width <= 0) return;
    auto const& text = fitted(rect.size).layout;
    double const top = rect.origin.y + (rect.size.height - text.size().height) / 2;
    text.draw(canvas, {rect.origin.x, roundToPixel(top, pixelScale())}, rect.size.width);
}

} // namespace trelundo
