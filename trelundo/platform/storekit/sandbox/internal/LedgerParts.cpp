#include "trelundo/platform/storekit/sandbox/internal/LedgerParts.h"

#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"

#include <algorithm>
#include <array>
#include <string>
#include <system_error>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

constexpr std::array suffixes{"", "-journal", "-wal", "-shm"};

fs::path partOf(fs::path const& file, char const* suffix) { return file.string() + suffix; }

fs::path freeName(fs::path const& file) {
    for (int number = 1;; ++number) {
        fs::path name = file.string() + ".broken-" + std::to_string(number);
        auto const isTaken = [&](char const* suffix) { return fs::exists(partOf(name, suffix)); };
        if (std::ranges::none_of(suffixes, isTaken)) return name;
    }
}

/// Does `move(part, new name, failure)` for every part that is there.
template <class Move> fs::path moveParts(fs::path const& file, Move const& move) {
    auto name = freeName(file);
    for (auto const* suffix : suffixes) {
        auto const part = partOf(file, suffix);
        if (!fs::exists(part)) continue;
        std::error_code failure;
        move(part, partOf(name, suffix), failure);
        if (failure) throw LedgerRefusal("the damaged store cannot be kept: " + failure.message());
    }
    return name;
}

} // namespace

fs::path setLedgerAside(fs::path const& file) {
    return moveParts(file, [](fs::path const& part, fs::path const& name, std::error_code& failure) {
        fs::rename(part, name, failure);
    });
}

fs::path copyLedger(fs::path const& file) {
    return moveParts(file, [](fs::path const& part, fs::path const& name, std::error_code& failure) {
        if (fs::copy_file(part, name, failure))
            fs::permissions(name, fs::perms::owner_read | fs::perms::owner_write, failure);
    });
}

} // namespace trelundo
