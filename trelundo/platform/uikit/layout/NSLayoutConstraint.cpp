#include "trelundo/platform/uikit/layout/NSLayoutConstraint.h"

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/uikit/layout/LayoutItem.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/views/UIView.h"

#include <fmt/core.h>

namespace trelundo {

namespace {

enum class AttributeKind { none, x, directionalX, y, dimension };

AttributeKind kindOf(NSLayoutAttribute attribute) {
    switch (attribute) {
    case NSLayoutAttribute::notAnAttribute:
        return AttributeKind::none;
    case NSLayoutAttribute::left:
    case NSLayoutAttribute::right:
        return AttributeKind::x;
    case NSLayoutAttribute::leading:
    case NSLayoutAttribute::trailing:
        return AttributeKind::directionalX;
    case NSLayoutAttribute::centerX:
        return AttributeKind::x;
    case NSLayoutAttribute::width:
    case NSLayoutAttribute::height:
        return AttributeKind::dimension;
    default:
        return AttributeKind::y;
    }
}

bool combine(NSLayoutAttribute first, NSLayoutAttribute second) {
    auto const a = kindOf(first);
    auto const b = kindOf(second);
    if (a == b) return true;
    bool const bothOnX = (a == AttributeKind::x || a == AttributeKind::directionalX) &&
                         (b == AttributeKind::x || b == AttributeKind::directionalX);
    return bothOnX && (first == NSLayoutAttribute::centerX || second == NSLayoutAttribute::centerX);
}

LayoutItem* layoutItem(NSObject* object) { return dynamic_cast<LayoutItem*>(object); }

void requireSense(NSLayoutConstraint::Parameters const& parameters) {
    if (!layoutItem(parameters.firstItem.get()))
        fatalError("A constraint needs a view or a layout guide as its first item");
    if (parameters.secondItem) {
        if (!layoutItem(parameters.secondItem.get()))
            fatalError("A constraint needs a view or a layout guide as its second item");
        if (!combine(parameters.firstAttribute, parameters.secondAttribute))
            fatalError("A constraint cannot combine these two attributes");
    } else if (kindOf(parameters.firstAttribute) != AttributeKind::dimension) {
        fatalError("Only a width or a height can be compared with a constant alone");
    }
}

/// The nearest view that both are in, itself included; null without one.
UIView* commonAncestor(UIView& first, UIView& second) {
    for (UIView* candidate = &first; candidate; candidate = candidate->superview()) {
        if (second.isDescendantOf(*candidate)) return candidate;
    }
    return nullptr;
}

} // namespace

NSLayoutConstraint::NSLayoutConstraint(Parameters parameters)
    : firstItem_(parameters.firstItem)
    , secondItem_(parameters.secondItem)
    , hasSecondItem_(static_cast<bool>(parameters.secondItem))
    , firstAttribute_(parameters.firstAttribute)
    , secondAttribute_(parameters.secondAttribute)
    , relation_(parameters.relation)
    , multiplier_(parameters.multiplier)
    , constant_(parameters.constant)
    , priority_(parameters.priority) {
    requireSense(parameters);
}

NSLayoutConstraint::~NSLayoutConstraint() = default;

void NSLayoutConstraint::setConstant(double constant) {
    if (constant == constant_) return;
    constant_ = constant;
    if (!owner_) return;
    if (engineId_ >= 0) LayoutNode::of(*owner_).engine->constantDidChange(*this);
    markItems();
}

void NSLayoutConstraint::setPriority(UILayoutPriority priority) {
    if (priority == priority_) return;
    priority_ = priority;
    if (!owner_) return;
    if (engineId_ >= 0) LayoutNode::of(*owner_).engine->priorityDidChange(*this);
    markItems();
}

void NSLayoutConstraint::setActive(bool active) {
    if (active == isActive_) return;
    auto const self = strong(*this);
    active ? install() : uninstall();
}

NSLayoutConstraint::Item NSLayoutConstraint::resolve(NSObject* object) {
    auto* const item = layoutItem(object);
    return item ? Item{item->layoutView(), item->layoutGuide()} : Item{};
}

void NSLayoutConstraint::install() {
    first_ = resolve(firstItem().get());
    second_ = resolve(secondItem().get());
    if (first_.view && (second_.view || !hasSecondItem_))
        owner_ = second_.view ? commonAncestor(*first_.view, *second_.view) : first_.view;
    if (!owner_) fatalError("The items of a constraint have no common ancestor: " + description());
    static unsigned long activations = 0;
    activation_ = ++activations;
    isActive_ = true;
    owner_->constraints_.push_back(strong(*this));
    LayoutNode::of(*first_.view).mentions.push_back(this);
    if (second_.view && second_.view != first_.view) LayoutNode::of(*second_.view).mentions.push_back(this);
    if (auto* engine = LayoutEngine::existing(*owner_)) engine->constraintWasActivated(*this);
    markItems();
}

void NSLayoutConstraint::uninstall() {
    if (engineId_ >= 0) LayoutNode::of(*owner_).engine->removeConstraint(*this);
    markItems();
    auto& installed = owner_->constraints_;
    auto const found = std::ranges::find(installed, this, &Ref<NSLayoutConstraint>::get);
    if (found != installed.end()) installed.erase(found);
    detachFromOwner();
}

/// Items may already be gone when the owner is being destroyed.
void NSLayoutConstraint::detachFromOwner() {
    auto const forget = [this](Ref<NSObject> const& object, Item& item) {
        auto const* const view = object ? layoutItem(object.get())->layoutView() : nullptr;
        auto* const node = view ? LayoutNode::existing(*view) : nullptr;
        if (node) std::erase(node->mentions, this);
        item = {};
    };
    forget(firstItem(), first_);
    forget(secondItem(), second_);
    isActive_ = false;
    owner_ = nullptr;
    engineId_ = -1;
}

void NSLayoutConstraint::markItems() const {
    owner_->setNeedsLayout();
    first_.view->setNeedsLayout();
    if (second_.view) second_.view->setNeedsLayout();
}

void NSLayoutConstraint::activate(std::vector<Ref<NSLayoutConstraint>> const& constraints) {
    for (auto const& constraint : constraints) constraint->setActive(true);
}

void NSLayoutConstraint::deactivate(std::vector<Ref<NSLayoutConstraint>> const& constraints) {
    // The argument may be a view's own list, which shrinks.
    auto const all = constraints; // NOLINT(performance-unnecessary-copy-initialization)
    for (auto const& constraint : all) constraint->setActive(false);
}

std::string NSLayoutConstraint::description() const {
    static constexpr std::array<std::string_view, 13> names{
        "",      "left",   "right",   "top",     "bottom",       "leading",      "trailing",
        "width", "height", "centerX", "centerY", "lastBaseline", "firstBaseline"};
    auto const side = [](Ref<NSObject> const& item, NSLayoutAttribute attribute) {
        return fmt::format("{}.{}", item ? layoutItem(item.get())->layoutName() : "(destroyed)",
                           names[static_cast<std::size_t>(attribute)]);
    };
    static constexpr std::array<std::string_view, 3> relations{"<=", "==", ">="};
    auto text = fmt::format("{} {} ", side(firstItem(), firstAttribute_),
                            relations[static_cast<std::size_t>(static_cast<int>(relation_) + 1)]);
    if (hasSecondItem_) {
        if (multiplier_ != 1) text += fmt::format("{:g} * ", multiplier_);
        text += side(secondItem(), secondAttribute_);
        if (constant_ != 0) text += fmt::format(" {} {:g}", constant_ < 0 ? '-' : '+', std::abs(constant_));
    } else {
        text += fmt::format("{:g}", constant_);
    }
    text += fmt::format(" at {:g}", priority_.value);
    return identifier_.empty() ? text : fmt::format("\"{}\" ({})", identifier_, text);
}

void activate(std::initializer_list<LayoutRule> rules) {
    for (auto const& rule : rules) rule.constraint()->setActive(true);
}

LayoutRule LayoutRule::at(UILayoutPriority priority) const {
    constraint_->setPriority(priority);
    return *this;
}

LayoutRule makeRule(Ref<NSObject> const& item, NSLayoutAttribute attribute, NSLayoutRelation relation,
                    Ref<NSObject> const& other, NSLayoutAttribute otherAttribute, double multiplier,
                    double constant) {
    return LayoutRule{
        make<NSLayoutConstraint>(NSLayoutConstraint::Parameters{.firstItem = item,
                                                                .firstAttribute = attribute,
                                                                .relation = relation,
                                                                .secondItem = other,
                                                                .secondAttribute = otherAttribute,
                                                                .multiplier = multiplier,
                                                                .constant = constant})};
}

} // namespace trelundo
