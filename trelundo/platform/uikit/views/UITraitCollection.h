#pragma once

#include <optional>

namespace trelundo {

enum class UIUserInterfaceIdiom : int { unspecified = -1, phone = 0, pad = 1 };
enum class UIUserInterfaceSizeClass : int { unspecified = 0, compact = 1, regular = 2 };
enum class UIUserInterfaceStyle : int { unspecified = 0, light = 1, dark = 2 };
enum class UIUserInterfaceLayoutDirection : int { leftToRight = 0, rightToLeft = 1 };
enum class UITraitLayoutDirection : int { unspecified = -1, leftToRight = 0, rightToLeft = 1 };

/// The environment of a view or controller. Immutable by convention: a change is a new value.
class UITraitCollection {
public:
    UIUserInterfaceIdiom userInterfaceIdiom = UIUserInterfaceIdiom::unspecified;
    UIUserInterfaceSizeClass horizontalSizeClass = UIUserInterfaceSizeClass::unspecified;
    UIUserInterfaceSizeClass verticalSizeClass = UIUserInterfaceSizeClass::unspecified;
    UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::unspecified;
    UITraitLayoutDirection layoutDirection = UITraitLayoutDirection::unspecified;
    double displayScale = 0; // pixels a point; 0: unspecified

    bool operator==(UITraitCollection const&) const = default;

    /// The traits by which dynamic colours resolve just now (those of the view being drawn or notified, else
    /// the main screen's).
    static UITraitCollection const& current();
    /// What current() is outside any UITraitScope.
    static void setScreenTraits(UITraitCollection const& traits);
};

/// Makes traits current for its own lifetime; scopes nest.
class UITraitScope {
public:
    explicit UITraitScope(UITraitCollection const& traits);
    ~UITraitScope();
    UITraitScope(UITraitScope const&) = delete;
    UITraitScope& operator=(UITraitScope const&) = delete;

private:
    std::optional<UITraitCollection> previous_;
};

} // namespace trelundo
