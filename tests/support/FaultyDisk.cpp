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
        if (!isSynchronized) current->unsynchronized_.insert(name);
        if (isSynchronized) current->unsynchronized_.erase(name);
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

    template <auto method, class... Arguments>
    static int forward(sqlite3_file* file, Arguments... arguments) {
        auto& shown = File::of(file);
        return (shown.methods().*method)(shown.real(), arguments...);
    }
    /// Forwards a call that this disk may fail.
    template <Call call, int error, auto method, class... Arguments>
    static int attempt(sqlite3_file* file, Arguments... arguments) {
        auto& shown = File::of(file);
        if (shown.fails(call)) return error;
        if (call == Call::write || call == Call::truncate) shown.setSynchronized(false);
        if (call == Call::synchronize) shown.setSynchronized(true);
        return forward<method>(file, arguments...);
    }

    using Io = sqlite3_io_methods;
    static inline Io const methods = [] {
        Io io{};
        io.iVersion = 1; // knows no shared memory: ledgers hold their file for themselves
        io.xClose = forward<&Io::xClose>;
        io.xRead = attempt<Call::read, SQLITE_IOERR_READ, &Io::xRead>;
        io.xWrite = attempt<Call::write, SQLITE_IOERR_WRITE, &Io::xWrite>;
        io.xTruncate = attempt<Call::truncate, SQLITE_IOERR_TRUNCATE, &Io::xTruncate>;
        io.xSync = attempt<Call::synchronize, SQLITE_IOERR_FSYNC, &Io::xSync>;
        io.xFileSize = attempt<Call::size, SQLITE_IOERR_FSTAT, &Io::xFileSize>;
        io.xLock = attempt<Call::lock, SQLITE_IOERR_LOCK, &Io::xLock>;
        io.xUnlock = forward<&Io::xUnlock>;
        io.xCheckReservedLock = forward<&Io::xCheckReservedLock>;
        io.xFileControl = forward<&Io::xFileControl>;
        io.xSectorSize = forward<&Io::xSectorSize>;
        io.xDeviceCharacteristics = forward<&Io::xDeviceCharacteristics>;
        return io;
    }();
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
