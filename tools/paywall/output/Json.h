#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace trelundo::paywall {

using Json = nlohmann::ordered_json;

/// `json` as text, on one line or with `indent` blanks a level. Bytes that are no UTF-8 (a command line may
/// hold any) become replacement characters.
std::string toText(Json const& json, int indent = -1);

} // namespace trelundo::paywall
