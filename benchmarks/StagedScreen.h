#pragma once

#include "tools/paywall/output/EventLog.h"
#include "tools/paywall/session/OffscreenSession.h"

#include <string>
#include <utility>

namespace trelundo::bench {

/// The screen whose frames, layout and start are measured.
inline constexpr auto measuredScreen = "PremiumV2ViewController";

/// A screen on the phone of 1170 x 2532 pixels, as the tool stages it.
struct StagedScreen {
    explicit StagedScreen(std::string name)
        : options(optionsFor(std::move(name)))
        , offscreen(options, log) {}

    static paywall::Options optionsFor(std::string name) {
        paywall::Options options;
        options.command = "render";
        options.screen = std::move(name);
        options.device = DeviceProfile::find("phone-390x844");
        options.usesFakeClock = true;
        return options;
    }

    OffscreenShell& shell() { return offscreen.shell; }
    UIWindow& window() { return offscreen.shell.window(); }
    UIViewController& controller() { return *offscreen.session.screen(); }

    paywall::Options options;
    paywall::EventLog log;
    paywall::OffscreenSession offscreen;
};

} // namespace trelundo::bench
