#include "tests/support/FaultyDisk.h"

namespace trelundo::test {

/// Followed in memory by the file of the real disk.
struct FaultyDisk::File {
    sqlite3_file base;
    char const* name;

    static File& of(sqlite3_file* file) { return *reinterpret_cast<File*>(file); }
    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
    sqlite3_io_methods const& methods() { return *real()->pMethods; }
    bool fails(Call call) const { return current && current->fails(call, name); }
    void setSynchronized(bool isSynchronized) const {
        if (!current) return;
        if (isSynchronized) {
            current->unsynchronized_.erase(name);
        } else {
            current->unsynchronized_.insert(name);
        }
    }
};

struct FaultyDisk::Methods {
    static int open(sqlite3_vfs* vfs, char const* name, sqlite3_file* opened, int flags, int* granted) {
        opened->pMethods = nullptr;
        auto& file = File::of(opened);
        file.name = name ? name : "";
        if (file.fails(Call::open)) return SQLITE_CANTOPEN;
        auto* const disk = static_cast<sqlite3_vfs*>(vfs->pAppData);
        int const status = disk->xOpen(disk, name, file.real(), flags, granted);
        if (status == SQLITE_OK) opened->pMethods = &methods;
        return status;
    }
    static int remove(sqlite3_vfs* vfs, char const* name, int isDurable) {
        if (current && current->fails(Call::remove, name)) return SQLITE_IOERR_DELETE;
        if (current) current->unsynchronized_.erase(name);
        auto* const disk = static_cast<sqlite3_vfs*>(vfs->pAppData);
        return disk->xDelete(disk, name, isDurable);
    }

    static int close(sqlite3_file* file) { return File::of(file).methods().xClose(File::of(file).real()); }
    static int read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 offset) {
        auto& shown = File::of(file);
        return shown.fails(Call::read) ? SQLITE_IOERR_READ
                                       : shown.methods().xRead(shown.real(), bytes, count, offset);
    }
    static int write(sqlite3_file* file, void const* bytes, int count, sqlite3_int64 offset) {
        auto& shown = File::of(file);
        if (shown.fails(Call::write)) return SQLITE_IOERR_WRITE;
        shown.setSynchronized(false);
        return shown.methods().xWrite(shown.real(), bytes, count, offset);
    }
    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        auto& shown = File::of(file);
        if (shown.fails(Call::truncate)) return SQLITE_IOERR_TRUNCATE;
        shown.setSynchronized(false);
        return shown.methods().xTruncate(shown.real(), size);
    }
    static int synchronize(sqlite3_file* file, int flags) {
        auto& shown = File::of(file);
        if (shown.fails(Call::synchronize)) return SQLITE_IOERR_FSYNC;
        shown.setSynchronized(true);
        return shown.methods().xSync(shown.real(), flags);
    }
    static int size(sqlite3_file* file, sqlite3_int64* bytes) {
        auto& shown = File::of(file);
        return shown.fails(Call::size) ? SQLITE_IOERR_FSTAT : shown.methods().xFileSize(shown.real(), bytes);
    }
    static int lock(sqlite3_file* file, int level) {
        auto& shown = File::of(file);
        return shown.fails(Call::lock) ? SQLITE_IOERR_LOCK : shown.methods().xLock(shown.real(), level);
    }
    static int unlock(sqlite3_file* file, int level) {
        return File::of(file).methods().xUnlock(File::of(file).real(), level);
    }
    static int isReserved(sqlite3_file* file, int* answer) {
        return File::of(file).methods().xCheckReservedLock(File::of(file).real(), answer);
    }
    static int control(sqlite3_file* file, int operation, void* argument) {
        return File::of(file).methods().xFileControl(File::of(file).real(), operation, argument);
    }
    static int sectorSize(sqlite3_file* file) {
        return File::of(file).methods().xSectorSize(File::of(file).real());
    }
    static int characteristics(sqlite3_file* file) {
        return File::of(file).methods().xDeviceCharacteristics(File::of(file).real());
    }

    // Version 1 knows no shared memory: ledgers hold their file for themselves.
    static constexpr sqlite3_io_methods methods{
        1,       close,   read,       write,   truncate,   synchronize,     size,
        lock,    unlock,  isReserved, control, sectorSize, characteristics, nullptr,
        nullptr, nullptr, nullptr,    nullptr, nullptr};
};

FaultyDisk::FaultyDisk()
    : disk_(sqlite3_vfs_find(nullptr))
    , vfs_(*disk_) {
    vfs_.szOsFile = static_cast<int>(sizeof(File)) + disk_->szOsFile;
    vfs_.pNext = nullptr;
    vfs_.zName = "faulty";
    vfs_.pAppData = disk_;
    vfs_.xOpen = Methods::open;
    vfs_.xDelete = Methods::remove;
    current = this;
    sqlite3_vfs_register(&vfs_, 1);
}

FaultyDisk::~FaultyDisk() {
    sqlite3_vfs_unregister(&vfs_);
    sqlite3_vfs_register(disk_, 1);
    current = nullptr;
}

void FaultyDisk::fail(Call call, int first, int count) {
    counted_ = 0;
    judge_ = [this, call, first, count](Call made, std::string_view) {
        if (made != call) return false;
        ++counted_;
        return counted_ >= first && counted_ - first < count;
    };
}

} // namespace trelundo::test
