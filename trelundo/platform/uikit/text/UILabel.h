#pragma once

#include "trelundo/platform/graphics/text/TextLayout.h"
#include "trelundo/platform/uikit/text/AttributedText.h"
#include "trelundo/platform/uikit/views/UIView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelundo {

/// Shows text in lines: wraps, shrinks to a minimum scale, truncates. Takes no touches. Plain text has the
/// label's font, colour and paragraph; attributed text takes from the label what it lacks, and a later
/// assignment of one of these properties replaces that attribute in the whole text.
class UILabel : public UIView {
public:
    explicit UILabel(CGRect frame = {});
    ~UILabel() override;

    std::optional<std::string> text() const;
    void setText(std::optional<std::string> text);
    std::optional<NSAttributedString> const& attributedText() const { return attributedText_; }
    void setAttributedText(std::optional<NSAttributedString> text);
    // Of an attributed text font() and textColor() are its first character's.
    UIFont font() const;
    void setFont(UIFont font);
    UIColor textColor() const;
    void setTextColor(UIColor color);
    NSTextAlignment textAlignment() const { return textAlignment_; }
    void setTextAlignment(NSTextAlignment alignment);
    NSLineBreakMode lineBreakMode() const { return lineBreakMode_; }
    void setLineBreakMode(NSLineBreakMode mode);
    int numberOfLines() const { return numberOfLines_; } // 0: unlimited
    void setNumberOfLines(int lines);
    bool adjustsFontSizeToFitWidth() const { return adjustsFontSizeToFitWidth_; }
    void setAdjustsFontSizeToFitWidth(bool adjusts);
    double minimumScaleFactor() const { return minimumScaleFactor_; } // 0: no scaling
    void setMinimumScaleFactor(double factor);
    double preferredMaxLayoutWidth() const { return preferredMaxLayoutWidth_; } // points; 0: from the layout
    void setPreferredMaxLayoutWidth(double width);
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled);

    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize size) const override;
    bool layoutWidthDidChange(double width) override;
    std::optional<double> firstBaselineOffsetFromTop() const override;
    std::optional<double> lastBaselineOffsetFromBottom() const override;
    /// The used rectangle at the top of `bounds`.
    virtual CGRect textRect(CGRect bounds, int numberOfLines) const;
    /// Draws the text vertically centred in `rect` (at first the bounds). An override that passes a smaller
    /// rectangle also overrides textBounds().
    virtual void drawText(CGRect rect, Canvas& canvas);

    bool drawsContents() const override;
    CGRect drawingRect(CALayer const& layer) const override;
    void draw(CGRect rect, Canvas& canvas) override;
    std::string accessibilityLabel() const override;
    UIAccessibilityTraits accessibilityTraits() const override { return UIAccessibilityTraits::staticText; }

    /// What the text comes to in the present bounds.
    struct Fit {
        double scale = 1; // applied to all fonts
        bool truncated = false;
        bool breaksWord = false; // a line ends inside a word for want of width
        int lineCount = 0;
    };
    Fit fit() const;
    /// The whole content with the label's own attributes filled in; empty without text.
    std::vector<TextRun> resolvedRuns() const;

protected:
    void appearanceDidChange() override;
    /// The part of `bounds` that the text may fill, by which it is wrapped, measured and shrunk. A subclass
    /// with a margin overrides it.
    virtual CGRect textBounds(CGRect bounds) const { return bounds; }

private:
    friend class UIButton;
    struct State;
    struct Fitted;

    /// Makes this label a button's title: its attributed texts keep their own attributes, the button hears of
    /// changes and reports the text.
    void becomeTitle(std::function<void()> contentDidChange);
    bool isTitle() const;
    /// Whether a setting of the label leaves the attributes of its text alone.
    bool keepsAttributes() const;
    /// An attribute of the first character of the label's own attributed text.
    template <class T> std::optional<T> firstAttribute(AttributeKey<T> key) const;
    /// Changes the attributes of all runs of an attributed text.
    template <class Change> void changeAttributes(Change const& change);
    template <class Change> void changeParagraphs(Change const& change);
    void contentDidChange();
    void forgetLayouts();
    void reportText();

    // Measuring (UILabelLayout.cpp).
    double pixelScale() const;
    NSLineBreakMode effectiveLineBreakMode() const;
    std::vector<TextRun> const& layoutRuns() const;
    TextLimits limits(double width, double height, int lines, double fontScale = 1) const;
    TextLayout const& layout(TextLimits const& limits) const;
    TextLayout const& naturalLayout(double width) const;
    CGSize naturalSize(double width) const;
    double wrappingWidth() const;
    TextLimits fittingLimits(CGSize size, double fontScale, double slack) const;
    bool fits(CGSize size, double fontScale, double slack) const;
    bool mayShrink() const;
    double fittingScale(CGSize size) const;
    double fittingScaleOfLine(double width) const;
    double fittingScaleOfLines(CGSize size) const;
    Fitted const& fitted(CGSize size) const;

    std::unique_ptr<State> state_;
    std::optional<NSAttributedString> attributedText_;
    bool isPlain_ = true;
    UIFont font_ = UIFont::system(17);
    UIColor textColor_ = UIColor::label();
    NSTextAlignment textAlignment_ = NSTextAlignment::natural;
    NSLineBreakMode lineBreakMode_ = NSLineBreakMode::byTruncatingTail;
    int numberOfLines_ = 1;
    bool adjustsFontSizeToFitWidth_ = false;
    double minimumScaleFactor_ = 0;
    double preferredMaxLayoutWidth_ = 0;
    bool isEnabled_ = true;
};

} // namespace trelundo
