#pragma once

#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"

#include <vector>

namespace trelundo {

/// The row of legal links at the foot of a screen: system-type buttons with "|" between them.
struct LinksRow {
    enum class Link { userAgreement, privacyPolicy, alreadyPaid };

    std::vector<Link> links{Link::userAgreement, Link::privacyPolicy, Link::alreadyPaid};
    UIFont font;
    UIColor color;
    UIEdgeInsets buttonContentInsets = {};
    UIStackViewAlignment alignment = UIStackViewAlignment::fill;

    /// The row as the second generation of paywalls shows it.
    static LinksRow secondGeneration(UIColor color);

    /// A horizontal stack whose buttons call the screen's own link and restore actions.
    Ref<UIStackView> make(BaseViewController& screen) const;
};

} // namespace trelundo
