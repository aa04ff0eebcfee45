// A program with an application object of its own that opens windows, two at once and then a third. It tells
// what is pressed, and with which screen.
#include "trelundo/Premium.h"
#include "trelundo/Window.h"

#include <QGuiApplication>

#include <cstdio>

using namespace trelundo;

namespace {

/// A window with one button all over it, which tells and quits.
class ButtonWindow : public NSObject {
public:
    ButtonWindow(int& argc, char** argv, char const* name, char const* device)
        : name_(name)
        , shell_(*WindowShell::open(argc, argv, {.device = DeviceProfile::find(device), .title = name})) {
        auto const button = make<UIButton>();
        button->setFrame(shell_->window().bounds());
        button->addTarget(this, &ButtonWindow::press, UIControlEvents::touchUpInside);
        shell_->window().setRootViewController(make<UIViewController>());
        shell_->window().addSubview(button);
        shell_->setListener([name](auto&&) { std::printf("shown %s\n", name); });
    }
    WindowShell& shell() { return *shell_; }

private:
    void press() {
        std::printf("pressed %s at %g points\n", name_, UIScreen::main().bounds().width());
        DispatchQueue::main().async([this] { shell_->quit(); });
    }

    char const* name_;
    std::unique_ptr<WindowShell> shell_;
};

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication const application(argc, argv);
    {
        auto const first = make<ButtonWindow>(argc, argv, "first", "phone-390x844");
        auto const second = make<ButtonWindow>(argc, argv, "second", "phone-320x568");
        first->shell().show();
        second->shell().show();
        QGuiApplication::exec();
    }
    auto const third = make<ButtonWindow>(argc, argv, "third", "phone-375x667");
    return third->shell().run();
}
