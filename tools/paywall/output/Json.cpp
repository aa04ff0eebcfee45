#include "tools/paywall/output/Json.h"

namespace trelundo::paywall {

std::string toText(Json const& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

} // namespace trelundo::paywall
