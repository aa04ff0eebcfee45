#pragma once

#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo {

/// The text as it stands in a rectangle of `size` points.
struct UILabel::Fitted {
    CGSize size;
    bool isRightToLeft;
    Fit fit;
    TextLayout layout;
};

/// What a label keeps of its measuring until its content changes.
struct UILabel::State {
    struct Layout {
        TextLimits limits;
        TextLayout layout;
    };

    std::optional<std::vector<TextRun>> runs;
    UIUserInterfaceStyle style = UIUserInterfaceStyle::unspecified; // under which the runs were resolved
    std::vector<Layout> layouts;                                    // the latest few
    std::optional<Fitted> fitted;
    double layoutWidth = 0; // points, from the layout pass; 0: not known yet
    std::string shownText;
    std::function<void()> titleObserver;
};

} // namespace trelundo
