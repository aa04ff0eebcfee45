#include "trelundo/platform/foundation/internal/PrivateFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace trelundo {

Result<void> createPrivateFile(std::filesystem::path const& file) {
    int const descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) return Error{std::generic_category().message(errno)};
    ::close(descriptor);
    return {};
}

bool isWritable(std::filesystem::path const& file) { return ::access(file.c_str(), W_OK) == 0; }

} // namespace trelundo
