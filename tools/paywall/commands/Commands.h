#pragma once

#include "tools/paywall/Options.h"

namespace trelundo::paywall {

/// Runs the command that the options name and returns the exit status. Failing inputs throw a Failure.
int runCommand(Options const& options, int& argc, char** argv);

// The commands, one each.
int listScreens();
int listDevices();
int listLanguages();
int printProducts(Options const& options);
int renderScreen(Options const& options);
int describeScreen(Options const& options);
int runScript(Options const& options);
int showScreen(Options const& options, int& argc, char** argv);
int makeGallery(Options const& options);
int manageStore(Options const& options);

} // namespace trelundo::paywall
