#include "tests/platform/uikit/layout/LayoutStage.h"

namespace trelundo {
namespace {

class ConstraintTest : public LayoutStage {};

TEST_F(ConstraintTest, AnchorsPlaceViewsWithOffsetsAndFactorsOnBothSides) {
    auto const first = add(*root);
    auto const second = add(*root);
    activate({
        first->leadingAnchor() == root->leadingAnchor() + 20,
        first->trailingAnchor() + 30 == root->trailingAnchor(),
        first->topAnchor() - 10 == root->topAnchor(),
        first->heightAnchor() == root->heightAnchor() * 0.5 - 40,
        second->leadingAnchor() == root->leadingAnchor(),
        second->centerYAnchor() == root->centerYAnchor(),
        second->widthAnchor() * 2 + 10 == root->widthAnchor(),
        second->heightAnchor() == second->widthAnchor() * 0.4,
    });
    layout();
    EXPECT_EQ(first->frame(), CGRect(20, 10, 350, 260));
    EXPECT_EQ(second->frame(), CGRect(0, 261, 195, 78));
}

TEST_F(ConstraintTest, DeepViewsAreMeasuredThroughTheChainWithoutScrollOffsets) {
    auto const outer = make<UIView>(CGRect{50, 60, 200, 200});
    outer->setBounds({7, 9, 200, 200});
    root->addSubview(outer);
    auto const inner = add(*outer);
    auto const leaf = add(*inner);
    place(*inner, {10, 10, 100, 100});
    activate({
        leaf->leftAnchor() == root->leftAnchor() + 100,
        leaf->bottomAnchor() == root->topAnchor() + 150,
        leaf->rightAnchor() == inner->rightAnchor(),
        leaf->heightAnchor() == 20,
    });
    EXPECT_EQ(leaf->constraints().size(), 1u);
    EXPECT_EQ(inner->constraints().size(), 3u);
    EXPECT_EQ(root->constraints().size(), 2u);
    layout();
    EXPECT_EQ(inner->frame(), CGRect(10, 10, 100, 100));
    EXPECT_EQ(leaf->frame(), CGRect(40, 60, 60, 20));
    EXPECT_EQ(outer->frame(), CGRect(50, 60, 200, 200));

    outer->setFrame({60, 60, 200, 200}); // placed by hand: what crosses its border follows
    layout();
    EXPECT_EQ(leaf->frame(), CGRect(30, 60, 70, 20));
}

TEST_F(ConstraintTest, ActivatingTwiceIsActivatingOnce) {
    auto const view = add(*root);
    pin(*view);
    auto const wide = (view->widthAnchor() == 100).at(700).constraint();
    auto const narrow = (view->widthAnchor() == 50).at(600).constraint();
    NSLayoutConstraint::activate({wide, narrow, wide});
    layout();
    EXPECT_EQ(view->frame().size.width, 100);
    wide->setActive(false);
    wide->setActive(false);
    layout();
    EXPECT_EQ(view->frame().size.width, 50);
    wide->setActive(true);
    narrow->setPriority(800);
    layout();
    EXPECT_EQ(view->frame().size.width, 50);
    EXPECT_EQ(view->constraints().size(), 2u);
    NSLayoutConstraint::deactivate(view->constraints());
    EXPECT_TRUE(view->constraints().empty());
}

TEST_F(ConstraintTest, ConflictNamesBothIsReportedOnceAndRecovers) {
    auto const view = add(*root);
    view->setAccessibilityIdentifier("offerView");
    auto const fixed = (view->widthAnchor() == 100).constraint();
    auto const equal = (view->widthAnchor() == root->widthAnchor()).constraint();
    equal->setIdentifier("whole width");
    pin(*view);
    activate({view->heightAnchor() == 10});
    NSLayoutConstraint::activate({fixed, equal});
    layout();
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("offerView.width == 100"), std::string::npos) << warnings[0];
    EXPECT_NE(warnings[0].find("\"whole width\""), std::string::npos) << warnings[0];
    EXPECT_EQ(view->frame(), CGRect(0, 0, 100, 10));
    root->setFrame({0, 0, 300, 600}); // still in conflict: nothing new to say
    layout();
    EXPECT_EQ(warnings.size(), 1u);
    fixed->setActive(false);
    layout();
    EXPECT_EQ(view->frame(), CGRect(0, 0, 300, 10));
    EXPECT_EQ(warnings.size(), 1u);
}

TEST_F(ConstraintTest, RemovingAViewDropsWhatCrossesItsBorder) {
    auto const container = add(*root);
    auto const leaf = add(*container, CGSize{10, 10});
    auto const inside = (leaf->trailingAnchor() == container->trailingAnchor() - 5).constraint();
    auto const own = (container->widthAnchor() == 70).constraint();
    auto const across = (leaf->topAnchor() == root->topAnchor() + 5).constraint();
    auto const toParent = (container->leadingAnchor() == root->leadingAnchor() + 9).constraint();
    NSLayoutConstraint::activate({inside, own, across, toParent});
    layout();
    container->removeFromSuperview();
    EXPECT_TRUE(inside->isActive());
    EXPECT_TRUE(own->isActive());
    EXPECT_FALSE(across->isActive());
    EXPECT_FALSE(toParent->isActive());
    EXPECT_TRUE(root->constraints().empty());
    layout();
    across->setConstant(8); // of no consequence

    auto const other = make<UIView>(CGRect{0, 0, 200, 200}); // the rest moves along
    other->layoutIfNeeded();
    other->addSubview(container);
    pin(*container, {30, 0});
    other->layoutIfNeeded();
    EXPECT_EQ(container->frame().origin.x, 30);
    EXPECT_EQ(container->frame().size.width, 70);
    EXPECT_EQ(leaf->frame(), CGRect(55, 0, 10, 10));
}

TEST_F(ConstraintTest, ConstraintsOutliveTheirViews) {
    Ref<NSLayoutConstraint> kept;
    {
        auto const gone = make<UIView>(CGRect{0, 0, 100, 100});
        auto const child = add(*gone);
        kept = (child->leadingAnchor() == gone->leadingAnchor()).constraint();
        kept->setActive(true);
        gone->layoutIfNeeded();
    }
    EXPECT_FALSE(kept->isActive());
    EXPECT_EQ(kept->firstItem(), nullptr);
    EXPECT_NE(kept->description().find("destroyed"), std::string::npos);
    kept->setConstant(3);
}

TEST_F(ConstraintTest, MisuseEndsTheProgram) {
    auto const a = make<UIView>();
    auto const b = make<UIView>();
    EXPECT_DEATH(activate({a->topAnchor() == b->topAnchor()}), "no common ancestor");
    EXPECT_DEATH(
        make<NSLayoutConstraint>(NSLayoutConstraint::Parameters{.firstItem = a,
                                                                .firstAttribute = NSLayoutAttribute::leading,
                                                                .secondItem = a,
                                                                .secondAttribute = NSLayoutAttribute::left}),
        "cannot combine");
}

TEST_F(ConstraintTest, RightToLeftMirrorsLeadingAndTrailingOnly) {
    auto const view = add(*root);
    auto const fixed = add(*root);
    auto const after = add(*root);
    activate({
        view->leadingAnchor() == root->leadingAnchor() + 60,
        view->widthAnchor() == 100,
        after->leadingAnchor() >= view->trailingAnchor() + 8,
        after->trailingAnchor() == root->trailingAnchor() - 32,
        (after->widthAnchor() == 1000).at(10),
        fixed->leftAnchor() == root->leftAnchor() + 16,
        fixed->rightAnchor() == view->leftAnchor() - 4,
    });
    auto const expectFrames = [&](CGRect viewFrame, CGRect afterFrame, double fixedRight) {
        root->setNeedsLayout();
        layout();
        EXPECT_EQ(view->frame(), viewFrame);
        EXPECT_EQ(after->frame(), afterFrame);
        EXPECT_EQ(fixed->frame().minX(), 16);
        EXPECT_EQ(fixed->frame().maxX(), fixedRight);
    };
    expectFrames({60, 0, 100, 0}, {168, 0, 200, 0}, 56);
    mirror();
    expectFrames({240, 0, 100, 0}, {32, 0, 200, 0}, 236);
    for (auto const& each : {root, Ref<UIView>{view}, Ref<UIView>{after}})
        each->setSemanticContentAttribute(UISemanticContentAttribute::forceLeftToRight);
    expectFrames({60, 0, 100, 0}, {168, 0, 200, 0}, 56);
}

TEST_F(ConstraintTest, GuidesTakePartAndReportTheirFrames) {
    auto const view = add(*root);
    auto const guide = make<UILayoutGuide>("room");
    root->addLayoutGuide(guide);
    auto const tie = (view->centerXAnchor() == guide->centerXAnchor()).constraint();
    activate({guide->leadingAnchor() == root->leadingAnchor() + 100,
              guide->trailingAnchor() == root->trailingAnchor(), guide->topAnchor() == root->topAnchor(),
              guide->heightAnchor() == 30, view->widthAnchor() == 50,
              view->topAnchor() == guide->bottomAnchor()});
    tie->setActive(true);
    layout();
    EXPECT_EQ(guide->layoutFrame(), CGRect(100, 0, 300, 30));
    EXPECT_EQ(view->frame().origin.x, 225);
    EXPECT_EQ(view->frame().origin.y, 30);
    root->removeLayoutGuide(*guide);
    EXPECT_FALSE(tie->isActive());
    EXPECT_EQ(guide->owningView(), nullptr);
    EXPECT_EQ(root->constraints().size(), 0u);
    layout();
}

} // namespace
} // namespace trelundo
