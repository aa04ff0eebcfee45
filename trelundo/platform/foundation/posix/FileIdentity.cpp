#include "trelundo/platform/foundation/internal/FileIdentity.h"

#include <sys/stat.h>

namespace trelundo {

std::optional<FileIdentity> fileIdentity(std::filesystem::path const& file) {
    struct ::stat status {};
    if (::stat(file.c_str(), &status) != 0) return std::nullopt;
    return FileIdentity{.device = status.st_dev, .number = status.st_ino, .names = status.st_nlink};
}

} // namespace trelundo
