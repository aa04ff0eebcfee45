#include "tools/paywall/stage/Scene.h"

#include "tools/paywall/store/StoreAccess.h"

namespace trelundo::paywall {

namespace {

OffscreenShell::Configuration offscreen(Options const& options) {
    return {.device = options.device, .landscape = options.landscape};
}

} // namespace

Scene::Scene(Options const& options, EventLog& log)
    : shell(offscreen(options))
    , stage(options, log) {
    stage.show(shell.window());
}

Scene::Scene(Options const& options, EventLog& log, StoreConfiguration const& catalogue)
    : shell(offscreen(options))
    , stage(options, log, openSandbox(options, catalogue)) {
    stage.show(shell.window());
}

} // namespace trelundo::paywall
