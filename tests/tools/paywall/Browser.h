#pragma once

#include "tests/tools/paywall/Program.h"

namespace trelundo::paywall::test {

/// Chromium without a display and without a network, each time with a profile of its own.
class Browser {
public:
    static bool isAvailable() { return runShell("command -v chromium").status == 0; }

    /// The page as it stands after everything has loaded and run.
    static std::string dom(std::filesystem::path const& page, std::string const& hash) {
        TemporaryFolder const profile;
        auto const command =
            "timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
            "--disable-background-networking --disable-component-update --disable-sync "
            "--disable-dev-shm-usage --window-size=1600,1000 --virtual-time-budget=10000 --user-data-dir=" +
            quoted(profile / "profile") + " --dump-dom " + quoted("file://" + page.string() + "#" + hash);
        return runShell("HOME=" + quoted(profile / "home") + " " + command + " 2>/dev/null </dev/null")
            .output;
    }
};

} // namespace trelundo::paywall::test
