#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/controllers/PresentationListener.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

#include "tests/platform/uikit/DeviceFixture.h"

#include <algorithm>

namespace trelundo {
namespace {

template <class View> void collect(Ref<UIView> const& view, std::vector<Ref<View>>& found) {
    if (auto const match = cast<View>(view)) found.push_back(match);
    for (auto const& child : view->subviews()) collect(child, found);
}

class AlertTest : public DeviceFixture {
protected:
    AlertTest() { shell.window().setRootViewController(host); }
    ~AlertTest() override { setPresentationListener({}); }

    Ref<UIAlertController> alert(std::optional<std::string> title, std::optional<std::string> message,
                                 std::vector<std::pair<std::string, UIAlertActionStyle>> const& actions) {
        auto result =
            make<UIAlertController>(std::move(title), std::move(message), UIAlertControllerStyle::alert);
        for (auto const& [text, style] : actions) {
            result->addAction(make<UIAlertAction>(
                text, style, [this](UIAlertAction& action) { chosen.push_back(action.title()); }));
        }
        return result;
    }
    /// After what was shown before has gone.
    Ref<UIAlertController> shown(Ref<UIAlertController> alert) {
        if (host->presentedViewController()) host->dismiss(false);
        shell.advance(0);
        host->present(alert, true);
        shell.advance(0.5);
        return alert;
    }

    template <class View> static std::vector<Ref<View>> all(UIAlertController& alert) {
        std::vector<Ref<View>> found;
        collect(alert.view(), found);
        return found;
    }
    static Ref<UIButton> button(UIAlertController& alert, std::string const& title) {
        auto const buttons = all<UIButton>(alert);
        return *std::ranges::find(buttons, title, [](auto const& each) { return each->currentTitle(); });
    }
    static Ref<UILabel> label(UIAlertController& alert, std::string const& text) {
        auto const labels = all<UILabel>(alert);
        return *std::ranges::find(labels, text, [](auto const& each) { return each->text(); });
    }
    static CGRect inWindow(UIView& view) { return view.convertRectTo(view.bounds(), nullptr); }
    static Ref<UIView> card(UIAlertController& alert) { return alert.view()->subviews().back(); }

    static constexpr auto plain = UIAlertActionStyle::defaultStyle;
    static constexpr auto cancel = UIAlertActionStyle::cancel;
    static constexpr auto destructive = UIAlertActionStyle::destructive;

    Ref<UIViewController> const host = make<UIViewController>();
    std::vector<std::string> chosen;
};

TEST_F(AlertTest, TheCardGrowsInInTheMiddleOfTheSafeAreaAndDimsTheRest) {
    auto const box = alert("Title", "Message", {{"OK", plain}});
    host->present(box, true);
    auto const& layer = card(*box)->layer();
    EXPECT_NEAR(layer.presentationValues().transform.a, 1.2, 1e-9);
    EXPECT_EQ(layer.presentationValues().opacity, 0);
    shell.advance(0.3);
    EXPECT_EQ(layer.presentationValues().transform.a, 1);
    EXPECT_EQ(layer.cornerRadius(), 14);
    auto const frame = inWindow(*card(*box));
    EXPECT_EQ(frame.width(), 270);
    EXPECT_EQ(frame.midX(), 160);
    EXPECT_NEAR(frame.midY(), 20 + 548 / 2.0, 0.5);
    EXPECT_EQ(inWindow(*button(*box, "OK")), (CGRect{frame.minX(), frame.maxY() - 44, 270, 44}));
    EXPECT_EQ(inWindow(*label(*box, "Title")).origin, (CGPoint{frame.minX() + 16, frame.minY() + 20}));
    EXPECT_EQ(host->view()->tintAdjustmentMode(), UIViewTintAdjustmentMode::dimmed);
    EXPECT_EQ(host->view()->window(), &shell.window());
    auto const dimming = box->view()->subviews().front();
    EXPECT_EQ(dimming->layer().backgroundColor(), (CGColor{0, 0, 0, 0.2}));
    EXPECT_EQ(inWindow(*dimming), shell.window().bounds());
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_EQ(dimming->layer().backgroundColor(), (CGColor{0, 0, 0, 0.48}));
    EXPECT_LT(layer.backdropEffect()->overlay.red, 0.5);
    // On black, where no shadow shows, an edge of at least 3 to 1.
    EXPECT_GT(layer.borderColor().alpha, 0.2);
    EXPECT_EQ(layer.borderWidth(), 0.5);
}

TEST_F(AlertTest, TwoShortActionsStandSideBySideLongOrManyAreStacked) {
    auto const box = shown(alert("Title", std::nullopt, {{"Buy", plain}, {"Cancel", cancel}}));
    auto const left = inWindow(*button(*box, "Cancel"));
    EXPECT_EQ(left, (CGRect{inWindow(*card(*box)).origin.x, left.minY(), 135, 44}));
    EXPECT_EQ(inWindow(*button(*box, "Buy")), (CGRect{left.maxX(), left.minY(), 135, 44}));
    auto const many =
        shown(alert("Title", std::nullopt, {{"Cancel", cancel}, {"One", plain}, {"Two", plain}}));
    auto const second = inWindow(*button(*many, "Two"));
    EXPECT_EQ(second.minY() - inWindow(*button(*many, "One")).maxY(), 0.5) << "one pixel";
    EXPECT_LT(second.minY(), inWindow(*button(*many, "Cancel")).minY());
    auto const wide = shown(alert("T", std::nullopt, {{"Continue with monthly", plain}, {"Upgrade", plain}}));
    EXPECT_EQ(inWindow(*button(*wide, "Upgrade")).width(), 270);

    UIApplication::shared().setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    auto const hebrew = shown(alert("כותרת", std::nullopt, {{"קנייה", plain}, {"ביטול", cancel}}));
    UIApplication::shared().setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection::leftToRight);
    auto const dismissing = inWindow(*button(*hebrew, "ביטול"));
    EXPECT_EQ(dismissing.maxX(), inWindow(*card(*hebrew)).maxX());
    EXPECT_EQ(inWindow(*button(*hebrew, "קנייה")).maxX(), dismissing.minX());
}

TEST_F(AlertTest, EmphasisGoesToThePreferredActionElseToCancelAndToTheFirstText) {
    auto const box =
        shown(alert("T", std::nullopt, {{"Cancel", cancel}, {"Buy", plain}, {"Erase", destructive}}));
    auto const weight = [&](char const* title) { return button(*box, title)->titleLabel()->font().weight(); };
    EXPECT_EQ(weight("Cancel"), UIFont::Weight::semibold);
    EXPECT_EQ(weight("Buy"), UIFont::Weight::regular);
    EXPECT_EQ(button(*box, "Erase")->currentTitleColor().cgColor(), UIColor::systemRed().cgColor());
    box->setPreferredAction(box->actions()[1]);
    EXPECT_EQ(weight("Cancel"), UIFont::Weight::regular);
    EXPECT_EQ(weight("Buy"), UIFont::Weight::semibold);

    auto const untitled = shown(alert(std::nullopt, "Text", {{"OK", plain}}));
    EXPECT_EQ(label(*untitled, "Text")->font(), UIFont::system(17, UIFont::Weight::semibold));
    auto const empty = shown(alert("", "Text", {{"OK", plain}}));
    EXPECT_EQ(label(*empty, "Text")->font(), UIFont::system(13));
    EXPECT_EQ(all<UILabel>(*empty).size(), 2u) << "the text and the button's title";
}

TEST_F(AlertTest, ATapDismissesFirstAndCallsTheHandlerOnceAfterwards) {
    std::vector<std::string> order;
    auto box = make<UIAlertController>("T", "M", UIAlertControllerStyle::alert);
    box->addAction(make<UIAlertAction>("OK", plain, [&](UIAlertAction&) {
        order.push_back(host->presentedViewController() ? "handler too early" : "handler");
        host->present(alert("Next", std::nullopt, {{"OK", plain}}), true);
    }));
    setPresentationListener({.dismissed = [&](UIViewController& controller, bool) {
        auto& gone = dynamic_cast<UIAlertController&>(controller);
        order.push_back("dismissed by " + gone.performedAction()->title());
    }});
    shown(box);
    auto const place = inWindow(*button(*box, "OK"));
    shell.tap({place.midX(), place.midY()});
    shell.tap({place.midX(), place.midY()});
    EXPECT_THAT(order, IsEmpty());
    shell.advance(1);
    EXPECT_THAT(order, ElementsAre("dismissed by OK", "handler"));
    EXPECT_EQ(cast<UIAlertController>(host->presentedViewController())->alertTitle(), "Next");
    EXPECT_THAT(warnings, IsEmpty());
}

TEST_F(AlertTest, AChoiceDuringTheArrivalWaitsForItsEndUnlessItIsDisabled) {
    auto const box = alert("T", "M", {{"Off", plain}, {"OK", plain}, {"No", plain}});
    host->present(box, true);
    box->actions()[0]->setEnabled(false);
    EXPECT_FALSE(button(*box, "Off")->isEnabled());
    box->actions()[1]->setEnabled(false);
    box->actions()[1]->setEnabled(true);
    EXPECT_TRUE(button(*box, "OK")->isEnabled());
    for (auto const& action : box->actions()) box->performAction(*action);
    shell.advance(1);
    EXPECT_THAT(chosen, ElementsAre("OK"));
    EXPECT_EQ(host->presentedViewController(), nullptr);
}

TEST_F(AlertTest, ReturnAndEscapeChoose) {
    auto box = alert("T", "M", {{"Cancel", cancel}, {"Buy", plain}});
    shown(box);
    shell.window().keyPressed(UIWindow::Key::returnKey);
    shell.advance(1);
    EXPECT_THAT(chosen, IsEmpty()) << "nothing is preferred";
    box->setPreferredAction(box->actions()[1]);
    shell.window().keyPressed(UIWindow::Key::returnKey);
    shell.advance(1);
    shown(alert("T", "M", {{"Cancel", cancel}, {"Buy", plain}}));
    shell.window().keyPressed(UIWindow::Key::escape);
    shell.advance(1);
    shown(alert("T", "M", {{"OK", plain}}));
    shell.window().keyPressed(UIWindow::Key::escape);
    shell.advance(1);
    EXPECT_THAT(chosen, ElementsAre("Buy", "Cancel", "OK"));
}

TEST_F(AlertTest, NothingBehindTheAlertHearsTouchesOrKeysAndADismissalByProgramChoosesNothing) {
    auto const target = make<Counter>();
    auto const covered = make<UIControl>(CGRect{0, 0, 20, 140});
    covered->addTarget(target.get(), &Counter::act, UIControlEvents::touchUpInside);
    host->view()->addSubview(covered);
    shell.window().keyPressed(UIWindow::Key::tab);
    shell.window().keyPressed(UIWindow::Key::returnKey);
    EXPECT_EQ(target->count, 1);
    host->present(alert("T", "M", {{"OK", plain}}), true);
    shell.tap({5, 100});
    shell.advance(1);
    shell.tap({5, 100});
    EXPECT_TRUE(host->presentedViewController());
    shell.window().keyPressed(UIWindow::Key::space);
    shell.window().keyPressed(UIWindow::Key::returnKey);
    shell.advance(1);
    EXPECT_EQ(target->count, 1);
    EXPECT_THAT(chosen, ElementsAre("OK"));
    shown(alert("T", "M", {{"OK", plain}}));
    host->dismiss(true);
    shell.advance(1);
    EXPECT_EQ(host->presentedViewController(), nullptr);
    EXPECT_THAT(chosen, ElementsAre("OK"));
}

TEST_F(AlertTest, TextsMayChangeAndATallTextScrolls) {
    auto const box = shown(alert("T", "M", {{"OK", plain}}));
    double const before = inWindow(*card(*box)).height();
    std::string text;
    for (int line = 0; line < 60; ++line) text += "A line\n";
    box->setMessage(text);
    shell.advance(0);
    auto const frame = inWindow(*card(*box));
    EXPECT_GT(frame.height(), before);
    EXPECT_GE(frame.minY(), 20);
    EXPECT_LE(frame.maxY(), 568);
    EXPECT_EQ(inWindow(*button(*box, "OK")).size, (CGSize{270, 44}));
    auto const scrolled = all<UIScrollView>(*box).front();
    EXPECT_GT(scrolled->contentSize().height, scrolled->bounds().height());
}

TEST_F(AlertTest, AForeignPreferredActionAndASecondCancelEndTheProgram) {
    auto const box = alert("T", "M", {{"Cancel", cancel}});
    EXPECT_DEATH(box->setPreferredAction(make<UIAlertAction>("X", plain)), "must be one of its actions");
    EXPECT_DEATH(box->addAction(make<UIAlertAction>("X", cancel)), "one cancel action");
}

} // namespace
} // namespace trelundo
