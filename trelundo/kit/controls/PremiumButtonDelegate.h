#pragma once

#include <optional>
#include <string>

namespace trelundo {

/// Hears from a product button that has just become selected.
class PremiumButtonDelegate {
public:
    virtual ~PremiumButtonDelegate() = default;
    /// The texts of the product's free trial; both absent when it has none.
    virtual void updateOffer(std::optional<std::string> const& title,
                             std::optional<std::string> const& subtitle) = 0;
};

} // namespace trelundo
