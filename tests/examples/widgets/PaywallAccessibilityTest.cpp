#include "examples/widgets_host/PaywallAccessibility.h"

#include "examples/widgets_host/PaywallWidget.h"
#include "trelundo/Premium.h"

#include <QAccessible>
#include <QApplication>

#include <gtest/gtest.h>

namespace trelundo {

namespace {

class Presses : public NSObject {
public:
    void press() { ++count; }
    int count = 0;
};

} // namespace

TEST(PaywallAccessibilityTest, AssistiveProgramsReadAndPressWhatTheWidgetShows) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    int argc = 0;
    QApplication const application(argc, nullptr);
    installPaywallAccessibility();
    PaywallWidget widget;
    widget.resize(400, 600);
    widget.show();
    auto const presses = make<Presses>();
    auto const button = make<UIButton>();
    button->setFrame({10, 20, 100, 40});
    button->setTitle("Continue", UIControlState::normal);
    button->addTarget(presses.get(), &Presses::press, UIControlEvents::touchUpInside);
    widget.shell().window().addSubview(button);

    auto* const list = QAccessible::queryAccessibleInterface(&widget);
    ASSERT_EQ(list->childCount(), 1);
    auto* const element = list->child(0);
    EXPECT_EQ(element->text(QAccessible::Name), "Continue");
    EXPECT_EQ(element->role(), QAccessible::Button);
    EXPECT_EQ(element->rect().size(), QSize(100, 40));
    EXPECT_EQ(list->indexOfChild(element), 0);
    element->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(presses->count, 1);
    button->removeFromSuperview();
    EXPECT_FALSE(element->isValid());
    element->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(presses->count, 1);
}

} // namespace trelundo
