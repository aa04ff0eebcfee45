#pragma once

#include "trelundo/platform/uikit/views/UIColor.h"

#include <utility>

namespace trelundo {

// The colours that a host may choose, a class each: a screen or control derives from those that it shows.

/// The ground of a screen.
class BackgroundColored {
public:
    UIColor backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(UIColor color) { backgroundColor_ = std::move(color); }

private:
    UIColor backgroundColor_ = UIColor::black();
};

class TextColored {
public:
    UIColor textColor() const { return textColor_; }
    void setTextColor(UIColor color) { textColor_ = std::move(color); }

private:
    UIColor textColor_ = UIColor::white();
};

/// The ground of the continue button.
class ButtonColored {
public:
    UIColor buttonColor() const { return buttonColor_; }
    void setButtonColor(UIColor color) { buttonColor_ = std::move(color); }

private:
    UIColor buttonColor_{1, 0.6784313725490196, 0.6392156862745098};
};

/// The title of the continue button.
class ButtonTextColored {
public:
    UIColor buttonTextColor() const { return buttonTextColor_; }
    void setButtonTextColor(UIColor color) { buttonTextColor_ = std::move(color); }

private:
    UIColor buttonTextColor_ = UIColor::black();
};

/// Legal links and terms.
class TermsColored {
public:
    UIColor termsColor() const { return termsColor_; }
    void setTermsColor(UIColor color) { termsColor_ = std::move(color); }

private:
    UIColor termsColor_ = UIColor::gray(1, 0.5);
};

/// The ground of the selected plan.
class SelectedColored {
public:
    UIColor selectedColor() const { return selectedColor_; }
    void setSelectedColor(UIColor color) { selectedColor_ = std::move(color); }

private:
    UIColor selectedColor_{0.09019607843137255, 0.09019607843137255, 0.09019607843137255};
};

} // namespace trelundo
