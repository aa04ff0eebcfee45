#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"

#include <SQLiteCpp/Exception.h>
#include <new>
#include <sqlite3.h>
#include <string>

namespace trelundo {

namespace {

std::string reasonOf(int code, char const* message) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "the store is in use by another process";
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return "the store cannot be written";
    case SQLITE_CANTOPEN:
        return "the store cannot be opened";
    case SQLITE_FULL:
        return "the disk is full";
    case SQLITE_IOERR:
        return "the disk cannot be read or written";
    case SQLITE_NOMEM:
        return "there is no memory left";
    default:
        return message;
    }
}

std::string reasonOf(std::exception const& failure) {
    if (auto const* database = dynamic_cast<SQLite::Exception const*>(&failure))
        return reasonOf(database->getErrorCode(), failure.what());
    if (dynamic_cast<std::bad_alloc const*>(&failure)) return reasonOf(SQLITE_NOMEM, "");
    return failure.what();
}

} // namespace

Error ledgerError(std::filesystem::path const& file, std::exception const& failure) {
    auto const name = file.empty() ? std::string{"the store in memory"} : file.string();
    return {name + ": " + reasonOf(failure)};
}

} // namespace trelundo
