#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <filesystem>
#include <memory>

namespace trelundo {

/// Keeps other programs, and other parts of this one, from a file for as long as it lives, whatever else is
/// opened and closed meanwhile. The lock is a file of its own, which goes with its holder; what a holder that
/// died has left behind locks nothing.
class FileLock {
public:
    /// Null: somebody else holds it. An error gives the system's reason without the name.
    static Result<std::unique_ptr<FileLock>> acquire(std::filesystem::path const& file);
    /// Whether somebody holds it. Changes nothing on the disk.
    static bool isHeld(std::filesystem::path const& file);

    ~FileLock();
    FileLock(FileLock const&) = delete;
    FileLock& operator=(FileLock const&) = delete;

private:
    FileLock(std::filesystem::path file, int descriptor)
        : file_(std::move(file))
        , descriptor_(descriptor) {}

    std::filesystem::path file_;
    int descriptor_;
};

} // namespace trelundo
