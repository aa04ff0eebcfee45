#pragma once

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/uikit/Forward.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace trelundo {

/// 1 to 1000; 1000 is required. Fractions are allowed.
struct UILayoutPriority {
    double value;
    constexpr UILayoutPriority(double v) // NOLINT(google-explicit-constructor): `at(750)`
        : value(v) {}
    constexpr auto operator<=>(UILayoutPriority const&) const = default;

    static UILayoutPriority const required, defaultHigh, dragThatCanResizeScene, sceneSizeStayPut,
        dragThatCannotResizeScene, defaultLow, fittingSizeLevel;
};
inline constexpr UILayoutPriority UILayoutPriority::required{1000};
inline constexpr UILayoutPriority UILayoutPriority::defaultHigh{750};
inline constexpr UILayoutPriority UILayoutPriority::dragThatCanResizeScene{510};
inline constexpr UILayoutPriority UILayoutPriority::sceneSizeStayPut{500};
inline constexpr UILayoutPriority UILayoutPriority::dragThatCannotResizeScene{490};
inline constexpr UILayoutPriority UILayoutPriority::defaultLow{250};
inline constexpr UILayoutPriority UILayoutPriority::fittingSizeLevel{50};

enum class NSLayoutConstraintAxis : int { horizontal = 0, vertical = 1 };
enum class NSLayoutRelation : int { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };
enum class NSLayoutAttribute : int {
    notAnAttribute = 0,
    left = 1,
    right = 2,
    top = 3,
    bottom = 4,
    leading = 5,
    trailing = 6,
    width = 7,
    height = 8,
    centerX = 9,
    centerY = 10,
    lastBaseline = 11,
    firstBaseline = 12,
};

/// `firstItem.firstAttribute (relation) multiplier x secondItem.secondAttribute + constant`, with a priority.
/// Made inactive; holds its items weakly. A conflict of required constraints is logged with the constraints
/// named; one of them is left out until something changes, and layout goes on.
class NSLayoutConstraint : public NSObject {
public:
    /// An item is a UIView or a UILayoutGuide.
    struct Parameters {
        Ref<NSObject> firstItem;
        NSLayoutAttribute firstAttribute;
        NSLayoutRelation relation = NSLayoutRelation::equal;
        Ref<NSObject> secondItem = nullptr; // null: compared with the constant alone
        NSLayoutAttribute secondAttribute = NSLayoutAttribute::notAnAttribute;
        double multiplier = 1;
        double constant = 0; // points
        UILayoutPriority priority = UILayoutPriority::required;
    };
    explicit NSLayoutConstraint(Parameters parameters);
    ~NSLayoutConstraint() override;

    Ref<NSObject> firstItem() const { return firstItem_.lock(); }
    Ref<NSObject> secondItem() const { return secondItem_.lock(); }
    NSLayoutAttribute firstAttribute() const { return firstAttribute_; }
    NSLayoutAttribute secondAttribute() const { return secondAttribute_; }
    NSLayoutRelation relation() const { return relation_; }
    double multiplier() const { return multiplier_; }
    double constant() const { return constant_; }
    void setConstant(double constant);
    UILayoutPriority priority() const { return priority_; }
    void setPriority(UILayoutPriority priority);
    bool isActive() const { return isActive_; }
    /// Activating items without a common ancestor ends the program; activating twice is harmless.
    void setActive(bool active);
    std::string const& identifier() const { return identifier_; }
    void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }
    /// Both items, attributes, relation, constant and priority in one line, for conflict reports.
    std::string description() const override;

    static void activate(std::vector<Ref<NSLayoutConstraint>> const& constraints);
    static void deactivate(std::vector<Ref<NSLayoutConstraint>> const& constraints);

    /// Made by the layout itself: when it conflicts with a constraint of the program, the latter gives way.
    void setTakesPrecedence(bool takes) { takesPrecedence_ = takes; }

private:
    friend class FittingScope;
    friend class LayoutEngine;
    friend class LayoutNode;
    friend class UIView;

    /// An item as it is while the constraint is active.
    struct Item {
        UIView* view = nullptr; // a guide's owner
        UILayoutGuide* guide = nullptr;
    };

    static Item resolve(NSObject* object);
    void install();
    void uninstall();
    void detachFromOwner();
    void markItems() const;

    Weak<NSObject> firstItem_;
    Weak<NSObject> secondItem_;
    bool hasSecondItem_;
    NSLayoutAttribute firstAttribute_;
    NSLayoutAttribute secondAttribute_;
    NSLayoutRelation relation_;
    double multiplier_;
    double constant_;
    UILayoutPriority priority_;
    bool isActive_ = false;
    bool takesPrecedence_ = false;
    std::string identifier_;
    Item first_;
    Item second_;
    UIView* owner_ = nullptr;      // the view it is installed on while active
    unsigned long activation_ = 0; // grows with each activation of any constraint
    int engineId_ = -1;            // its row in the layout engine; -1: none
};

/// Activates constraints together: `activate({a->topAnchor() == b->topAnchor(), (w >= 50).at(750)})`.
class LayoutRule;
void activate(std::initializer_list<LayoutRule> rules);

/// A constraint as written with anchors, not yet active.
class LayoutRule {
public:
    explicit LayoutRule(Ref<NSLayoutConstraint> constraint)
        : constraint_(std::move(constraint)) {}
    /// The same rule at a priority below required.
    LayoutRule at(UILayoutPriority priority) const;
    Ref<NSLayoutConstraint> const& constraint() const { return constraint_; }
    // NOLINTNEXTLINE(google-explicit-constructor): a rule without a priority is the constraint itself.
    operator Ref<NSLayoutConstraint>() const { return constraint_; }

private:
    Ref<NSLayoutConstraint> constraint_;
};

} // namespace trelundo
