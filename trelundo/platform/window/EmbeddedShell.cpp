#include "trelundo/platform/window/EmbeddedShell.h"

#include "trelundo/platform/coreanimation/internal/AnimationRegistry.h"
#include "trelundo/platform/coreanimation/internal/Compositor.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/foundation/internal/MainThread.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/window/internal/AccessibleViews.h"
#include "trelundo/platform/window/internal/ScreenFit.h"
#include "trelundo/platform/window/internal/WakeUp.h"
#include "trelundo/platform/window/internal/WheelScrolling.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trelundo {

namespace {

constexpr double frameDuration = 1.0 / 60; // seconds

} // namespace

struct EmbeddedShell::State {
    explicit State(Configuration configuration)
        : context(std::make_shared<Context>(configuration.clock))
        , wakeUp(WakeUp::make(std::move(configuration.wakeUp)))
        , screen(configuration.screen) {}

    MainThreadClaim claim;
    std::shared_ptr<Context> context;
    std::shared_ptr<WakeUp> wakeUp;
    EmbeddedScreen screen;
    ScreenFit fit{};
    Ref<UIWindow> window;
    Compositor compositor;
    std::unique_ptr<Surface> surface;
    double nextFrame = 0; // Clock::now() of the frame that is due or was last
    bool isVisible = true;

    void followTurn();
    void prepareSurface();
};

namespace {

/// One call of a shell: on its thread and in its context.
class Call {
public:
    explicit Call(std::shared_ptr<Context> const& context)
        : scope_((requireMainThread("a shell"), context.get())) {}

private:
    ContextScope scope_;
};

} // namespace

EmbeddedShell::EmbeddedShell(Configuration configuration)
    : state_(std::make_unique<State>(std::move(configuration))) {
    startGraphics();
    auto const style = UIScreen::main().traitCollection().userInterfaceStyle;
    auto const direction = UIScreen::main().chosenLayoutDirection();
    makeCurrent();
    Call const call(state_->context);
    UIScreen::main().setUserInterfaceStyle(style);
    UIScreen::main().setUserInterfaceLayoutDirection(direction);
    setScreen(state_->screen);
    state_->window = make<UIWindow>(UIScreen::main().bounds());
    state_->window->makeKeyAndVisible();
}

EmbeddedShell::~EmbeddedShell() {
    requireMainThread("a shell");
    state_->wakeUp->end();
    {
        Call const call(state_->context);
        state_->window = nullptr;
        AnimationRegistry::shared().dropAll();
    }
    state_->context->end();
}

UIWindow& EmbeddedShell::window() { return *state_->window; }

void EmbeddedShell::makeCurrent() {
    requireMainThread("a shell");
    state_->context->choose();
}

// Frames.

EmbeddedShell::Frame EmbeddedShell::frame() {
    Call const call(state_->context);
    step();
    auto dirty = render();
    return {std::move(dirty), untilNextFrame()};
}

void EmbeddedShell::step() {
    Call const call(state_->context);
    WakeUp::Frame const frame(*state_->wakeUp);
    UIApplication::shared().frame();
}

void EmbeddedShell::turn() {
    Call const call(state_->context);
    WakeUp::Frame const frame(*state_->wakeUp);
    UIApplication::shared().turn();
}

/// A window that plays a device turns its screen by itself, as what it shows supports.
void EmbeddedShell::State::followTurn() {
    bool const isLandscape = UIScreen::main().isLandscape();
    if (std::exchange(fit.isLandscape, isLandscape) != isLandscape)
        std::swap(screen.size.width, screen.size.height);
}

void EmbeddedShell::State::prepareSurface() {
    followTurn();
    auto const width = static_cast<int>(std::lround(screen.size.width * screen.scale));
    auto const height = static_cast<int>(std::lround(screen.size.height * screen.scale));
    auto const scale = screen.scale * fit.zoom;
    if (surface && surface->pixelWidth() == std::max(width, 1) &&
        surface->pixelHeight() == std::max(height, 1) && surface->scale() == scale)
        return;
    surface = std::make_unique<Surface>(width, height, scale);
    compositor.invalidate();
}

std::vector<CGRect> EmbeddedShell::render() {
    Call const call(state_->context);
    state_->window->layoutWindow();
    state_->prepareSurface();
    return state_->compositor.render(state_->window->layer(), *state_->surface);
}

Surface const& EmbeddedShell::pixels() const {
    Call const call(state_->context);
    state_->prepareSurface();
    return *state_->surface;
}

/// Counting from frame to frame keeps 60 a second on average, also by timers that know whole milliseconds
/// only; a late frame does not hurry those after it.
double EmbeddedShell::untilNextFrame() {
    Call const call(state_->context);
    auto const now = Clock::current().now();
    bool const moves = state_->isVisible && UIApplication::shared().needsFrames();
    if (!moves && !DispatchQueue::main().hasReady())
        return std::max(DispatchQueue::main().nextDeadline() - now, 0.0);
    auto& next = state_->nextFrame;
    if (next < now + frameDuration / 2) next = std::max(next + frameDuration, now);
    return std::max(std::min(next, DispatchQueue::main().nextDeadline()) - now, 0.0);
}

void EmbeddedShell::setNeedsFrame() {
    requireMainThread("a shell");
    state_->wakeUp->ask();
}

void EmbeddedShell::setVisible(bool visible) {
    requireMainThread("a shell");
    if (std::exchange(state_->isVisible, visible) != visible) setNeedsFrame();
}

// The place.

void EmbeddedShell::setScreen(EmbeddedScreen const& screen) {
    Call const call(state_->context);
    state_->screen = screen;
    state_->fit = ScreenFit::of(screen);
    state_->screen.device = nullptr;
    UIScreen::main().configure(state_->fit.profile, state_->fit.isLandscape);
    if (state_->window) state_->window->screenDidChange();
    setNeedsFrame();
}

EmbeddedScreen const& EmbeddedShell::screen() const { return state_->screen; }

double EmbeddedShell::zoom() const { return state_->fit.zoom; }

void EmbeddedShell::setUserInterfaceStyle(UIUserInterfaceStyle style) {
    Call const call(state_->context);
    UIScreen::main().setUserInterfaceStyle(style);
    state_->window->screenDidChange();
    setNeedsFrame();
}

void EmbeddedShell::setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection direction) {
    Call const call(state_->context);
    UIApplication::shared().setUserInterfaceLayoutDirection(direction);
    setNeedsFrame();
}

// Input.

void EmbeddedShell::touchBegan(int id, CGPoint location) {
    Call const call(state_->context);
    state_->window->layoutWindow();
    state_->window->touchBegan(id, state_->fit.viewPoint(location));
    setNeedsFrame();
}

void EmbeddedShell::touchMoved(int id, CGPoint location) {
    Call const call(state_->context);
    state_->window->touchMoved(id, state_->fit.viewPoint(location));
    setNeedsFrame();
}

void EmbeddedShell::touchEnded(int id, CGPoint location) {
    Call const call(state_->context);
    state_->window->touchEnded(id, state_->fit.viewPoint(location));
    setNeedsFrame();
}

void EmbeddedShell::touchCancelled(int id) {
    Call const call(state_->context);
    state_->window->touchCancelled(id);
    setNeedsFrame();
}

void EmbeddedShell::keyPressed(UIWindow::Key key) {
    Call const call(state_->context);
    state_->window->keyPressed(key);
    setNeedsFrame();
}

bool EmbeddedShell::scroll(CGPoint location, double dx, double dy) {
    Call const call(state_->context);
    auto const way = state_->fit.viewPoint({dx, dy});
    bool const scrolled = scrollByWheel(*state_->window, state_->fit.viewPoint(location), way.x, way.y);
    if (scrolled) setNeedsFrame();
    return scrolled;
}

// For assistive programs.

std::vector<AccessibleView> EmbeddedShell::accessibleViews() {
    Call const call(state_->context);
    std::vector<AccessibleView> described;
    for (auto* view : trelundo::accessibleViews(*state_->window))
        described.push_back(describeAccessible(*view, state_->fit.zoom));
    return described;
}

void EmbeddedShell::press(AccessibleView const& view) {
    Call const call(state_->context);
    auto const pressed = view.view.lock();
    if (!pressed || pressed->window() != state_->window.get()) return;
    pressAccessible(*pressed);
    setNeedsFrame();
}

} // namespace trelundo
