#pragma once

#include "tools/paywall/output/EventLog.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/stage/Scene.h"

#include <string>
#include <utility>

namespace trelundo::bench {

/// The screen whose frames, layout and start are measured.
inline constexpr auto measuredScreen = "PremiumV2ViewController";

/// A screen on the phone of 1170 x 2532 pixels, as the tool stages it.
struct StagedScreen {
    explicit StagedScreen(std::string name)
        : options(optionsFor(std::move(name)))
        , log("/dev/null")
        , scene(options, log) {}

    static paywall::Options optionsFor(std::string name) {
        paywall::Options options;
        options.command = "render";
        options.screen = std::move(name);
        options.device = DeviceProfile::find("phone-390x844");
        options.fakeClock = true;
        return options;
    }

    OffscreenShell& shell() { return scene.shell; }
    UIWindow& window() { return scene.shell.window(); }
    UIViewController& controller() { return *scene.stage.screen(); }

    paywall::Options options;
    paywall::EventLog log;
    paywall::Scene scene;
};

} // namespace trelundo::bench
