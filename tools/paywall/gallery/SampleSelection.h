#pragma once

#include "tools/paywall/Options.h"
#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include <string_view>

namespace trelundo::paywall {

/// The A/B tags that a gallery draws of `screen`: of `asked` those that the screen knows, without a tag when
/// it knows none of them. With nothing asked no tag, and what the first paywall knows.
std::vector<std::string> sampleTags(std::string_view screen, std::vector<std::string> const& asked);
/// Whether any screen changes with the tag. The empty one counts as known.
bool isKnownTag(std::string_view tag);

/// Selects the product, and gives the discount, with which `options.screen` shows all that it can: an offer
/// screen the first product with a promotional offer, the trial paywall the first with a free trial, every
/// other the first product. What the catalogue does not have is left out.
void selectSampleProduct(Options& options, StoreConfiguration const& catalogue);

} // namespace trelundo::paywall
