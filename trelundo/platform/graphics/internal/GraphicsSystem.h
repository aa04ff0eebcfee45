#pragma once

namespace trelundo {

/// Starts what drawing needs (fonts, the picture readers) once per process, without a display. A shell that
/// has started the graphics library itself has nothing more to do; calling it again is free. A missing system
/// font is told on standard error with the package to install, and the next best is used.
void startGraphics();

/// Whether startGraphics() has started the graphics library, so that it can open no window in this process.
bool runsWithoutDisplay();

} // namespace trelundo
