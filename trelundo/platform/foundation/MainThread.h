#pragma once

namespace trelundo {

/// Whether the caller is on the thread that runs the main queue: the one that ran it last, and until it has
/// run the one that loaded the platform.
bool isMainThread();

} // namespace trelundo
