#pragma once

#include <string>
#include <vector>

namespace trelundo::paywall {

/// The languages that the kit's texts exist in, sorted.
std::vector<std::string> languages();

/// Whether the tag is one that a user's settings could hold: well formed, of a language that exists. Its
/// texts may still fall back to another one.
bool isKnownLanguage(std::string const& tag);

} // namespace trelundo::paywall
