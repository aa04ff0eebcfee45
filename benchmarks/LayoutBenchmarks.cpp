#include "benchmarks/Comparison.h"
#include "benchmarks/StagedScreen.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/collection/UICollectionView.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"

#include <stdexcept>

namespace trelundo::bench {
namespace {

CGRect const phone{0, 0, 390, 844};
CGRect const widerPhone{0, 0, 430, 932};

/// Makes screens with the products that a staged one has loaded.
class Workshop {
public:
    explicit Workshop(std::string const& name)
        : staged_(name)
        , type_(staged_.offscreen.session.screenType()) {}

    /// Built but not laid out.
    Ref<UIViewController> make() const {
        auto screen = type_.make();
        if (type_.properties.contains("features"))
            paywall::setProperty(type_, *screen, "features", "One:a;Two:b");
        type_.setProducts(*screen, PremiumManager::sharedInstance().products(), staged_.options.select);
        screen->view()->setFrame(phone);
        return screen;
    }

private:
    StagedScreen staged_;
    paywall::ScreenType const& type_;
};

/// From construction to the last frame of the last view, with the process warm.
void buildScreen(benchmark::State& state, std::string const& name) {
    Workshop const workshop{name};
    Ref<UIViewController> screen;
    measure(
        state,
        [&] {
            screen = workshop.make();
            screen->view()->layoutIfNeeded();
        },
        [&] { screen = nullptr; });
}

/// All constraints of a screen that was built but never laid out.
void layOutFromNothing(benchmark::State& state) {
    Workshop const workshop{measuredScreen};
    Ref<UIViewController> screen;
    measure(
        state, [&] { screen->view()->layoutIfNeeded(); }, [&] { screen = workshop.make(); });
}

/// The solver with all that it reads and tells, but without moving the views.
void solveNewWidth(benchmark::State& state) {
    auto const screen = Workshop{measuredScreen}.make();
    auto& view = *screen->view();
    view.layoutIfNeeded();
    bool wide = false;
    auto const turn = [&] {
        wide = !wide;
        view.setFrame(wide ? widerPhone : phone);
    };
    measure(
        state, [&] { LayoutEngine::of(view).update(); }, turn);
}

/// The same with the views moved and their texts set in new lines.
void layOutNewWidth(benchmark::State& state) {
    auto const screen = Workshop{measuredScreen}.make();
    auto& view = *screen->view();
    bool wide = false;
    measure(state, [&] {
        wide = !wide;
        view.setFrame(wide ? widerPhone : phone);
        view.layoutIfNeeded();
    });
}

class Items : public NSObject, public UICollectionViewDataSource {
public:
    explicit Items(int count)
        : count_(count) {}
    int numberOfItemsInSection(UICollectionView&, int) override { return count_; }
    Ref<UICollectionViewCell> cellForItemAt(UICollectionView& view, IndexPath path) override {
        return view.dequeueReusableCell("cell", path);
    }

private:
    int count_;
};

/// A strip of equal items in a view of its own.
struct Strip {
    explicit Strip(int count)
        : items(make<Items>(count)) {
        auto layout = make<UICollectionViewFlowLayout>();
        layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
        layout->setItemSize({110, 90});
        view = make<UICollectionView>(CGRect{0, 0, 390, 110}, layout);
        view->registerClass<UICollectionViewCell>("cell");
        view->setDataSource(items);
        view->layoutIfNeeded();
    }
    /// To where the tenth item ends, in steps of a third of an item, and back to the start.
    void scroll() {
        for (double offset = 40; offset <= 800; offset += 40) scrollTo(offset);
        scrollTo(0);
    }
    void scrollTo(double offset) {
        view->setContentOffset({offset, 0});
        view->layoutIfNeeded();
    }
    Ref<Items> items;
    Ref<UICollectionView> view;
};

void millionItems(benchmark::State& state) {
    Strip million{1'000'000};
    Strip ten{10};
    compare(
        state, [&] { million.scroll(); }, [&] { ten.scroll(); });
    if (million.view->visibleCells().size() > ten.view->visibleCells().size() + 1)
        throw std::runtime_error("a million items keep more cells than ten");
}

[[maybe_unused]] bool const added = [] {
    addRow(20, "laying out the screen from nothing", milliseconds(0.6), layOutFromNothing);
    addRow(21, "a new width in the layout engine", microseconds(10), solveNewWidth);
    addRow(22, "a new width, texts and frames included", milliseconds(0.6), layOutNewWidth);
    for (auto const& screen : paywall::screens())
        addRow(30, "building " + screen.name, milliseconds(8),
               [name = screen.name](benchmark::State& state) { buildScreen(state, name); });
    addRow(40, "20 steps along 1,000,000 items / 10 items", times(1.1), millionItems);
    return true;
}();

} // namespace
} // namespace trelundo::bench
