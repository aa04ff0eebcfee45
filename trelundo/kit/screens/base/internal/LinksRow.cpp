#include "trelundo/kit/screens/base/internal/LinksRow.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/ViewFactory.h"

namespace trelundo {

namespace {

struct LinkContent {
    char const* title;
    void (BaseViewController::*action)(UIControl&);
};

LinkContent contentOf(LinksRow::Link link) {
    switch (link) {
    case LinksRow::Link::userAgreement:
        return {"User Agreement", &BaseViewController::userAgreement};
    case LinksRow::Link::privacyPolicy:
        return {"Privacy Policy", &BaseViewController::privacyPolicy};
    case LinksRow::Link::alreadyPaid:
        break;
    }
    return {"Already Paid?", &BaseViewController::restorePurchases};
}

Ref<UIButton> makeButton(LinksRow const& row, LinksRow::Link link, BaseViewController& screen) {
    auto const content = contentOf(link);
    auto button = make<UIButton>(UIButtonType::system);
    button->setTitle(Texts::text(content.title), UIControlState::normal);
    button->titleLabel()->setFont(row.font);
    button->setTitleColor(row.color, UIControlState::normal);
    button->setContentEdgeInsets(row.buttonContentInsets);
    button->addTarget(&screen, content.action, UIControlEvents::touchUpInside);
    return button;
}

Ref<UILabel> makeSeparator(LinksRow const& row) {
    auto label = make<UILabel>();
    label->setText("|");
    label->setFont(row.font);
    label->setTextColor(row.color);
    return label;
}

} // namespace

LinksRow LinksRow::secondGeneration(UIColor color) {
    return {.font = UIFont::system(11, UIFont::Weight::medium),
            .color = std::move(color),
            .buttonContentInsets = {0, 0, 10, 0},
            .alignment = UIStackViewAlignment::top};
}

Ref<UIStackView> LinksRow::make(BaseViewController& screen) const {
    auto stack = makeHorizontalStack({});
    stack->setSpacing(4);
    stack->setAlignment(alignment);
    for (auto const link : links) {
        if (!stack->arrangedSubviews().empty()) stack->addArrangedSubview(makeSeparator(*this));
        stack->addArrangedSubview(makeButton(*this, link, screen));
    }
    return stack;
}

} // namespace trelundo
