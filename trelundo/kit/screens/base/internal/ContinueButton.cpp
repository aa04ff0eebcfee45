#include "trelundo/kit/screens/base/internal/ContinueButton.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/Strings.h"
#include "trelundo/platform/uikit/text/AttributedText.h"

#include <cmath>

namespace trelundo {

double continueButtonWidth(std::string_view trialKey, UIFont font, double padding) {
    TextAttributes attributes;
    attributes.set(NSAttributedStringKey::font, font);
    auto const text = replacingOccurrences(Texts::text(trialKey), "%%%", Texts::text("7 days"));
    auto const natural = boundingRect(NSAttributedString{text, attributes},
                                      {greatestFiniteMagnitude, greatestFiniteMagnitude});
    return std::ceil(natural.width()) + padding;
}

} // namespace trelundo
