#pragma once

#include <functional>
#include <set>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace trelundo::test {

/// Stands between the database library and the disk while it lives: shows every call, fails those that a test
/// chooses, and knows what has been written but not synchronised. One at a time, for databases that are
/// opened and closed in its life.
class FaultyDisk {
public:
    enum class Call { open, read, write, synchronize, truncate, remove, size, lock };
    /// Hears of a call before it happens; true: it fails and leaves the disk as it is. A failing
    /// synchronisation leaves what was written where it is.
    using Judge = std::function<bool(Call call, std::string_view file)>;

    FaultyDisk();
    ~FaultyDisk();
    FaultyDisk(FaultyDisk const&) = delete;
    FaultyDisk& operator=(FaultyDisk const&) = delete;

    /// Null: nothing fails.
    void setJudge(Judge judge) { judge_ = std::move(judge); }
    /// Fails `count` calls of a kind, beginning with the `first` from now on.
    void fail(Call call, int first = 1, int count = 1);
    /// How many calls fail() has counted so far.
    int countedCalls() const { return counted_; }
    /// Names of the files that hold bytes which a power failure may take.
    std::set<std::string> const& unsynchronized() const { return unsynchronized_; }

private:
    struct File;
    struct Methods;

    bool fails(Call call, std::string_view file) const { return judge_ && judge_(call, file); }

    static inline FaultyDisk* current = nullptr;
    sqlite3_vfs* disk_;
    sqlite3_vfs vfs_;
    Judge judge_;
    int counted_ = 0;
    std::set<std::string> unsynchronized_;
};

} // namespace trelundo::test
