#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <string>
#include <string_view>

namespace trelundo {

/// A country's store: how its three-letter code (ISO 3166-1 alpha-3) maps to a region and a currency.
struct Storefront {
    std::string code = "USA";
    std::string region = "US";    // alpha-2
    std::string currency = "USD"; // ISO 4217, by the store's published list of report currencies

    /// An unknown code is an error that names it.
    static Result<Storefront> find(std::string_view code);

    /// The identifier of the locale that prices have: the language (and script) of `locale`, the region and
    /// currency of the storefront, such as `en_PT@currency=EUR`.
    std::string priceLocale(std::string_view locale) const;
};

} // namespace trelundo
