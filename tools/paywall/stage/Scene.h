#pragma once

#include "tools/paywall/stage/Stage.h"
#include "trelundo/platform/window/OffscreenShell.h"

namespace trelundo::paywall {

/// A staged screen without a display, at the moment of its presentation. `options` and `log` must live as
/// long.
struct Scene {
    Scene(Options const& options, EventLog& log);
    /// With a catalogue that is loaded already.
    Scene(Options const& options, EventLog& log, StoreConfiguration const& catalogue);

    OffscreenShell shell;
    Stage stage;
};

} // namespace trelundo::paywall
