#include "trelundo/platform/foundation/NSError.h"

#include <fmt/core.h>

namespace trelundo {

NSError::NSError(std::string domain, int code, UserInfo userInfo)
    : domain_(std::move(domain))
    , code_(code)
    , userInfo_(std::move(userInfo)) {}

std::string NSError::localizedDescription() const {
    auto const own = userInfo_.find(localizedDescriptionKey);
    if (own != userInfo_.end()) return own->second;
    return fmt::format("The operation couldn’t be completed. ({} error {}.)", domain_, code_);
}

std::string NSError::description() const {
    std::string entries;
    for (auto const& [key, value] : userInfo_)
        entries += fmt::format("{}{}={}", entries.empty() ? "" : ", ", key, value);
    return fmt::format("Error Domain={} Code={} \"{}\" UserInfo={{{}}}", domain_, code_,
                       localizedDescription(), entries);
}

bool NSError::isEqual(NSObject const& other) const {
    auto const* error = dynamic_cast<NSError const*>(&other);
    return error && domain_ == error->domain_ && code_ == error->code_ && userInfo_ == error->userInfo_;
}

} // namespace trelundo
