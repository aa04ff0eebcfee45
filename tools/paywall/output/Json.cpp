#include "tools/paywall/output/Json.h"

#include <cmath>

namespace trelundo::paywall {

std::string toText(Json const& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// The sum makes a negative zero positive.
double rounded(double value, double parts) { return std::round(value * parts) / parts + 0.0; }

} // namespace trelundo::paywall
