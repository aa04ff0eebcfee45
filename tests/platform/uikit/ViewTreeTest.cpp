#include "trelundo/platform/uikit/views/UIView.h"

#include "tests/platform/uikit/DeviceFixture.h"

namespace trelundo {
namespace {

/// Writes down what the tree tells it.
class WitnessView : public UIView {
public:
    explicit WitnessView(std::string name = "view")
        : name_(std::move(name)) {}

    void willMoveToSuperview(UIView* superview) override { note(superview ? "will-super" : "will-no-super"); }
    void didMoveToSuperview() override { note(superview() ? "did-super" : "did-no-super"); }
    void willMoveToWindow(UIWindow* window) override { note(window ? "will-window" : "will-no-window"); }
    void didMoveToWindow() override { note(window() ? "did-window" : "did-no-window"); }
    void traitCollectionDidChange(UITraitCollection const*) override { note("traits"); }

private:
    void note(std::string const& what) { journal.push_back(name_ + " " + what); }

    std::string name_;
};

class ViewTreeTest : public DeviceFixture {
protected:
    /// The tags of the subviews, back to front, and of their layers.
    static std::vector<int> tags(UIView const& view) {
        std::vector<int> result;
        for (auto const& child : view.subviews()) result.push_back(child->tag());
        return result;
    }
    static std::vector<int> layerTags(UIView const& view) {
        std::vector<int> result;
        for (auto const& layer : view.layer().sublayers()) {
            auto const owner = cast<UIView>(layer->delegate());
            result.push_back(owner ? owner->tag() : 0);
        }
        return result;
    }
    static Ref<UIView> tagged(int tag) {
        auto view = make<UIView>();
        view->setTag(tag);
        return view;
    }
};

TEST_F(ViewTreeTest, ASubtreeEntersAndLeavesTheWindowParentsFirst) {
    auto const parent = make<WitnessView>("parent");
    auto const child = make<WitnessView>("child");
    parent->addSubview(child);
    EXPECT_THAT(journal, ElementsAre("child will-super", "child did-super"));
    journal.clear();
    shell.window().addSubview(parent);
    EXPECT_THAT(journal, ElementsAre("parent will-super", "parent will-window", "child will-window",
                                     "parent did-window", "child did-window", "parent did-super",
                                     "parent traits", "child traits"));
    journal.clear();
    auto const other = show(make<UIView>(), {});
    other->addSubview(parent);
    EXPECT_THAT(journal, ElementsAre("parent will-super", "parent did-super")) << "the window is the same";
    EXPECT_THAT(shell.window().subviews(), ElementsAre(other));
    EXPECT_EQ(parent->layer().superlayer(), &other->layer());
    journal.clear();
    parent->removeFromSuperview();
    EXPECT_THAT(journal, ElementsAre("parent will-no-super", "parent will-no-window", "child will-no-window",
                                     "parent did-no-window", "child did-no-window", "parent did-no-super"));
    EXPECT_EQ(parent->superview(), nullptr);
    EXPECT_EQ(parent->layer().superlayer(), nullptr);
    EXPECT_EQ(child->window(), nullptr);

    child->addSubview(parent);
    parent->addSubview(parent);
    EXPECT_EQ(warnings.size(), 2u) << "a circle is refused";
    EXPECT_THAT(child->subviews(), IsEmpty());
    EXPECT_THAT(parent->subviews(), ElementsAre(child));
}

TEST_F(ViewTreeTest, OrderOfViewsAndLayersIsThatOfInsertion) {
    auto const parent = make<UIView>();
    auto const first = tagged(1), second = tagged(2), third = tagged(3), fourth = tagged(4),
               fifth = tagged(5);
    parent->addSubview(first);
    parent->addSubview(second);
    parent->layer().insertSublayer(make<CALayer>(), 0);
    parent->insertSubview(third, 0);
    parent->insertSubviewAbove(fourth, *third);
    parent->insertSubviewBelow(fifth, *second);
    EXPECT_THAT(tags(*parent), ElementsAre(3, 4, 1, 5, 2));
    EXPECT_THAT(layerTags(*parent), ElementsAre(0, 3, 4, 1, 5, 2));

    parent->addSubview(first);
    EXPECT_THAT(tags(*parent), ElementsAre(3, 4, 5, 2, 1));
    parent->insertSubviewAbove(third, *fifth);
    EXPECT_THAT(tags(*parent), ElementsAre(4, 5, 3, 2, 1));
    parent->insertSubviewBelow(first, *fourth);
    EXPECT_THAT(tags(*parent), ElementsAre(1, 4, 5, 3, 2));
    parent->bringSubviewToFront(*fourth);
    EXPECT_THAT(tags(*parent), ElementsAre(1, 5, 3, 2, 4));
    EXPECT_THAT(layerTags(*parent), ElementsAre(0, 1, 5, 3, 2, 4));
    EXPECT_EQ(parent->viewWithTag(3), third);
    EXPECT_EQ(parent->viewWithTag(9), nullptr);
}

TEST_F(ViewTreeTest, AViewMayLeaveInsideItsOwnCallbackAndOutliveItsParent) {
    class Leaver : public UIView {
    public:
        void didMoveToWindow() override {
            if (window()) removeFromSuperview();
        }
    };
    auto const view = make<Leaver>();
    shell.window().addSubview(view);
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_THAT(shell.window().subviews(), IsEmpty());
    make<UIView>()->addSubview(view);
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_EQ(view->layer().superlayer(), nullptr);
}

TEST_F(ViewTreeTest, CoordinatesConvertThroughScrollOffsetsAndTransforms) {
    auto const outer = show(make<UIView>(), {10, 20, 200, 200});
    auto const scrolled = make<UIView>(CGRect{5, 5, 100, 100});
    scrolled->setBounds({0, 30, 100, 100});
    outer->addSubview(scrolled);
    auto const inner = make<UIView>(CGRect{10, 40, 20, 20});
    scrolled->addSubview(inner);
    EXPECT_EQ(inner->convertRectTo(inner->bounds(), nullptr), (CGRect{25, 35, 20, 20}));
    EXPECT_EQ(inner->convertPointFrom({25, 35}, nullptr), (CGPoint{0, 0}));
    EXPECT_EQ(scrolled->convertPointFrom({5, 5}, outer.get()), (CGPoint{0, 30}));

    auto const sibling = make<UIView>(CGRect{100, 100, 50, 50});
    outer->addSubview(sibling);
    sibling->setTransform(CGAffineTransform::scale(2, 2));
    EXPECT_EQ(sibling->convertRectTo(sibling->bounds(), outer.get()), (CGRect{75, 75, 100, 100}));
    EXPECT_EQ(inner->convertPointTo({0, 0}, sibling.get()), (CGPoint{-30, -30}));

    scrolled->setFrame({20, 30, 40, 50});
    EXPECT_EQ(scrolled->bounds(), (CGRect{0, 30, 40, 50})) << "the offset stays";
    EXPECT_EQ(scrolled->center(), (CGPoint{40, 55}));
}

} // namespace
} // namespace trelundo
