#pragma once

#include "trelundo/platform/graphics/CGColor.h"
#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace trelundo {

/// A colour, fixed or dependent on the traits. Components are fractions of 1 in sRGB.
class UIColor {
public:
    UIColor(double red, double green, double blue, double alpha = 1)
        : fixed_{red, green, blue, alpha} {}
    UIColor(CGColor color) // NOLINT(google-explicit-constructor): a fixed color is a color
        : fixed_(color) {}
    /// "#rrggbb" or "#rrggbbaa"; none for any other text.
    static std::optional<UIColor> fromHex(std::string_view text);
    static UIColor gray(double white, double alpha) { return {white, white, white, alpha}; }
    /// `rule` is asked again for every set of traits; each call makes a colour of its own identity.
    static UIColor dynamic(std::function<UIColor(UITraitCollection const&)> rule);

    static UIColor black() { return {0, 0, 0}; }
    static UIColor white() { return {1, 1, 1}; }
    static UIColor clear() { return {0, 0, 0, 0}; }
    static UIColor gray() { return {0.5, 0.5, 0.5}; }
    static UIColor lightGray() { return {2.0 / 3, 2.0 / 3, 2.0 / 3}; }
    static UIColor darkGray() { return {1.0 / 3, 1.0 / 3, 1.0 / 3}; }
    static UIColor red() { return {1, 0, 0}; }
    static UIColor systemBlue();
    static UIColor systemRed();
    static UIColor systemGray();
    static UIColor label();
    static UIColor systemBackground();

    UIColor withAlphaComponent(double alpha) const;
    /// The fixed colour under `traits`.
    UIColor resolved(UITraitCollection const& traits) const;
    /// A snapshot under the current traits; later appearance changes do not alter it.
    CGColor cgColor() const { return resolved(UITraitCollection::current()).fixed_; }
    CGColor cgColor(UITraitCollection const& traits) const { return resolved(traits).fixed_; }
    bool isDynamic() const { return static_cast<bool>(rule_); }

    /// Components of fixed colours; identity of the rule for dynamic ones.
    bool operator==(UIColor const& other) const;

private:
    CGColor fixed_;
    std::shared_ptr<std::function<UIColor(UITraitCollection const&)> const> rule_;
    std::optional<double> ruleAlpha_; // replaces the alpha that the rule gives
};

} // namespace trelundo
