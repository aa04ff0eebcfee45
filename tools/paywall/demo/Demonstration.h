#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trelundo::paywall {

/// The built-in demonstration catalogue, as the text of a StoreKit configuration file.
std::string_view demonstrationCatalogue();

/// Captions and pictures of the demonstration carousel in the user's language, as `--set features` spells
/// them.
std::string demonstrationFeatures();

/// Puts the demonstration pictures, and the folders before them, into the main bundle.
void addHostPictures(std::vector<std::string> const& folders);

} // namespace trelundo::paywall
