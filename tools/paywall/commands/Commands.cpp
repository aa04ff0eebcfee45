#include "tools/paywall/commands/Commands.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/Console.h"
#include "tools/paywall/output/Describe.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/script/Script.h"
#include "tools/paywall/script/ScriptRunner.h"
#include "tools/paywall/session/Languages.h"
#include "tools/paywall/session/OffscreenSession.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/FileContents.h"
#include "trelundo/platform/window/WindowShell.h"

#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

constexpr std::size_t largestScript = 8; // MB

/// One transaction of a store file: identifier, product, state, and whether it is finished.
std::string storedLine(SandboxStore::StoredTransaction const& stored) {
    auto const& transaction = stored.transaction;
    return fmt::format("{}  {}  {}{}", transaction.key, transaction.payment.productIdentifier,
                       stored.isHeld ? "interrupted" : nameOf(transaction.state),
                       stored.isFinished ? "  finished" : "");
}

/// Where a desktop pointer finds the points that `describe` tells of.
Json placementFields(WindowPlacement const& placement) {
    bool const isShown = placement.cause == WindowPlacement::Cause::shown;
    return {{"cause", isShown ? "shown" : "resized"},
            {"origin", {placement.origin.x, placement.origin.y}},
            {"size", {placement.size.width, placement.size.height}},
            {"zoom", placement.zoom}};
}

} // namespace

int runCommand(Options const& options, int& argc, char** argv) {
    if (options.command == "screens") return listScreens();
    if (options.command == "devices") return listDevices();
    if (options.command == "languages") return listLanguages();
    if (options.command == "products") return printProducts(options);
    if (options.command == "render") return renderScreen(options);
    if (options.command == "describe") return describeScreen(options);
    if (options.command == "run") return runScript(options);
    if (options.command == "gallery") return makeGallery(options);
    if (options.command == "show") return showScreen(options, argc, argv);
    return manageStore(options);
}

int listScreens() {
    for (auto const& screen : screens()) printLine(screen.name);
    return statusOk;
}

int listDevices() {
    for (auto const& device : DeviceProfile::all()) printLine(device.name);
    return statusOk;
}

int listLanguages() {
    for (auto const& language : languages()) printLine(language);
    return statusOk;
}

int renderScreen(Options const& options) {
    EventLog log;
    OffscreenSession offscreen{options, log};
    valueOrFail(offscreen.shell.snapshot(*options.out));
    return statusOk;
}

int describeScreen(Options const& options) {
    EventLog log;
    OffscreenSession offscreen{options, log};
    offscreen.shell.window().layoutWindow();
    printLine(toText(describe(*offscreen.session.screen()), 2));
    return statusOk;
}

int runScript(Options const& options) {
    auto const steps = parseScript(valueOrFail(readFile(*options.script, largestScript)), *options.script);
    EventLog log{options.log};
    OffscreenSession offscreen{options, log};
    ScriptRunner{offscreen.shell, offscreen.session}.play(steps);
    log.requireWritten();
    return statusOk;
}

int showScreen(Options const& options, int& argc, char** argv) {
    EventLog log{options.log};
    log.setStart(Clock::current().now());
    auto const opened = WindowShell::open(
        argc, argv, {.device = options.device, .landscape = options.isLandscape, .title = options.screen});
    if (!opened) failInput(opened.error().message + "; `paywall render` and `paywall run` need no display");
    auto& shell = **opened;
    shell.setListener(
        [&](WindowPlacement const& placement) { log.write("window", placementFields(placement)); });
    ScreenSession session{options, log};
    session.show(shell.window());
    log.setListener([&](Json const& line) {
        if (line.at("kind") == "dismissed" && line.at("screen") == options.screen) shell.quit();
    });
    return shell.run();
}

int manageStore(Options const& options) {
    if (!std::filesystem::exists(*options.store)) failInput(*options.store + ": there is no such store file");
    if (options.storeAction == "list") {
        auto const transactions = valueOrFail(SandboxStore::read(*options.store));
        for (auto const& stored : transactions) printLine(storedLine(stored));
        return statusOk;
    }
    auto const store = openSandbox(options);
    valueOrFail(options.storeAction == "clear"     ? store->clear()
                : options.storeAction == "approve" ? store->approve(options.transaction)
                                                   : store->decline(options.transaction),
                *options.store + ": ");
    return statusOk;
}

} // namespace trelundo::paywall
