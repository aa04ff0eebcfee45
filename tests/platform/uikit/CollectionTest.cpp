#include "tests/platform/uikit/ScrollStage.h"
#include "trelundo/platform/uikit/collection/UICollectionView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace trelundo {
namespace {

using testing::ElementsAre;

Ref<UICollectionViewFlowLayout> flow(UICollectionViewScrollDirection direction, CGSize item) {
    auto layout = make<UICollectionViewFlowLayout>();
    layout->setScrollDirection(direction);
    layout->setItemSize(item);
    return layout;
}

TEST(FlowLayoutTest, PlacesItemsAndMeasuresTheirContent) {
    using Direction = UICollectionViewScrollDirection;
    auto const strip = flow(Direction::horizontal, {116, 110});
    strip->setSectionInset({4, 15, 8, 25});
    auto const rows = flow(Direction::horizontal, {40, 50});
    auto const lines = flow(Direction::vertical, {50, 40});
    lines->setMinimumLineSpacing(6);
    auto const high = flow(Direction::horizontal, {100, 80});
    EXPECT_EQ(strip->contentSize(10, {390, 132}), (CGSize{15 + 10 * 116 + 9 * 10 + 25, 132}));
    EXPECT_EQ(rows->contentSize(7, {300, 200}).width, 3 * 40 + 2 * 10) << "floor(210 / 60) = 3 rows";
    EXPECT_EQ(lines->contentSize(7, {200, 300}), (CGSize{200, 3 * 40 + 2 * 6}));
    struct Case {
        char const* what;
        Ref<UICollectionViewFlowLayout> layout;
        CGSize bounds;
        int item, count;
        bool mirrored;
        CGRect frame;
    };
    for (auto const& each : {
             Case{"one centred row", strip, {390, 132}, 3, 10, false, {15 + 3 * 126, 9, 116, 110}},
             Case{"rows spread evenly", rows, {300, 200}, 1, 7, false, {0, 75, 40, 50}},
             Case{"the last row", rows, {300, 200}, 5, 7, false, {50, 150, 40, 50}},
             Case{"rows of an unfilled column", rows, {300, 200}, 6, 7, false, {100, 0, 40, 50}},
             Case{"lines spread evenly", lines, {200, 300}, 4, 7, false, {75, 46, 50, 40}},
             Case{"an unfilled line", lines, {200, 300}, 6, 7, false, {0, 92, 50, 40}},
             Case{"an unfilled line, mirrored", lines, {200, 300}, 6, 7, true, {150, 92, 50, 40}},
             Case{"too high for the view", high, {300, 60}, 2, 5, false, {220, -10, 100, 80}},
             Case{"the first, mirrored", high, {300, 80}, 0, 10, true, {9 * 110, 0, 100, 80}},
             Case{"the last, mirrored", high, {300, 80}, 9, 10, true, {0, 0, 100, 80}},
             Case{"too few to fill, mirrored", high, {300, 80}, 0, 1, true, {200, 0, 100, 80}},
         }) {
        EXPECT_EQ(each.layout->frameOfItem(each.item, each.count, each.bounds, each.mirrored), each.frame)
            << each.what;
    }
}

TEST(FlowLayoutTest, ItemsInRectAgreeWithTheFrames) {
    using Direction = UICollectionViewScrollDirection;
    CGSize const bounds{210, 190};
    int const count = 103;
    for (auto const direction : {Direction::horizontal, Direction::vertical})
        for (bool const mirrored : {false, true}) {
            auto const layout = flow(direction, {37, 41});
            layout->setSectionInset({3, 7, 11, 13});
            for (double start = -150; start < 1600; start += 17.3) {
                auto const origin =
                    direction == Direction::horizontal ? CGPoint{start, 0} : CGPoint{0, start};
                CGRect const rect(origin, bounds);
                auto const range = layout->itemsIn(rect, count, bounds, mirrored);
                for (int item = 0; item < count; ++item)
                    EXPECT_TRUE(range.contains(item) ||
                                !layout->frameOfItem(item, count, bounds, mirrored).intersects(rect))
                        << item << " at " << start;
                EXPECT_LE(range.end - range.begin, 40);
            }
        }
    auto const empty = flow(Direction::horizontal, {0, 0});
    empty->setMinimumLineSpacing(0);
    empty->setMinimumInteritemSpacing(0);
    auto const range = empty->itemsIn({0, 0, 100, 100}, 1'000'000, {100, 100}, false);
    EXPECT_EQ(range.begin, range.end);
    EXPECT_EQ(empty->contentSize(1'000'000, {}), (CGSize{0, 0}));
}

class TestCell : public UICollectionViewCell {
public:
    explicit TestCell(CGRect frame)
        : UICollectionViewCell(frame) {
        ++made;
    }
    void prepareForReuse() override { ++reused; }
    static inline int made = 0;
    static inline int reused = 0;
    int filledWith = -1;
};

class Source : public NSObject, public UICollectionViewDataSource, public UICollectionViewDelegate {
public:
    int numberOfItemsInSection(UICollectionView&, int) override {
        ++countsAsked;
        return count;
    }
    Ref<UICollectionViewCell> cellForItemAt(UICollectionView& view, IndexPath indexPath) override {
        auto const cell = cast<TestCell>(view.dequeueReusableCell("cell", indexPath));
        cell->filledWith = indexPath.item;
        return cell;
    }
    void didSelectItemAt(UICollectionView&, IndexPath indexPath) override {
        selected.push_back(indexPath.item);
    }
    void willDisplayCell(UICollectionView&, UICollectionViewCell&, IndexPath path) override {
        live.insert(path.item);
    }
    void didEndDisplayingCell(UICollectionView&, UICollectionViewCell&, IndexPath path) override {
        live.erase(path.item);
    }
    void scrollViewDidScroll(UIScrollView&) override { ++scrolls; }

    int count = 1'000'000;
    int countsAsked = 0;
    int scrolls = 0;
    std::vector<int> selected;
    std::set<int> live;
};

class CollectionTest : public testing::Test {
protected:
    CollectionTest() {
        TestCell::made = TestCell::reused = 0;
        view->registerClass<TestCell>("cell");
        view->setDataSource(source);
        view->setDelegate(source);
        stage.window().addSubview(view);
    }
    void layOut() { stage.window().layoutWindow(); }
    /// Every item that `rect` shows has its cell, in place and filled for it.
    void expectCovered(CGRect rect) {
        auto const size = view->bounds().size;
        auto const frameOf = [&](int item) {
            return layout->frameOfItem(item, source->count, size, mirrored);
        };
        std::set<int> filled;
        for (auto const& subview : view->subviews()) {
            auto const cell = cast<TestCell>(subview);
            if (cell && cell->item() == cell->filledWith && cell->frame() == frameOf(cell->item()))
                filled.insert(cell->item());
        }
        auto const range = layout->itemsIn(rect, source->count, size, mirrored);
        ASSERT_LT(range.begin, range.end);
        for (int item = range.begin; item < range.end; ++item)
            EXPECT_TRUE(filled.contains(item) || !frameOf(item).intersects(rect)) << "item " << item;
    }
    ScrollStage stage;
    Ref<UICollectionViewFlowLayout> layout = flow(UICollectionViewScrollDirection::horizontal, {116, 100});
    Ref<UICollectionView> view = make<UICollectionView>(CGRect{0, 0, 400, 100}, layout);
    Ref<Source> source = make<Source>();
    bool mirrored = false;
};

TEST_F(CollectionTest, AMillionItemsCostWhatTheVisibleOnesCost) {
    layOut();
    EXPECT_EQ(view->contentSize(), (CGSize{1'000'000 * 116.0 + 999'999 * 10.0, 100}));
    expectCovered(view->bounds());
    for (int i = 0; i < 10'000; ++i) {
        view->setContentOffset({view->contentOffset().x + 1, 0});
        if (i % 97 == 0) expectCovered(view->bounds());
    }
    EXPECT_LE(TestCell::made, 6);
    EXPECT_LE(view->subviews().size(), 6u);
    EXPECT_GT(TestCell::reused, 70);
    EXPECT_EQ(source->countsAsked, 1);
    EXPECT_EQ(source->scrolls, 10'000);
    EXPECT_EQ(source->live.size(), view->subviews().size());
    view->setContentOffset({1.2e8, 0});
    expectCovered(view->bounds());
    EXPECT_LE(TestCell::made, 6);
}

TEST_F(CollectionTest, CellsAreAnsweredWhileVisibleAndFollowTheLayout) {
    layOut();
    EXPECT_EQ(view->visibleCells().size(), 4u);
    EXPECT_TRUE(view->cellForItem({0, 3}));
    EXPECT_FALSE(view->cellForItem({0, 4}));
    auto const cell = view->cellForItem({0, 1});
    layout->setItemSize({90, 80});
    layOut();
    EXPECT_EQ(cell->frame(), (CGRect{100, 10, 90, 80}));
    EXPECT_EQ(cell->contentView()->frame(), (CGRect{0, 0, 90, 80}));
}

TEST_F(CollectionTest, RightToLeftBeginsAtTheRightEnd) {
    view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    mirrored = true;
    layOut();
    EXPECT_EQ(view->contentOffset().x, view->contentSize().width - 400);
    EXPECT_EQ(view->cellForItem({0, 0})->frame().maxX(), view->contentSize().width);
    view->setContentOffset({view->contentOffset().x - 1000, 0});
    expectCovered(view->bounds());
    // A turn of the device keeps what stands at the right end.
    double const right = view->bounds().maxX();
    view->setFrame({0, 0, 700, 100});
    layOut();
    EXPECT_EQ(view->bounds().maxX(), right);
    expectCovered(view->bounds());
}

TEST_F(CollectionTest, EarlyScrollIsAppliedClampedAtTheFirstLayout) {
    view->setFrame({0, 0, 0, 0});
    view->scrollToItem({0, 0}, UICollectionViewScrollPosition::centeredHorizontally, false);
    view->setContentOffset({1, 0}); // a drift that began before the first layout
    layOut();
    EXPECT_EQ(view->contentOffset().x, 1);
    view->setFrame({0, 0, 400, 100});
    layOut();
    EXPECT_EQ(view->contentOffset(), CGPoint{});
    view->setContentOffset({77, 0});
    view->setNeedsLayout();
    layOut();
    EXPECT_EQ(view->contentOffset().x, 77);
}

TEST_F(CollectionTest, ScrollPositions) {
    using Position = UICollectionViewScrollPosition;
    layOut();
    auto const offsetAt = [&](Position position) {
        view->scrollToItem({0, 100}, position, false);
        return view->contentOffset().x;
    };
    EXPECT_EQ(offsetAt(Position::left), 12'600);
    EXPECT_EQ(offsetAt(Position::centeredHorizontally), 12'600 + 58 - 200);
    EXPECT_EQ(offsetAt(Position::right), 12'600 + 116 - 400);
    EXPECT_EQ(offsetAt(Position::none), 12'600 + 116 - 400);
    view->scrollToItem({0, 999'999}, Position::centeredHorizontally, false);
    EXPECT_EQ(view->contentOffset().x, view->contentSize().width - 400);
    view->scrollToItem({0, 0}, Position::left, true);
    stage.frames(30);
    EXPECT_EQ(view->contentOffset().x, 0);
    expectCovered(view->bounds());
}

TEST_F(CollectionTest, AnimatedJumpCoversBothPlaces) {
    layOut();
    CGRect const before = view->bounds();
    UIView::animate({.duration = 1, .animations = [&] { view->setContentOffset({50'000, 0}); }});
    expectCovered(view->bounds());
    expectCovered(before);
    for (int i = 0; i < 59; ++i) {
        stage.frame();
        expectCovered(view->layer().presentationValues().bounds);
    }
    stage.frames(10);
    EXPECT_LE(view->subviews().size(), 6u);
    // New cells do not fly in from where they were used before.
    for (auto const& cell : view->subviews()) EXPECT_FALSE(cell->layer().isAnimating());
}

TEST_F(CollectionTest, ReloadAndAnotherSourceAskAgainAndKeepAnOffsetInRange) {
    layOut();
    view->setContentOffset({1000, 0});
    source->count = 10;
    view->reloadData();
    EXPECT_TRUE(view->visibleCells().empty());
    layOut();
    EXPECT_EQ(source->countsAsked, 2);
    EXPECT_EQ(view->contentOffset().x, 10 * 116 + 90 - 400);
    expectCovered(view->bounds());
    source->count = 0;
    view->reloadData();
    layOut();
    EXPECT_TRUE(view->subviews().empty());
    EXPECT_EQ(view->contentOffset().x, 0);

    source = make<Source>(); // the only owner of the former one
    source->count = 200;
    view->setDataSource(source);
    layOut();
    expectCovered(view->bounds());
    source = nullptr;
    view->setContentOffset({5000, 0});
    stage.frame();
    view->reloadData();
    layOut();
    EXPECT_TRUE(view->subviews().empty()) << "a lost source is harmless";
}

TEST_F(CollectionTest, TapSelectsAndDragDoesNot) {
    layOut();
    stage.press({150, 50});
    EXPECT_TRUE(view->cellForItem({0, 1})->isHighlighted());
    stage.release();
    EXPECT_FALSE(view->cellForItem({0, 1})->isHighlighted());
    EXPECT_TRUE(view->cellForItem({0, 1})->isSelected());
    stage.press({20, 50});
    stage.release();
    EXPECT_FALSE(view->cellForItem({0, 1})->isSelected());
    stage.press({150, 50});
    stage.move(-60);
    EXPECT_FALSE(view->cellForItem({0, 1})->isHighlighted());
    stage.restAndRelease();
    view->setAllowsSelection(false);
    stage.press({150, 50});
    stage.release();
    EXPECT_THAT(source->selected, ElementsAre(1, 0));
}

using CollectionDeathTest = CollectionTest;

TEST_F(CollectionDeathTest, MisuseEndsTheProgram) {
    layOut();
    using Position = UICollectionViewScrollPosition;
    EXPECT_DEATH(view->scrollToItem({0, 1'000'000}, Position::left, false), "no item 1000000 in section 0");
    EXPECT_DEATH(view->scrollToItem({1, 0}, Position::left, false), "no item 0 in section 1");
    EXPECT_DEATH(view->scrollToItem({0, 3}, static_cast<Position>(8 | 16), false),
                 "two positions on one axis");
    EXPECT_DEATH((void)view->dequeueReusableCell("other", {0, 0}),
                 "no cell class is registered for \"other\"");
    EXPECT_DEATH(make<UICollectionView>(CGRect{}, nullptr), "layout");
}

} // namespace
} // namespace trelundo
