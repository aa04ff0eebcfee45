#include "benchmarks/Comparison.h"
#include "platform/coreanimation/Compositor.h"
#include "platform/graphics/Surface.h"
#include "platform/uikit/collection/UICollectionView.h"
#include "platform/window/OffscreenShell.h"
#include "tools/paywall/EventLog.h"
#include "tools/paywall/Screens.h"
#include "tools/paywall/Stage.h"

#include <cstring>
#include <memory>

namespace trelundo::bench {
namespace {

paywall::Options optionsFor(std::string screen) {
    paywall::Options options;
    options.command = "run";
    options.screen = std::move(screen);
    options.device = DeviceProfile::find("phone-390x844");
    options.fakeClock = true;
    options.select = options.screen == "PremiumV6ViewController" ? 2 : 0;
    if (options.screen.find("Offer") != std::string::npos)
        options.discounts = {{"app.premium.yearly", "yearly_half_price"}};
    return options;
}

/// A screen on the phone of 1170 x 2532 pixels, as the tool stages it.
struct Scene {
    explicit Scene(std::string screen)
        : options(optionsFor(std::move(screen)))
        , log("/dev/null")
        , shell({.device = options.device})
        , stage(options, log) {
        stage.show(shell.window());
    }
    paywall::Options options;
    paywall::EventLog log;
    OffscreenShell shell;
    paywall::Stage stage;
};

/// Copies `rows` full rows of a surface.
class RowCopy {
public:
    RowCopy(Surface const& source, int rows)
        : source_(source)
        , size_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(source.bytesPerLine()))
        , target_(size_) {}
    void operator()() {
        std::memcpy(target_.data(), source_.bytes(), size_);
        benchmark::DoNotOptimize(target_.data());
        benchmark::ClobberMemory();
    }

private:
    Surface const& source_;
    std::size_t size_;
    std::vector<std::uint8_t> target_;
};

/// The pixels of a frame whose carousel has moved on by a point, against copying the carousel's band.
void driftingFrame(benchmark::State& state) {
    Scene scene{"PremiumV2ViewController"};
    scene.shell.advance(1);
    auto const& surface = scene.shell.render();
    Compositor compositor;
    Surface frame{surface.pixelWidth(), surface.pixelHeight(), surface.scale()};
    compositor.render(scene.shell.window().layer(), frame);
    constexpr int bandRows = 128 * 3;
    RowCopy copy{surface, bandRows};
    using Clock = std::chrono::steady_clock;
    Clock::duration drawing{};
    Clock::duration copying{};
    for ([[maybe_unused]] auto _ : state) {
        scene.shell.advance(1.0 / 60);
        auto const start = Clock::now();
        compositor.render(scene.shell.window().layer(), frame);
        auto const middle = Clock::now();
        copy();
        drawing += middle - start;
        copying += Clock::now() - middle;
        state.SetIterationTime(std::chrono::duration<double>(middle - start).count());
    }
    state.counters["us"] =
        std::chrono::duration<double, std::micro>(drawing).count() / static_cast<double>(state.iterations());
    state.counters["ratio"] = std::chrono::duration<double>(drawing) / std::chrono::duration<double>(copying);
}

/// A whole frame with its pictures kept, against copying the frame.
void fullRepaint(benchmark::State& state) {
    Scene scene{"PremiumV2ViewController"};
    auto const& surface = scene.shell.render();
    Compositor compositor;
    Surface frame{surface.pixelWidth(), surface.pixelHeight(), surface.scale()};
    compositor.render(scene.shell.window().layer(), frame);
    RowCopy copy{surface, surface.pixelHeight()};
    compare(
        state,
        [&] {
            compositor.invalidate();
            compositor.render(scene.shell.window().layer(), frame);
        },
        copy);
}

/// Turning the device and back: every width changes.
void newWidth(benchmark::State& state) {
    Scene scene{"PremiumV2ViewController"};
    bool landscape = false;
    for ([[maybe_unused]] auto _ : state) {
        landscape = !landscape;
        UIScreen::main().configure(*DeviceProfile::find(landscape ? "phone-430x932" : "phone-390x844"),
                                   false);
        scene.shell.window().screenDidChange();
        scene.shell.window().layoutWindow();
    }
}

/// A screen from its construction to its laid-out views, with the process warm.
void buildScreen(benchmark::State& state, std::string const& name) {
    Scene scene{name};
    auto const& type = *paywall::findScreen(name);
    for ([[maybe_unused]] auto _ : state) {
        auto screen = type.make();
        if (type.properties.contains("features"))
            paywall::setProperty(type, *screen, "features", "One:a;Two:b");
        type.setProducts(*screen, PremiumManager::sharedInstance().products(), scene.options.select);
        screen->view()->setFrame({0, 0, 390, 844});
        screen->view()->layoutIfNeeded();
    }
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
    void scroll() {
        view->setContentOffset({view->contentOffset().x < 800 ? view->contentOffset().x + 40 : 0, 0});
        view->layoutIfNeeded();
    }
    Ref<Items> items;
    Ref<UICollectionView> view;
};

/// Scrolling a million items against scrolling ten.
void millionItems(benchmark::State& state) {
    Strip million{1'000'000};
    Strip ten{10};
    compare(
        state, [&] { million.scroll(); }, [&] { ten.scroll(); });
    state.counters["cells"] = static_cast<double>(million.view->visibleCells().size());
}

BENCHMARK(driftingFrame)->UseManualTime()->Name("drifting frame / copying its band");
BENCHMARK(fullRepaint)->UseManualTime()->Name("full repaint / copying the frame");
BENCHMARK(newWidth)->Name("new width, whole layout")->Unit(benchmark::kMicrosecond);
BENCHMARK(millionItems)->UseManualTime()->Name("a million items / ten items");

/// One benchmark for each screen that the tool knows.
bool const areScreensRegistered = [] {
    for (auto const& screen : paywall::screens())
        benchmark::RegisterBenchmark(("building " + screen.name).c_str(), buildScreen, screen.name)
            ->Unit(benchmark::kMillisecond);
    return true;
}();

} // namespace
} // namespace trelundo::bench
