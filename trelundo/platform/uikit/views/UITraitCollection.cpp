#include "trelundo/platform/uikit/views/UITraitCollection.h"

namespace trelundo {

namespace {

std::optional<UITraitCollection>& chosenTraits() {
    static std::optional<UITraitCollection> traits;
    return traits;
}

UITraitCollection& screenTraits() {
    static UITraitCollection traits;
    return traits;
}

} // namespace

UITraitCollection const& UITraitCollection::current() {
    return chosenTraits() ? *chosenTraits() : screenTraits();
}

void UITraitCollection::setScreenTraits(UITraitCollection const& traits) { screenTraits() = traits; }

UITraitScope::UITraitScope(UITraitCollection const& traits)
    : previous_(chosenTraits()) {
    chosenTraits() = traits;
}

UITraitScope::~UITraitScope() { chosenTraits() = previous_; }

} // namespace trelundo
