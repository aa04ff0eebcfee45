#include "tests/platform/uikit/layout/LayoutStage.h"

#include "tests/support/MainThread.h"

namespace trelundo {
namespace {

class LayoutPassTest : public LayoutStage {};

TEST_F(LayoutPassTest, WrappingViewsAreMeasuredForTheirSolvedWidth) {
    auto const text = add(*root, CGSize{1000, 20});
    text->setWrapping();
    auto const below = add(*root, CGSize{10, 10});
    activate({
        text->leadingAnchor() == root->leadingAnchor() + 50,
        text->trailingAnchor() == root->trailingAnchor() - 50,
        text->topAnchor() == root->topAnchor(),
        below->topAnchor() == text->bottomAnchor(),
    });
    for (auto const& [width, height] : {std::pair{400.0, 80.0}, {600.0, 40.0}, {1200.0, 20.0}}) {
        root->setFrame({0, 0, width, 600});
        layout();
        EXPECT_EQ(text->frame(), CGRect(50, 0, width - 100, height));
        EXPECT_EQ(below->frame().origin.y, height);
        EXPECT_EQ(text->systemLayoutSizeFitting({}).width, 1000);
        root->setNeedsLayout();
        text->invalidateIntrinsicContentSize();
        layout();
        EXPECT_EQ(text->frame().size.height, height) << "fitting does not disturb wrapped text";
    }
}

TEST_F(LayoutPassTest, EdgesAreRoundedToPixelsOneByOne) {
    UIScreen::main().configure(*DeviceProfile::find("phone-390x844"), false); // 3 pixels a point
    std::vector<Ref<ContentView>> columns;
    for (int i = 0; i < 7; ++i) {
        auto const column = add(*root);
        activate({column->leadingAnchor() ==
                      (columns.empty() ? root->leadingAnchor() : columns.back()->trailingAnchor()),
                  column->widthAnchor() == root->widthAnchor() * (1.0 / 7),
                  column->topAnchor() == root->topAnchor(), column->heightAnchor() == 10});
        columns.push_back(column);
    }
    auto const nested = add(*columns[3]);
    activate({nested->leadingAnchor() == columns[3]->leadingAnchor(),
              nested->trailingAnchor() == columns[3]->trailingAnchor(),
              nested->topAnchor() == root->topAnchor() + 0.1, nested->heightAnchor() == 1.5});
    layout();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        auto const frame = columns[i]->frame();
        EXPECT_NEAR(frame.minX() * 3, std::round(frame.minX() * 3), 1e-9);
        EXPECT_NEAR(frame.minX(), static_cast<double>(i) * 400 / 7, 0.17);
        auto const end = i + 1 < columns.size() ? columns[i + 1]->frame().minX() : 400;
        EXPECT_NEAR(frame.maxX(), end, 1e-9);
    }
    EXPECT_NEAR(nested->frame().size.width, columns[3]->frame().size.width, 1e-9);
    EXPECT_NEAR(nested->frame().minY(), 0, 1e-9);
    EXPECT_NEAR(nested->frame().maxY(), 5.0 / 3, 1e-9);
}

TEST_F(LayoutPassTest, ConstraintsLeafFirstThenLayoutRootFirst) {
    std::vector<std::string> order;
    auto const outer = add(*root);
    auto const inner = add(*outer);
    activate({outer->leadingAnchor() == root->leadingAnchor(), outer->widthAnchor() == root->widthAnchor(),
              inner->leadingAnchor() == outer->leadingAnchor() + 10, inner->widthAnchor() == 30});
    outer->duringConstraints = [&] { order.emplace_back("outer constraints"); };
    inner->duringConstraints = [&] { order.emplace_back("inner constraints"); };
    outer->duringLayout = [&] {
        order.emplace_back("outer layout");
        EXPECT_EQ(outer->bounds().size.width, 400) << "its own size is final";
        EXPECT_EQ(inner->frame(), CGRect(10, 0, 30, 0)) << "and its subviews are placed";
    };
    inner->duringLayout = [&] { order.emplace_back("inner layout"); };
    layout();
    EXPECT_EQ(order, (std::vector<std::string>{"inner constraints", "outer constraints", "outer layout",
                                               "inner layout"}));
    order.clear();
    layout(); // nothing to do
    inner->setNeedsLayout();
    layout();
    EXPECT_EQ(order, std::vector<std::string>{"inner layout"});
}

TEST_F(LayoutPassTest, WhatChangesDuringLayoutSettlesInTheSamePassOrIsCut) {
    auto const view = add(*root);
    auto const height = (view->heightAnchor() == 10).constraint();
    height->setActive(true);
    pin(*view);
    activate({view->widthAnchor() == root->widthAnchor() * 0.5});
    view->duringLayout = [&] { height->setConstant(view->bounds().size.width / 4); };
    layout();
    EXPECT_EQ(view->frame(), CGRect(0, 0, 200, 50));
    EXPECT_TRUE(warnings.empty());
    view->duringLayout = [&] { view->setNeedsLayout(); };
    view->setNeedsLayout();
    layout();
    EXPECT_EQ(warnings.size(), 1u) << "without an end it is cut";
    EXPECT_LT(view->layouts, 100);
    int const before = view->layouts;
    view->duringLayout = nullptr;
    layout(); // the mark was kept
    EXPECT_EQ(view->layouts, before + 1);
}

TEST_F(LayoutPassTest, MovingAViewPlacedByHandLeavesItsInsidesAlone) {
    auto const cell = make<ContentView>();
    cell->setFrame({0, 0, 100, 50});
    root->addSubview(cell);
    auto const leaf = add(*cell, CGSize{10, 10});
    activate({leaf->centerXAnchor() == cell->centerXAnchor(), leaf->topAnchor() == cell->topAnchor()});
    layout();
    EXPECT_EQ(leaf->frame(), CGRect(45, 0, 10, 10));
    int const layouts = cell->layouts;
    for (int i = 0; i < 5; ++i) {
        cell->setCenter({50.25 + i, 80});
        layout();
    }
    EXPECT_EQ(cell->layouts, layouts);
    cell->setFrame({3, 3, 200, 50});
    layout();
    EXPECT_EQ(cell->layouts, layouts + 1);
    EXPECT_EQ(leaf->frame(), CGRect(95, 0, 10, 10));
}

TEST_F(LayoutPassTest, AutoresizingSharesTheChange) {
    using enum UIViewAutoresizing;
    struct {
        UIViewAutoresizing mask;
        CGRect before, after;
    } const rows[] = {
        {flexibleWidth | flexibleHeight, {0, 0, 400, 600}, {0, 0, 500, 700}},
        {flexibleLeftMargin, {350, 0, 50, 50}, {450, 0, 50, 50}},
        {flexibleLeftMargin | flexibleRightMargin, {150, 100, 100, 50}, {200, 100, 100, 50}},
        {none, {10, 10, 20, 20}, {10, 10, 20, 20}},
        {flexibleWidth | flexibleRightMargin, {0, 0, 100, 10}, {0, 0, 125, 10}},
    };
    for (auto const& row : rows) {
        auto const view = make<UIView>(row.before);
        view->setAutoresizingMask(row.mask);
        root->addSubview(view);
    }
    root->setFrame({0, 0, 500, 700});
    for (std::size_t i = 0; auto const& row : rows) EXPECT_EQ(root->subviews()[i++]->frame(), row.after);
}

TEST_F(LayoutPassTest, FlexibleViewsFollowASolvedSuperviewAtOnce) {
    auto const outer = add(*root);
    auto const flexible = make<UIView>();
    flexible->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
    outer->addSubview(flexible);
    auto const leaf = add(*flexible, CGSize{10, 10});
    pin(*outer);
    activate({outer->widthAnchor() == root->widthAnchor(), outer->heightAnchor() == 100,
              leaf->trailingAnchor() == flexible->trailingAnchor(),
              leaf->bottomAnchor() == flexible->bottomAnchor()});
    for (double const width : {400.0, 250.0}) {
        root->setFrame({0, 0, width, 600});
        layout();
        EXPECT_EQ(flexible->frame(), CGRect(0, 0, width, 100));
        EXPECT_EQ(leaf->frame(), CGRect(width - 10, 90, 10, 10));
    }
    EXPECT_TRUE(warnings.empty());
}

TEST_F(LayoutPassTest, FittingSizeIsTheSmallestAndLeavesNoTrace) {
    auto const box = add(*root);
    auto const text = add(*box, CGSize{90, 20});
    pin(*box);
    pin(*text, {10, 5});
    activate({text->trailingAnchor() == box->trailingAnchor() - 10,
              text->bottomAnchor() <= box->bottomAnchor() - 5, box->widthAnchor() >= 40,
              box->heightAnchor() == 200});
    layout();
    auto const before = text->frame();
    EXPECT_EQ(box->systemLayoutSizeFitting({}), (CGSize{110, 200}));
    layout();
    EXPECT_EQ(text->frame(), before);
    EXPECT_EQ(box->frame(), CGRect(0, 0, 110, 200));
    text->resize({50, 20});
    EXPECT_EQ(box->systemLayoutSizeFitting({}).width, 70);
    layout();
    EXPECT_EQ(box->frame().size.width, 70);
    EXPECT_EQ(text->systemLayoutSizeFitting({}), (CGSize{50, 20}));
}

TEST_F(LayoutPassTest, LayoutInsideAnAnimationMovesWhatIsShown) {
    test::MainThreadScope const scope;
    auto const window = make<UIWindow>(CGRect{0, 0, 400, 600});
    auto const view = add(*window, CGSize{10, 10});
    auto const left = (view->leadingAnchor() == window->leadingAnchor()).constraint();
    left->setActive(true);
    window->makeKeyAndVisible();
    window->layoutWindow();
    left->setConstant(100);
    UIView::animate({.duration = 1, .animations = [&] { window->layoutIfNeeded(); }});
    EXPECT_EQ(view->frame().minX(), 100);
    EXPECT_TRUE(view->layer().isAnimating());
}

TEST_F(LayoutPassTest, SwitchingToConstraintsLaterTakesEffect) {
    auto const view = make<ContentView>(CGSize{30, 30});
    view->setFrame({1, 2, 3, 4});
    root->addSubview(view);
    auto const follower = add(*root, CGSize{5, 5});
    activate(
        {follower->topAnchor() == view->bottomAnchor(), follower->leadingAnchor() == view->leadingAnchor()});
    layout();
    EXPECT_EQ(follower->frame().origin, (CGPoint{1, 6}));
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    pin(*view, {0, 10});
    layout();
    EXPECT_EQ(view->frame(), CGRect(0, 10, 30, 30));
    EXPECT_EQ(follower->frame().origin, (CGPoint{0, 40}));
}

} // namespace
} // namespace trelundo
