#include "trelundo/platform/coreanimation/internal/Compositor.h"

#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/coreanimation/internal/DisplayListBuilder.h"
#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"
#include "trelundo/platform/foundation/Clock.h"

#include <utility>

namespace trelundo {

namespace {

constexpr CGColor display{0, 0, 0, 1}; // a screen without a bitmap is black

PixelRect whole(Surface const& surface) { return {0, 0, surface.pixelWidth(), surface.pixelHeight()}; }

/// What shows its background is painted from one rectangle that holds all of it.
void includeReaders(Damage& damage, DisplayList const& list) {
    auto grown = true;
    while (grown) {
        grown = false;
        for (auto const& item : list) {
            if (!item.bitmap || !item.bitmap->readsBackdrop() || !damage.intersects(item.visible())) continue;
            grown = damage.absorb(item.visible()) || grown;
        }
    }
}

} // namespace

struct Compositor::State {
    BitmapCache store;
    DisplayList last;
    CALayer const* root = nullptr;
    Surface const* surface = nullptr;
    std::uint64_t changes = 0; // CALayer::changeCount() as drawn
    bool isMoving = false;     // something was on its way when the last frame was drawn
};

Compositor::Compositor()
    : state_(std::make_unique<State>()) {}

Compositor::~Compositor() = default;

void Compositor::invalidate() { state_->surface = nullptr; }

std::vector<CGRect> Compositor::render(CALayer& root, Surface& surface) {
    auto& state = *state_;
    auto const moving = CATransaction::hasWork();
    auto const known = state.root == &root && state.surface == &surface;
    if (known && !moving && !state.isMoving && state.changes == CALayer::changeCount()) return {};

    state.store.beginFrame();
    DisplayListBuilder builder(state.store, surface.scale(), Clock::current().now());
    DisplayList list{{.key = 0, .rect = whole(surface), .clip = whole(surface), .color = display}};
    auto const items = builder.build(root, whole(surface));
    list.insert(list.end(), items.begin(), items.end());

    Damage damage;
    if (known)
        damage = difference(state.last, list, state.store.frame());
    else
        damage.add(whole(surface));
    includeReaders(damage, list);

    std::vector<CGRect> repainted;
    DisplayListPainter painter(surface, 0, 0);
    for (auto const& rect : damage.rects()) {
        painter.paint(list, rect);
        repainted.push_back(rect.points(1));
    }
    state.store.endFrame();
    state.last = std::move(list);
    state.root = &root;
    state.surface = &surface;
    state.changes = CALayer::changeCount();
    state.isMoving = moving;
    return repainted;
}

void Compositor::draw(CALayer& layer, Surface& surface) {
    BitmapCache store;
    store.beginFrame();
    DisplayListBuilder builder(store, surface.scale(), Clock::current().now());
    auto const list = builder.build(layer, whole(surface));
    DisplayListPainter(surface, 0, 0).paint(list, whole(surface));
}

} // namespace trelundo
