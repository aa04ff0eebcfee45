#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include "trelundo/platform/foundation/internal/Context.h"

namespace trelundo {

namespace {

std::optional<UITraitCollection>& chosenTraits() {
    static std::optional<UITraitCollection> traits;
    return traits;
}

struct ScreenTraits {
    UITraitCollection traits;
};

UITraitCollection& screenTraits() { return Context::current().part<ScreenTraits>().traits; }

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
