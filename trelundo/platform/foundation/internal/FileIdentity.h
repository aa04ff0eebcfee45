#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace trelundo {

/// What tells one file from another that takes its name.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0; // on the device
    std::uint64_t names = 0;  // that lead to it; none when it is removed

    bool operator==(FileIdentity const&) const = default;
};

/// Of the file that `file` leads to; none when there is none.
std::optional<FileIdentity> fileIdentity(std::filesystem::path const& file);

} // namespace trelundo
