#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include "trelundo/platform/uikit/views/UIScreen.h"

namespace trelundo {

namespace {

std::optional<UITraitCollection>& chosenTraits() {
    static std::optional<UITraitCollection> traits;
    return traits;
}

} // namespace

UITraitCollection const& UITraitCollection::current() {
    if (chosenTraits()) return *chosenTraits();
    static UITraitCollection screenTraits;
    screenTraits = UIScreen::main().traitCollection();
    return screenTraits;
}

void UITraitCollection::setCurrent(UITraitCollection const& traits) { chosenTraits() = traits; }

UITraitScope::UITraitScope(UITraitCollection const& traits)
    : previous_(chosenTraits()) {
    chosenTraits() = traits;
}

UITraitScope::~UITraitScope() { chosenTraits() = previous_; }

} // namespace trelundo
