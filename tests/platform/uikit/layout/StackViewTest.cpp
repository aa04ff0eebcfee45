#include "tests/platform/uikit/layout/LayoutStage.h"

namespace trelundo {
namespace {

using Alignment = UIStackViewAlignment;
using Distribution = UIStackViewDistribution;

class StackViewTest : public LayoutStage {
protected:
    /// A stack at the root's top left corner with views of the given natural sizes, free in size.
    Ref<UIStackView> stackOf(std::vector<CGSize> sizes,
                             NSLayoutConstraintAxis axis = NSLayoutConstraintAxis::horizontal) {
        for (auto const& size : sizes) views.push_back(make<ContentView>(size));
        stack = make<UIStackView>(std::vector<Ref<UIView>>(views.begin(), views.end()));
        stack->setAxis(axis);
        stack->setTranslatesAutoresizingMaskIntoConstraints(false);
        root->addSubview(stack);
        pin(*stack);
        return stack;
    }
    void setWidth(double width) { activate({stack->widthAnchor() == width}); }
    std::vector<CGRect> frames() {
        layout();
        std::vector<CGRect> result;
        for (auto const& view : views) result.push_back(view->frame());
        return result;
    }
    using Frames = std::vector<CGRect>;

    std::vector<Ref<ContentView>> views;
    Ref<UIStackView> stack;
};

TEST_F(StackViewTest, FillStretchesTheLeastHuggingAndShrinksTheLeastResistant) {
    stackOf({{100, 20}, {50, 20}});
    views[1]->setContentHuggingPriority(249, NSLayoutConstraintAxis::horizontal);
    views[0]->setContentCompressionResistancePriority(700, NSLayoutConstraintAxis::horizontal);
    auto const width = (stack->widthAnchor() == 200).constraint();
    width->setActive(true);
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {100, 0, 100, 20}}));
    width->setConstant(90);
    EXPECT_EQ(frames(), (Frames{{0, 0, 40, 20}, {40, 0, 50, 20}}));
}

TEST_F(StackViewTest, EquallyAndProportionally) {
    stackOf({{100, 20}, {50, 20}, {50, 20}})->setDistribution(Distribution::fillEqually);
    stack->setSpacing(15);
    setWidth(330);
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {115, 0, 100, 20}, {230, 0, 100, 20}}));
    stack->setDistribution(Distribution::fillProportionally);
    stack->setSpacing(0);
    EXPECT_EQ(frames(), (Frames{{0, 0, 165, 20}, {165, 0, 82.5, 20}, {247.5, 0, 82.5, 20}}));
    views[1]->resize({150, 20}); // proportions follow the contents
    EXPECT_EQ(frames(), (Frames{{0, 0, 110, 20}, {110, 0, 165, 20}, {275, 0, 55, 20}}));
}

TEST_F(StackViewTest, EqualSpacingSpreadsExtraRoomThenKeepsTheSpacing) {
    stackOf({{100, 20}, {50, 20}, {30, 20}})->setDistribution(Distribution::equalSpacing);
    stack->setSpacing(10);
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {110, 0, 50, 20}, {170, 0, 30, 20}})); // free: no extra room
    auto const width = (stack->widthAnchor() == 300).constraint();
    width->setActive(true);
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {160, 0, 50, 20}, {270, 0, 30, 20}}));
    views[2]->setContentCompressionResistancePriority(500, NSLayoutConstraintAxis::horizontal);
    width->setConstant(190);
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {110, 0, 50, 20}, {170, 0, 20, 20}}));
    views[0]->setHidden(true);
    views[1]->setHidden(true);
    layout();
    EXPECT_EQ(views[2]->frame(), CGRect(0, 0, 190, 20)); // alone it is pinned to both ends
}

TEST_F(StackViewTest, EqualCenteringSpacesTheCentres) {
    stackOf({{100, 20}, {20, 20}, {60, 20}})->setDistribution(Distribution::equalCentering);
    setWidth(400);
    auto const all = frames();
    EXPECT_EQ(all[0].minX(), 0);
    EXPECT_EQ(all[2].maxX(), 400);
    EXPECT_NEAR(all[1].midX() - all[0].midX(), all[2].midX() - all[1].midX(), 0.51);
    stack->setSpacing(110); // the spacing is kept before the centres are
    EXPECT_EQ(frames(), (Frames{{0, 0, 100, 20}, {210, 0, 20, 20}, {340, 0, 60, 20}}));
}

TEST_F(StackViewTest, AlignmentAcross) {
    stackOf({{100, 20}, {50, 40}});
    auto const height = (stack->heightAnchor() == 100).constraint();
    struct Case {
        Alignment alignment;
        CGRect first, second;
    };
    for (auto const& [alignment, first, second] :
         {Case{Alignment::top, {0, 0, 100, 20}, {100, 0, 50, 40}},
          Case{Alignment::bottom, {0, 80, 100, 20}, {100, 60, 50, 40}},
          Case{Alignment::center, {0, 40, 100, 20}, {100, 30, 50, 40}},
          Case{Alignment::fill, {0, 0, 100, 100}, {100, 0, 50, 100}}}) {
        stack->setAlignment(alignment);
        height->setActive(false);
        layout();
        EXPECT_EQ(stack->frame(), CGRect(0, 0, 150, 40)) << "free, it hugs the largest";
        height->setActive(true);
        EXPECT_EQ(frames(), (Frames{first, second})) << static_cast<int>(alignment);
    }
    views[0]->baseline = 15;
    views[1]->baseline = 33;
    stack->setAlignment(Alignment::firstBaseline);
    EXPECT_EQ(frames(), (Frames{{0, 18, 100, 20}, {100, 0, 50, 40}}));
    stack->setAlignment(Alignment::lastBaseline);
    EXPECT_EQ(frames()[0].minY() + 15, frames()[1].minY() + 33);
    EXPECT_EQ(frames()[1].maxY(), 100); // 7 below its baseline, the other 5
    EXPECT_EQ(frames()[0].maxY(), 98);
    EXPECT_TRUE(warnings.empty());
    height->setActive(false);
    views[1]->setHidden(true); // one visible view has its own rules
    stack->setAlignment(Alignment::center);
    layout();
    EXPECT_EQ(stack->frame(), CGRect(0, 0, 100, 20));
}

TEST_F(StackViewTest, AViewMayNotExceedTheStackAcrossAndAStackWithinHidesWithItsMargins) {
    stackOf({{1000, 20}, {100, 20}}, NSLayoutConstraintAxis::vertical)->setAlignment(Alignment::center);
    views[0]->setWrapping();
    setWidth(300);
    auto const row = make<UIStackView>(
        std::vector<Ref<UIView>>{make<ContentView>(CGSize{30, 10}), make<ContentView>(CGSize{40, 12})});
    row->setSpacing(6);
    stack->addArrangedSubview(row);
    EXPECT_EQ(frames(), (Frames{{0, 0, 300, 80}, {100, 80, 100, 20}}));
    EXPECT_EQ(row->frame(), CGRect(112, 100, 76, 12)) << "a stack within has its fitting size";
    EXPECT_EQ(stack->frame().size.height, 112);
    row->setLayoutMarginsRelativeArrangement(true);
    row->setHidden(true); // its margins give way too
    layout();
    EXPECT_EQ(stack->frame().size.height, 100);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(StackViewTest, HiddenViewsTakeNoRoomAndNoSpacing) {
    stackOf({{100, 20}, {50, 60}, {30, 20}})->setSpacing(10);
    views[1]->setHidden(true);
    EXPECT_EQ(frames()[2], CGRect(110, 0, 30, 20));
    EXPECT_EQ(views[1]->frame().size.width, 0);
    EXPECT_EQ(stack->frame(), CGRect(0, 0, 140, 20));
    views[1]->setHidden(false);
    EXPECT_EQ(frames()[2], CGRect(170, 0, 30, 60));
    EXPECT_TRUE(warnings.empty());

    auto const own = (views[1]->widthAnchor() == 44).constraint();
    own->setActive(true);
    layout();
    EXPECT_TRUE(warnings.empty());
    views[1]->setHidden(true); // the view's own width gives way, with a word
    EXPECT_EQ(frames()[1].size.width, 0);
    EXPECT_EQ(frames()[2].minX(), 110);
    EXPECT_EQ(warnings.size(), 1u);
    views[1]->setHidden(false);
    EXPECT_EQ(frames()[1].size.width, 44);
}

TEST_F(StackViewTest, CustomSpacingAndTheList) {
    stackOf({{10, 10}, {20, 10}, {30, 10}})->setSpacing(5);
    stack->setCustomSpacing(50, *views[0]);
    stack->setCustomSpacing(70, *views[2]); // last: no effect
    EXPECT_EQ(frames()[1].minX(), 60);
    EXPECT_EQ(frames()[2].minX(), 85);
    EXPECT_EQ(stack->frame().size.width, 115);
    stack->removeArrangedSubview(*views[0]);
    layout();
    EXPECT_EQ(views[0]->superview(), stack.get());
    EXPECT_EQ(views[1]->frame().minX(), 0);
    stack->insertArrangedSubview(views[0], 1);
    EXPECT_EQ(frames()[0].minX(), 25);
    views[0]->removeFromSuperview();
    EXPECT_EQ(stack->arrangedSubviews().size(), 2u);
    EXPECT_EQ(frames()[2].minX(), 25);
}

TEST_F(StackViewTest, MarginsCountEvenWhenEmpty) {
    stackOf({{100, 20}}, NSLayoutConstraintAxis::vertical)->setLayoutMarginsRelativeArrangement(true);
    layout();
    EXPECT_EQ(stack->frame(), CGRect(0, 0, 116, 36));
    stack->setLayoutMargins({8, 0, 0, 4});
    EXPECT_EQ(frames(), (Frames{{0, 8, 100, 20}}));
    EXPECT_EQ(stack->frame(), CGRect(0, 0, 104, 28));
    auto const empty = make<UIStackView>();
    empty->setLayoutMarginsRelativeArrangement(true);
    EXPECT_EQ(empty->systemLayoutSizeFitting({}), (CGSize{16, 16}));
}

TEST_F(StackViewTest, RightToLeftMirrorsRowsAndAlignment) {
    mirror();
    stackOf({{100, 20}, {50, 20}})->setSpacing(10);
    setWidth(160);
    EXPECT_EQ(frames(), (Frames{{60, 0, 100, 20}, {0, 0, 50, 20}}));
    EXPECT_EQ(stack->frame().maxX(), 400);
    stack->setAxis(NSLayoutConstraintAxis::vertical);
    stack->setAlignment(Alignment::leading);
    EXPECT_EQ(frames(), (Frames{{60, 0, 100, 20}, {110, 30, 50, 20}}));
}

} // namespace
} // namespace trelundo
