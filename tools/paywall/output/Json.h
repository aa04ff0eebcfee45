#pragma once

#include <nlohmann/json.hpp> // IWYU pragma: keep
#include <optional>
#include <string>

namespace trelundo::paywall {

using Json = nlohmann::ordered_json;

/// `json` as text, on one line or with `indent` blanks a level. Bytes that are no UTF-8 (a command line may
/// hold any) become replacement characters.
std::string toText(Json const& json, int indent = -1);

/// The value, null when it is absent.
template <class Value> Json orNull(std::optional<Value> const& value) {
    return value ? Json(*value) : Json(nullptr);
}

/// `value` in whole parts of a `parts`th, so that it prints short and equal everywhere.
double rounded(double value, double parts);

} // namespace trelundo::paywall
