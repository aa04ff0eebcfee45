#pragma once

#include "trelundo/platform/foundation/Ref.h"

#include <map>
#include <string>

namespace trelundo {

/// An error of a domain, told apart by its code. Two errors are equal when domain, code and user info are.
class NSError : public NSObject {
public:
    using UserInfo = std::map<std::string, std::string>;
    static constexpr char const* localizedDescriptionKey = "NSLocalizedDescription";

    NSError(std::string domain, int code, UserInfo userInfo = {});

    std::string const& domain() const { return domain_; }
    int code() const { return code_; }
    UserInfo const& userInfo() const { return userInfo_; }

    /// The user info's own text, else "The operation couldn’t be completed. (domain error N.)".
    std::string localizedDescription() const;
    /// `Error Domain=D Code=N "localised description" UserInfo={...}`.
    std::string description() const override;
    bool isEqual(NSObject const& other) const override;

private:
    std::string domain_;
    int code_;
    UserInfo userInfo_;
};

} // namespace trelundo
