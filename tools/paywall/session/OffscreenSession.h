#pragma once

#include "tools/paywall/session/ScreenSession.h"
#include "trelundo/platform/window/OffscreenShell.h"

namespace trelundo::paywall {

/// A screen without a display, at the moment of its presentation. `options` and `log` must live as
/// long.
struct OffscreenSession {
    OffscreenSession(Options const& options, EventLog& log);
    /// With a catalogue that is loaded already.
    OffscreenSession(Options const& options, EventLog& log, StoreConfiguration const& catalogue);

    OffscreenShell shell;
    ScreenSession session;
};

} // namespace trelundo::paywall
