#pragma once

namespace trelundo {

/// Whether the caller is on the main thread: while a shell lives, the one that made the first; else the one
/// that ran the main queue last, and until it has run the one that loaded the platform.
bool isMainThread();

} // namespace trelundo
