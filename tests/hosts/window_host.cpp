// A program with an application object of its own that opens windows, two at once and then a third. It tells
// what is pressed, and with which screen.
#include "trelundo/Premium.h"
#include "trelundo/Window.h"

#include <QGuiApplication>

#include <cstdio>

using namespace trelundo;

namespace {

class Host : public NSObject {
public:
    explicit Host(std::string name)
        : name_(std::move(name)) {}
    void press() {
        std::printf("pressed %s at %g points\n", name_.c_str(), UIScreen::main().bounds().width());
        if (closes) closes();
    }
    std::function<void()> closes;

private:
    std::string name_;
};

/// A window with one button all over it.
class ButtonWindow {
public:
    ButtonWindow(int& argc, char** argv, char const* name, char const* device)
        : host_(make<Host>(name))
        , shell_(*WindowShell::open(argc, argv, {.device = DeviceProfile::find(device), .title = name})) {
        auto const button = make<UIButton>();
        button->setFrame(shell_->window().bounds());
        button->addTarget(host_.get(), &Host::press, UIControlEvents::touchUpInside);
        shell_->window().setRootViewController(make<UIViewController>());
        shell_->window().addSubview(button);
        shell_->setListener([name](WindowPlacement const& placement) {
            std::printf("shown %s %g %g\n", name, placement.origin.x, placement.origin.y);
        });
        host_->closes = [this] { DispatchQueue::main().async([this] { shell_->quit(); }); };
    }
    WindowShell& shell() { return *shell_; }

private:
    Ref<Host> host_;
    std::unique_ptr<WindowShell> shell_;
};

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication const application(argc, argv);
    {
        ButtonWindow first(argc, argv, "first", "phone-390x844");
        ButtonWindow second(argc, argv, "second", "phone-320x568");
        first.shell().show();
        second.shell().show();
        QGuiApplication::exec();
    }
    ButtonWindow third(argc, argv, "third", "phone-375x667");
    return third.shell().run();
}
