#include "trelundo/platform/foundation/internal/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace trelundo {

namespace {

/// Whether the name still leads to the open file: its last holder may have removed it meanwhile.
bool isNamed(int descriptor, std::filesystem::path const& file) {
    struct ::stat opened {};
    struct ::stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::lstat(file.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// Whether an open file can be a lock, which is empty: what is not is somebody else's.
bool canLock(int descriptor) {
    struct ::stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
}

} // namespace

Result<std::unique_ptr<FileLock>> FileLock::acquire(std::filesystem::path const& file) {
    while (true) {
        int const descriptor =
            ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
        if (descriptor < 0) return Error{std::generic_category().message(errno)};
        if (!canLock(descriptor)) {
            ::close(descriptor);
            return Error{file.filename().string() + " is no lock"};
        }
        auto const failure = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
        if (failure == 0 && isNamed(descriptor, file))
            return std::unique_ptr<FileLock>{new FileLock{file, descriptor}};
        ::close(descriptor);
        if (failure == EWOULDBLOCK) return std::unique_ptr<FileLock>{};
        if (failure != 0 && failure != EINTR) return Error{std::generic_category().message(failure)};
    }
}

bool FileLock::isHeld(std::filesystem::path const& file) {
    int const descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) return false;
    bool const isHeld = ::flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    ::close(descriptor);
    return isHeld;
}

FileLock::~FileLock() {
    ::unlink(file_.c_str()); // while it is held: who waits for the name finds a file of his own
    ::close(descriptor_);
}

} // namespace trelundo
