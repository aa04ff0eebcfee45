#include "trelundo/platform/uikit/views/UIColor.h"

#include <charconv>

namespace trelundo {

namespace {

UIColor bytes(int red, int green, int blue) { return {red / 255.0, green / 255.0, blue / 255.0}; }

UIColor byAppearance(UIColor const& light, UIColor const& dark) {
    return UIColor::dynamic([light, dark](UITraitCollection const& traits) {
        return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? dark : light;
    });
}

} // namespace

std::optional<UIColor> UIColor::fromHex(std::string_view text) {
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#') return std::nullopt;
    unsigned value = 0;
    auto const* const end = text.data() + text.size();
    auto const [parsed, error] = std::from_chars(text.data() + 1, end, value, 16);
    if (error != std::errc{} || parsed != end) return std::nullopt;
    if (text.size() == 7) value = value << 8 | 0xFF;
    auto const component = [value](int shift) { return (value >> shift & 0xFF) / 255.0; };
    return UIColor{component(24), component(16), component(8), component(0)};
}

UIColor UIColor::dynamic(std::function<UIColor(UITraitCollection const&)> rule) {
    UIColor color = clear();
    color.rule_ = std::make_shared<std::function<UIColor(UITraitCollection const&)> const>(std::move(rule));
    return color;
}

UIColor UIColor::systemBlue() {
    static auto const color = byAppearance(bytes(0, 122, 255), bytes(10, 132, 255));
    return color;
}

UIColor UIColor::systemRed() {
    static auto const color = byAppearance(bytes(255, 59, 48), bytes(255, 69, 58));
    return color;
}

UIColor UIColor::systemGray() { return bytes(142, 142, 147); }

UIColor UIColor::label() {
    static auto const color = byAppearance(black(), white());
    return color;
}

UIColor UIColor::systemBackground() {
    static auto const color = byAppearance(white(), black());
    return color;
}

UIColor UIColor::withAlphaComponent(double alpha) const {
    auto color = *this;
    if (isDynamic())
        color.ruleAlpha_ = alpha;
    else
        color.fixed_.alpha = alpha;
    return color;
}

UIColor UIColor::resolved(UITraitCollection const& traits) const {
    if (!isDynamic()) return *this;
    auto color = (*rule_)(traits).resolved(traits);
    if (ruleAlpha_) color.fixed_.alpha = *ruleAlpha_;
    return color;
}

bool UIColor::operator==(UIColor const& other) const {
    return rule_ == other.rule_ && fixed_ == other.fixed_ && ruleAlpha_ == other.ruleAlpha_;
}

} // namespace trelundo
