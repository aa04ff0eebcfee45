#include "trelundo/platform/window/internal/DesktopApplication.h"

#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/window/internal/DisplayProbe.h"

#include <QGuiApplication>
#include <QScreen>
#include <QThread>

#include <algorithm>
#include <memory>
#include <vector>

namespace trelundo {

namespace {

/// Kept from the question until the application has a connection of its own.
std::unique_ptr<DisplayProbe> displayProbe;

/// The application goes on using its arguments after those of the program have gone.
struct Application {
    Application(int count, char** arguments)
        : argc(count)
        , argv(arguments, arguments + count) {
        argv.push_back(nullptr);
        object = new QGuiApplication(argc, argv.data());
    }
    int argc;
    std::vector<char*> argv;
    QGuiApplication* object;
};

void startApplication(int& argc, char** argv) {
    static auto const& application = *new Application(argc, argv);
    argc = application.argc;
    std::copy_n(application.argv.begin(), argc + 1, argv);
}

Result<void> checkApplication() {
    auto const* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (!application) return Error{"The program's application object is of a kind that opens no windows"};
    if (application->thread() != QThread::currentThread())
        return Error{"Windows open only on the thread of the program's application object"};
    if (runsWithoutDisplay())
        return Error{"Drawing without a display has begun already; the first window is to be opened before"};
    if (!QGuiApplication::primaryScreen()) return Error{"The display has no screen"};
    return {};
}

} // namespace

bool canReachDesktop() {
    if (QCoreApplication::instance()) return checkApplication().has_value();
    displayProbe = std::make_unique<DisplayProbe>();
    return displayProbe->answers();
}

Result<void> startDesktop(int& argc, char** argv) {
    if (!QCoreApplication::instance()) {
        if (!canReachDesktop()) return Error{"There is no display to open a window on"};
        startApplication(argc, argv);
        displayProbe.reset();
    }
    return checkApplication();
}

} // namespace trelundo
