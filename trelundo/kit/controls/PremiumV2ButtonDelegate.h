#pragma once

#include "trelundo/platform/foundation/NSAttributedString.h"

#include <string>

namespace trelundo {

/// Hears from a plan button that has just become selected.
class PremiumV2ButtonDelegate {
public:
    virtual ~PremiumV2ButtonDelegate() = default;
    struct ContinueTexts {
        NSAttributedString continueButtonAttributedTitle;
        std::string subtitleLabelText; // may be empty
    };
    virtual void set(ContinueTexts const& texts) = 0;
};

} // namespace trelundo
