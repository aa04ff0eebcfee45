#pragma once

namespace trelundo {

/// An archive to decode an object from. Classes that cannot be archived end the program when they are handed
/// one.
class NSCoder {};

} // namespace trelundo
