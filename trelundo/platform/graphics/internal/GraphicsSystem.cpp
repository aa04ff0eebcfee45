#include "trelundo/platform/graphics/internal/GraphicsSystem.h"

#include "trelundo/platform/graphics/internal/MessageSilencer.h"
#include "trelundo/platform/graphics/text/internal/ShapedWord.h"

#include <QGuiApplication>

#include <clocale>
#include <string>

namespace trelundo {

namespace {

/// Keeps the process's C locale as the host set it: starting the application object adopts the environment's.
class LocaleKeeper {
public:
    LocaleKeeper() {
        if (auto const* current = std::setlocale(LC_ALL, nullptr)) saved_ = current;
    }
    ~LocaleKeeper() { std::setlocale(LC_ALL, saved_.c_str()); }
    LocaleKeeper(LocaleKeeper const&) = delete;
    LocaleKeeper& operator=(LocaleKeeper const&) = delete;

private:
    std::string saved_ = "C";
};

bool isWithoutDisplay = false; // the application object is ours and opens none

/// The application object that fonts and picture readers need, on a platform that opens no display. It lives
/// as long as the process.
void startApplication() {
    static char name[] = "trelundo";
    static char option[] = "-platform";
    static char platform[] = "offscreen";
    static char* arguments[] = {name, option, platform, nullptr};
    static int count = 3;
    // Complaints about the environment (locale, runtime folder) mean nothing to a process without a session.
    MessageSilencer const quiet;
    [[maybe_unused]] static auto* const application = new QGuiApplication(count, arguments);
    isWithoutDisplay = true;
}

void startOnce() {
    LocaleKeeper const keeper;
    if (!QCoreApplication::instance()) startApplication();
    // Shaping takes its language from the C locale when it runs first; fix it here, or pixels would depend on
    // it.
    std::setlocale(LC_ALL, "C");
    shapeWord({.text = u"a",
               .face = &FontLibrary::shared().systemFace(400, false, 17),
               .usesKerning = true,
               .isRightToLeft = false},
              {1});
}

} // namespace

bool runsWithoutDisplay() { return isWithoutDisplay; }

void startGraphics() {
    static bool const started = (startOnce(), true);
    static_cast<void>(started);
}

} // namespace trelundo
