#pragma once

#include "trelundo/platform/foundation/Result.h"

namespace trelundo {

/// Whether the window system that the environment names can be reached.
bool canReachDesktop();

/// Makes sure that there is an application object that windows can be opened with: the program's own, else
/// one that lives as long as the process, made from the program's arguments. It removes those that it
/// understands from `argv`.
Result<void> startDesktop(int& argc, char** argv);

} // namespace trelundo
