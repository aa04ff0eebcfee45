#include "trelundo/platform/coreanimation/internal/Damage.h"
#include "tests/platform/coreanimation/LayerFixture.h"
#include "tests/platform/graphics/Drawing.h"
#include "trelundo/platform/coreanimation/CAGradientLayer.h"
#include "trelundo/platform/coreanimation/internal/Compositor.h"

#include <functional>
#include <random>

namespace trelundo {

namespace {

constexpr int pixels = 180;
constexpr double scale = 1.5;

/// Draws lines across and beyond its layer: something with soft edges, like a text.
class Scribble : public NSObject, public CALayerDelegate {
public:
    bool drawsContents() const override { return true; }
    void drawLayer(CALayer& layer, Canvas& canvas) override {
        auto const bounds = layer.bounds();
        CGPoint const points[] = {{bounds.minX() - 3, bounds.minY() + 1.3},
                                  {bounds.maxX() + 2.7, bounds.midY()},
                                  {bounds.midX() + tilt, bounds.maxY() + 1}};
        canvas.fillPolygon(points, {0.2, 0.4, 0.9, 0.8});
    }
    double tilt = 0;
};

/// A tree of layers that is changed at random.
class RandomTree {
public:
    RandomTree(CALayer& root, unsigned seed)
        : root_(root)
        , random_(seed) {
        for (int i = 0; i < 14; ++i) add();
    }

    void change() {
        std::vector<std::function<void(CALayer&)>> const changes{
            [&](CALayer&) { add(); },
            [&](CALayer&) { remove(); },
            [&](CALayer&) { redraw(); },
            [&](CALayer& any) { any.setPosition(place()); },
            [&](CALayer& any) { any.setBounds(CGRect(any.bounds().origin, size())); },
            [&](CALayer& any) { scroll(any); },
            [&](CALayer& any) { any.setOpacity(pick(3) == 0 ? 1 : number(0, 1)); },
            [&](CALayer& any) { any.setHidden(pick(4) == 0); },
            [&](CALayer& any) { any.setCornerRadius(pick(2) * number(0, 20)); },
            [&](CALayer& any) { any.setMasksToBounds(pick(2) == 0); },
            [&](CALayer& any) { any.setBorderWidth(pick(2) * number(0, 6)); },
            [&](CALayer& any) { any.setZPosition(pick(3) - 1); },
            [&](CALayer& any) { any.setTransform(transform()); },
            [&](CALayer& any) { any.setShadowOpacity(pick(3) == 0 ? number(0, 1) : 0); },
            [&](CALayer& any) { any.setBackdropEffect(effect()); },
            [&](CALayer& any) { any.setShouldRasterize(pick(3) == 0); },
            [&](CALayer& any) { any.setBackgroundColor(color()); },
            [&](CALayer& any) { move(any); },
        };
        one(changes)(*one(layers_));
    }

private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    double number(double low, double high) {
        return low + (high - low) * static_cast<double>(random_() % 10000) / 10000;
    }
    template <class Each> Each const& one(std::vector<Each> const& list) {
        return list[random_() % list.size()];
    }
    CGPoint place() { return {number(-10, 130), number(-10, 130)}; }
    CGSize size() { return {number(0, 70), number(0, 70)}; }
    CGColor color() { return {number(0, 1), number(0, 1), number(0, 1), pick(2) == 0 ? 1 : number(0, 1)}; }

    CGAffineTransform transform() {
        if (pick(2) == 0) return {};
        return CGAffineTransform::rotation(number(-1, 1))
            .concatenating(CGAffineTransform::scale(number(0.5, 1.5), number(0.5, 1.5)));
    }
    std::optional<CALayer::BackdropEffect> effect() {
        if (pick(2) == 0) return std::nullopt;
        return CALayer::BackdropEffect{number(1, 9), 1.8, {0.1, 0.1, 0.1, number(0, 1)}};
    }
    void add() {
        auto layer = pick(4) == 0 ? Ref<CALayer>(gradient()) : make<CALayer>();
        layer->setFrame({number(-10, 110), number(-10, 110), number(1, 60), number(1, 60)});
        if (pick(3) != 0) layer->setBackgroundColor(color());
        layer->setShadowOffset({number(-4, 4), number(-4, 4)});
        if (pick(3) == 0) {
            scribbles_.push_back(make<Scribble>());
            layer->setDelegate(scribbles_.back());
        }
        (layers_.empty() || pick(3) == 0 ? root_ : *one(layers_)).addSublayer(layer);
        layers_.push_back(layer);
    }
    Ref<CAGradientLayer> gradient() {
        auto layer = make<CAGradientLayer>();
        layer->setColors({{color(), color()}});
        layer->setEndPoint({number(0, 1), number(0.2, 1)});
        return layer;
    }
    /// Takes a leaf away, as long as some layers stay.
    void remove() {
        auto const layer = one(layers_);
        if (layers_.size() <= 6 || !layer->sublayers().empty()) return;
        layer->removeFromSuperlayer();
        std::erase(layers_, layer);
    }
    void redraw() {
        if (scribbles_.empty()) return;
        auto const& scribble = one(scribbles_);
        scribble->tilt = number(-9, 9);
        for (auto const& layer : layers_)
            if (layer->delegate().get() == scribble.get()) layer->setNeedsDisplay();
    }
    void scroll(CALayer& layer) {
        layer.setBounds({{number(-20, 20), number(-20, 20)}, layer.bounds().size});
    }
    void move(CALayer& layer) {
        if (auto* parent = layer.superlayer())
            parent->insertSublayer(strong(layer), static_cast<std::size_t>(pick(3)));
    }

    CALayer& root_;
    std::mt19937 random_;
    std::vector<Ref<CALayer>> layers_;
    std::vector<Ref<Scribble>> scribbles_;
};

class DamageTest : public LayerTest, public testing::WithParamInterface<unsigned> {};

} // namespace

TEST_P(DamageTest, RepaintingWhatChangedEqualsPaintingEverything) {
    root->setBounds({0, 0, pixels / scale, pixels / scale});
    root->setBackgroundColor(CGColor{0.9, 0.9, 0.8, 1});
    RandomTree tree(*root, GetParam());
    Surface surface(pixels, pixels, scale);
    Compositor compositor;
    for (int step = 0; step < 120; ++step) {
        if (step % 7 == 0) animate({.duration = 0.2, .completion = {}}, [&] { tree.change(); });
        for (int i = 0; i <= step % 3; ++i) tree.change();
        frame();
        compositor.render(*root, surface);
        Surface fresh(pixels, pixels, scale);
        Compositor().render(*root, fresh);
        ASSERT_TRUE(test::sameBytes(surface, fresh)) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamageTest, testing::Range(1u, 13u));

TEST_F(LayerTest, OnlyWhatHasChangedIsRepainted) {
    Surface surface(100, 100, 1);
    Compositor compositor;
    auto const layer = add({10, 10, 20, 20});
    layer->setBackgroundColor(test::red);
    EXPECT_EQ(compositor.render(*root, surface).size(), 1u);
    EXPECT_TRUE(compositor.render(*root, surface).empty());
    layer->setPosition(layer->position());
    EXPECT_TRUE(compositor.render(*root, surface).empty());
    layer->setPosition({20.2, 20});
    EXPECT_TRUE(compositor.render(*root, surface).empty()) << "the same whole pixels";
    compositor.invalidate();
    EXPECT_EQ(compositor.render(*root, surface), (std::vector{CGRect(0, 0, 100, 100)}));

    root->setCornerRadius(10);
    root->setMasksToBounds(true);
    auto const far = add({80, 80, 10, 10});
    compositor.render(*root, surface);
    layer->setBackgroundColor(test::blue);
    far->setBackgroundColor(test::red);
    // A change inside the rounded root does not cost the whole root.
    EXPECT_EQ(compositor.render(*root, surface),
              (std::vector{CGRect(10, 10, 20, 20), CGRect(80, 80, 10, 10)}));
}

TEST(DamageListTest, MergesWhatCostsLittleAndStaysShort) {
    Damage damage;
    damage.add({0, 0, 10, 10});
    damage.add({0, 10, 10, 10});
    ASSERT_EQ(damage.rects().size(), 1u);
    EXPECT_EQ(damage.rects().front(), (PixelRect{0, 0, 10, 20}));
    damage.add({50, 50, 0, 10});
    EXPECT_EQ(damage.rects().size(), 1u);
    for (int i = 0; i < 40; ++i) damage.add({i * 37 % 1000, i * 91 % 1000, 3, 3});
    EXPECT_LE(damage.rects().size(), 12u);
    for (int i = 0; i < 40; ++i) EXPECT_TRUE(damage.intersects({i * 37 % 1000, i * 91 % 1000, 3, 3}));
}

TEST(DamageListTest, AbsorbingGathersEverythingThatTouches) {
    Damage damage;
    damage.add({0, 0, 10, 10});
    damage.add({90, 90, 10, 10});
    EXPECT_TRUE(damage.absorb({5, 5, 40, 40}));
    EXPECT_EQ(damage.rects().size(), 2u);
    EXPECT_FALSE(damage.absorb({5, 5, 40, 40}));
    EXPECT_TRUE(damage.absorb({40, 40, 55, 55}));
    ASSERT_EQ(damage.rects().size(), 1u);
    EXPECT_EQ(damage.rects().front(), (PixelRect{0, 0, 100, 100}));
}

} // namespace trelundo
