#include "tools/paywall/session/OffscreenSession.h"

#include "tools/paywall/store/StoreAccess.h"

namespace trelundo::paywall {

namespace {

OffscreenShell::Configuration offscreen(Options const& options) {
    return {.device = options.device, .landscape = options.isLandscape};
}

} // namespace

OffscreenSession::OffscreenSession(Options const& options, EventLog& log)
    : shell(offscreen(options))
    , session(options, log) {
    session.show(shell.window());
}

OffscreenSession::OffscreenSession(Options const& options, EventLog& log, StoreConfiguration const& catalogue)
    : shell(offscreen(options))
    , session(options, log, openSandbox(options, catalogue)) {
    session.show(shell.window());
}

} // namespace trelundo::paywall
