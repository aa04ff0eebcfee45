#pragma once

// The shells that a screen is shown in: inside a program of any kind, in a real window, and without a display
// and with virtual time.
// IWYU pragma: begin_exports
#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/window/EmbeddedShell.h"
#include "trelundo/platform/window/OffscreenShell.h"
#include "trelundo/platform/window/WindowShell.h"
// IWYU pragma: end_exports
