#pragma once

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/layout/NSLayoutConstraint.h"
#include "trelundo/platform/uikit/layout/internal/LayoutNode.h"
#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <array>
#include <string>

namespace trelundo {

/// Solves the constraints of one view tree. The root's node owns it; changes are only noted until update().
///
/// Every view that constraints place has a box of four variables in its superview's coordinates. Views placed
/// by hand, safe area, margins and baselines enter as variables that are pinned to what was last read, made
/// when a constraint first needs them: moving a cell therefore never touches the constraints inside it.
class LayoutEngine {
public:
    enum class Purpose { layout, fitting };
    explicit LayoutEngine(UIView& root, Purpose purpose = Purpose::layout);
    ~LayoutEngine();
    LayoutEngine(LayoutEngine const&) = delete;
    LayoutEngine& operator=(LayoutEngine const&) = delete;

    /// Of the tree that the view belongs to; made on first use.
    static LayoutEngine& of(UIView& view);
    /// Null before the tree's first layout.
    static LayoutEngine* existing(UIView const& view);
    static UIView& rootOf(UIView const& view);

    // Changes of the tree and of constraints.
    void subtreeWasAdded(UIView& view);
    void subtreeWillBeRemoved(UIView& view);
    void constraintWasActivated(NSLayoutConstraint& constraint);
    void removeConstraint(NSLayoutConstraint& constraint);
    void constantDidChange(NSLayoutConstraint const& constraint);
    void priorityDidChange(NSLayoutConstraint& constraint);
    void removeGuide(UILayoutGuide& guide);
    /// Forgets everything; the next update() builds it anew.
    void reset();

    // Changes of what is read from a view that has a box.
    void frameDidChange(LayoutNode const& node);
    void insetsDidChange(LayoutNode const& node);
    void contentDidChange(LayoutNode const& node);
    void contentPriorityDidChange(LayoutNode const& node);
    void directionDidChange(LayoutNode const& node);

    /// Brings the solution up to date, wrapping views included, and marks the superviews of boxes that moved.
    void update();
    /// Gives the direct subviews of `superview` that constraints place their solved frames.
    void applyFrames(UIView& superview);

    /// The size of a fitting engine's root with both sides pulled towards `target`.
    CGSize fittingSize(CGSize target);
    /// Tells wrapping views in `view` again the widths of this engine, after a fitting engine told them
    /// others.
    void restoreWidths(UIView& view);

    UIEdgeInsets lastWindowSafeArea;

private:
    enum Measure : std::size_t {
        minX,
        minY,
        width,
        height,
        safeTop,
        safeLeft,
        safeBottom,
        safeRight,
        marginTop,
        marginLeft,
        marginBottom,
        marginRight,
        firstBaseline,
        lastBaseline,
        measureCount,
    };
    /// Points beyond which a length says no more than "as much as possible".
    static constexpr double farAway = 1e7;

    struct Measured {
        Solver::Variable variable = -1;
        Solver::Constraint pin = -1; // fixes it to what was read; none for what the constraints determine
    };
    enum class Kind { unused, placed, driven, guide };
    struct Box {
        Kind kind = Kind::unused;
        UIView* view = nullptr;     // a guide's owner
        LayoutNode* node = nullptr; // the view's; none for a guide
        UILayoutGuide* guide = nullptr;
        std::array<Measured, measureCount> measures;
        std::array<Solver::Constraint, 2> content{-1, -1}; // of the intrinsic width and height
        bool contentIsStale = false;
        double propagatedWidth = -1;
        CGRect frame; // in the superview's (owner's) coordinates, edges on device pixels
        bool isSolved = false;
        CGPoint origin; // unrounded, from the nearest ancestor that is placed by hand
        unsigned originStamp = 0;
    };
    struct Rule {
        NSLayoutConstraint* constraint = nullptr;
        Solver::Constraint handle = -1;
        unsigned directions = 0; // by which leading and trailing were resolved
    };
    /// What a constraint of the solver stands for, to name it in a report.
    struct Source {
        NSLayoutConstraint const* constraint = nullptr;
        UIView const* view = nullptr;
        std::string_view part;
        std::string reported;
    };

    // Boxes and rules (LayoutEngine.cpp).
    void scan(UIView& view);
    void updateTree();
    Box& box(int slot) { return boxes_[static_cast<std::size_t>(slot)]; }
    int takeSlot();
    int slotOf(UIView& view);
    int slotOf(UILayoutGuide& guide);
    void removeConstraintsOf(Box& box);
    void removeBox(int slot);
    Solver::Constraint add(Solver::Rule const& rule, Source source);

    // Constraints as linear rules (LayoutEngineRules.cpp).
    void addRule(NSLayoutConstraint& constraint);
    static double sane(double points);
    static unsigned directions(NSLayoutConstraint const& constraint);
    using Item = NSLayoutConstraint::Item;
    void addSide(Item const& item, NSLayoutAttribute attribute, double factor, bool mirrored,
                 UIView& ancestor);
    void addPosition(Item const& item, bool vertical, double fraction, double factor, UIView& ancestor);
    void addLength(Item const& item, bool vertical, double factor);
    void addInset(Item const& item, bool vertical, bool far, double factor);
    void addTerm(Solver::Variable variable, double coefficient) { terms_.push_back({variable, coefficient}); }
    Solver::Variable variable(int slot, Measure measure);
    void pin(int slot, Measure measure);
    double reading(Box const& box, Measure measure) const;
    double shareOfSuperview(Box const& box, Measure measure) const;
    void refreshPins(int slot, Measure first, Measure last);
    void refreshContent(Box& box);
    void setContent(Box& box, NSLayoutConstraintAxis axis, double length);

    // Solutions (LayoutEngineFrames.cpp).
    void solve();
    void report(Solver::Conflict const& conflict);
    std::string nameOf(Solver::Constraint handle) const;
    bool propagateWidths();
    void refreshStaleContent();
    void placeBoxes();
    CGPoint originOf(UIView& view);
    CGRect roundedFrame(Box& box);
    bool needsUpdate() const;
    static bool applicationIsRightToLeft();

    UIView& root_;
    Purpose purpose_;
    Solver solver_;
    std::vector<Box> boxes_;
    std::vector<int> freeSlots_;
    std::vector<Rule> rules_;
    std::vector<int> freeRules_;
    std::size_t ruleCount_ = 0;
    std::vector<Source> sources_; // by constraint of the solver
    std::vector<Solver::Constraint> reported_;
    std::vector<Weak<UIView>> addedSubtrees_;
    std::vector<Weak<NSLayoutConstraint>> activated_;
    std::vector<NSLayoutConstraint*> found_; // active ones without a rule
    bool hasStaleContent_ = false;
    bool isUpdating_ = false;
    bool isRightToLeft_ = false; // the application's direction at the last update
    unsigned stamp_ = 0;
    double scale_ = 1;
    std::vector<Solver::Term> terms_; // of the rule being made
};

} // namespace trelundo
