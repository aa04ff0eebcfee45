#include "trelundo/platform/window/internal/AccessibleTree.h"

#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/text/UILabel.h"

#include <QWindow>

#include <gtest/gtest.h>

namespace trelundo {
namespace {

struct Pressed : NSObject {
    void press() { ++presses; }
    int presses = 0;
};

class AccessibleTreeTest : public testing::Test {
protected:
    Ref<UIButton> addButton(std::string title) {
        auto button = make<UIButton>();
        button->setFrame({10, 20, 100, 40});
        button->setTitle(std::move(title), UIControlState::normal);
        button->addTarget(target.get(), &Pressed::press, UIControlEvents::touchUpInside);
        shell.window().addSubview(button);
        return button;
    }
    std::string name(int index) {
        auto const* child = tree.root()->child(index);
        return child ? child->text(QAccessible::Name).toStdString() : "";
    }

    int wakes = 0;
    EmbeddedShell shell{{.screen = {.size = {200, 300}, .zoom = 0.5}, .wakeUp = [this] { ++wakes; }}};
    Ref<Pressed> target = make<Pressed>();
    QWindow host;
    AccessibleTree tree{host, shell};
};

TEST_F(AccessibleTreeTest, ListsLabelledAndPressableViewsAndLeavesOutTheHidden) {
    auto const box = make<UIView>(CGRect{0, 0, 375, 300});
    shell.window().addSubview(box);
    auto const label = make<UILabel>(CGRect{0, 100, 200, 30});
    label->setText("Unlock");
    box->addSubview(label);
    auto const button = addButton("Continue");
    shell.turn();
    ASSERT_EQ(tree.root()->childCount(), 2) << "a button hides its title label, a plain box is seen through";
    EXPECT_EQ(name(0), "Unlock");
    EXPECT_EQ(name(1), "Continue");
    EXPECT_EQ(tree.root()->child(0)->role(), QAccessible::StaticText);
    auto* const element = tree.root()->child(1);
    EXPECT_EQ(element->role(), QAccessible::Button);
    EXPECT_EQ(element->rect().size(), QSize(50, 20)) << "at the zoom of the window";
    EXPECT_EQ(tree.root()->indexOfChild(element), 1);
    EXPECT_EQ(element->parent(), tree.root());
    box->setHidden(true);
    ASSERT_EQ(tree.root()->childCount(), 1);
    EXPECT_EQ(tree.root()->child(0), element) << "an element stays the same as long as its view lives";
    EXPECT_EQ(tree.root()->child(7), nullptr);
}

TEST_F(AccessibleTreeTest, PressingRunsTheActionsOfEnabledControlsThatLiveOnly) {
    auto button = addButton("Continue");
    auto* const element = tree.root()->child(0);
    auto* const actions = element->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    shell.turn();
    wakes = 0;
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(target->presses, 1);
    EXPECT_EQ(wakes, 1) << "the host is asked to show what came of it";
    button->setEnabled(false);
    EXPECT_TRUE(element->state().disabled);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(target->presses, 1);

    button->setEnabled(true);
    button->removeFromSuperview();
    button = nullptr; // the element outlives its view
    EXPECT_FALSE(element->isValid());
    EXPECT_TRUE(element->text(QAccessible::Name).isEmpty());
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(target->presses, 1);
    EXPECT_EQ(tree.root()->childCount(), 0);
}

} // namespace
} // namespace trelundo
