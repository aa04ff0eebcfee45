#include "trelundo/kit/screens/base/internal/ContinueButton.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewConfiguration.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"

#include <cmath>

namespace trelundo {

Ref<UIButton> makeContinueButton(UIButtonType type, UIFont titleFont, UIColor background) {
    auto button = usingAutoLayout(make<UIButton>(type));
    roundCorners(*button);
    button->setBackgroundColor(std::move(background));
    button->titleLabel()->setFont(titleFont);
    shrinkToFit(*button->titleLabel());
    return button;
}

double continueButtonWidth(std::string_view trialKey, UIFont font, double padding) {
    auto const text = filledWithPeriod(trialKey, Texts::text("7 days"));
    auto const natural = boundingRect(NSAttributedString{text, textAttributes(font)},
                                      {greatestFiniteMagnitude, greatestFiniteMagnitude});
    return std::ceil(natural.width()) + padding;
}

} // namespace trelundo
