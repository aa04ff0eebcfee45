#include "trelundo/platform/storekit/sandbox/internal/DiskFile.h"

#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"

#include <SQLiteCpp/Exception.h>
#include <algorithm>
#include <memory>
#include <sqlite3.h>
#include <system_error>
#include <vector>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunkSize = 1U << 20U; // bytes of one call

void require(int status) {
    if (status != SQLITE_OK) throw SQLite::Exception(sqlite3_errstr(status), status);
}

/// A file of the library's own disk, open to be read.
class DiskFile {
public:
    explicit DiskFile(fs::path const& path)
        : disk_(sqlite3_vfs_find(nullptr))
        , name_(sqlite3_create_filename(path.c_str(), "", "", 0, nullptr))
        , memory_(static_cast<std::size_t>(disk_->szOsFile) / sizeof(std::max_align_t) + 1) {
        if (!name_) throw std::bad_alloc{};
        require(
            disk_->xOpen(disk_, name_.get(), file(), SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, nullptr));
    }
    ~DiskFile() {
        if (file()->pMethods) file()->pMethods->xClose(file());
    }
    DiskFile(DiskFile const&) = delete;
    DiskFile& operator=(DiskFile const&) = delete;

    void read(char* bytes, std::size_t count, std::size_t offset) {
        require(file()->pMethods->xRead(file(), bytes, static_cast<int>(count),
                                        static_cast<sqlite3_int64>(offset)));
    }

private:
    struct NameRelease {
        void operator()(char const* name) const { sqlite3_free_filename(const_cast<char*>(name)); }
    };

    sqlite3_file* file() { return reinterpret_cast<sqlite3_file*>(memory_.data()); }

    sqlite3_vfs* disk_;
    std::unique_ptr<char const, NameRelease> name_;
    std::vector<std::max_align_t> memory_; // of the library's file object
};

} // namespace

std::string readDiskFile(fs::path const& file, std::size_t limit) {
    std::error_code failure;
    auto const status = fs::status(file, failure);
    if (status.type() == fs::file_type::not_found) return {};
    if (!failure && !fs::is_regular_file(status)) throw LedgerRefusal("not a file");
    // Not the library's own answer, which calls a file of one byte empty.
    auto const size = failure ? 0 : fs::file_size(file, failure);
    if (failure) throw LedgerRefusal("the store cannot be read: " + failure.message());
    if (size > limit) throw LedgerRefusal("the store is larger than 1 GB");
    if (size == 0) return {};
    std::string bytes(size, '\0');
    DiskFile disk{file};
    for (std::size_t at = 0; at < size; at += chunkSize)
        disk.read(bytes.data() + at, std::min(chunkSize, size - at), at);
    return bytes;
}

} // namespace trelundo
