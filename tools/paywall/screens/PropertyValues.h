#pragma once

#include "trelundo/kit/screens/base/FeatureCarousel.h"
#include "trelundo/platform/uikit/views/UIColor.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace trelundo::paywall {

// Values as a command line spells them. What cannot be read throws a Failure with status 2 that names the
// value.

bool parseBool(std::string const& text);   // true or false
int parseInteger(std::string const& text); // decimal digits with an optional sign
double parseNumber(std::string const& text);
UIColor parseColor(std::string const& text); // #rrggbb or #rrggbbaa

/// The texts before and after the first "="; `form` is told when there is none or nothing before it.
std::pair<std::string, std::string> parseAssignment(std::string const& text, std::string_view form);

std::vector<Feature> parseFeatures(std::string const& text); // Text:picture;Text:picture; at least one

} // namespace trelundo::paywall
