#include "trelundo/platform/storekit/sandbox/internal/LedgerImage.h"

#include "trelundo/platform/storekit/sandbox/internal/BigEndian.h"
#include "trelundo/platform/storekit/sandbox/internal/DiskFile.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerSettings.h"
#include "trelundo/platform/storekit/sandbox/internal/WriteAheadLog.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <sqlite3.h>
#include <vector>

namespace trelundo {

namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

// The database's header, offsets in bytes.
constexpr auto magic = "SQLite format 3\0"sv;
constexpr std::size_t headerSize = 100, pageSizeAt = 16, formatsAt = 18, versionAt = 60, applicationAt = 68;
constexpr std::size_t largestPage = 65536; // which the header writes as 1

// A rollback journal's header.
constexpr auto journalMagic = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7"sv;
constexpr std::size_t journalHeaderSize = 28, formerPageCountAt = 16;

constexpr std::size_t largestFile = 1U << 30U; // bytes

std::size_t pageSizeOf(std::string_view header) {
    auto const written = bigEndian32(header, pageSizeAt) >> 16U;
    return written == 1 ? largestPage : written;
}

bool isDatabase(std::string_view bytes) { return bytes.size() >= headerSize && bytes.starts_with(magic); }

/// Whether a journal says that a change must be undone.
bool isHotJournal(std::string_view journal) {
    return journal.size() >= journalHeaderSize && journal.starts_with(journalMagic);
}

std::vector<std::string> schemaOf(SQLite::Database& database) {
    SQLite::Statement query{database,
                            "SELECT type, name, tbl_name, sql FROM sqlite_schema ORDER BY type, name"};
    std::vector<std::string> objects;
    while (query.executeStep()) {
        std::string object;
        for (int i = 0; i < query.getColumnCount(); ++i) object += query.getColumn(i).getString() + '\n';
        objects.push_back(std::move(object));
    }
    return objects;
}

bool meansDamage(SQLite::Exception const& failure) {
    return failure.getErrorCode() == SQLITE_NOTADB || failure.getErrorCode() == SQLITE_CORRUPT;
}

std::string readPart(fs::path const& file, char const* suffix) {
    return readDiskFile(file.string() + suffix, largestFile);
}

} // namespace

LedgerImage::LedgerImage(fs::path const& file, LedgerForm const& form)
    : form_(form)
    , bytes_(readPart(file, "")) {
    if (!bytes_.empty()) applyJournal(readPart(file, "-journal"));
    auto const log = readPart(file, "-wal");
    if (bytes_.empty()) {
        isTornFromLog_ = isWriteAheadLog(log);
    } else if (isDatabase(bytes_)) {
        applyLog(log);
    }
}

LedgerImage::~LedgerImage() = default;

/// Of a ledger's own changes two need a journal: its creation, before which there was nothing, and the first
/// use of a log, which leaves a mark that the image does not look at.
void LedgerImage::applyJournal(std::string_view journal) {
    if (!isHotJournal(journal)) return;
    if (bigEndian32(journal, formerPageCountAt) == 0) {
        bytes_.clear();
    } else if (!hasOwnIdentifier()) {
        throw LedgerRefusal("another program has left a change unfinished, which it must undo first");
    }
}

void LedgerImage::applyLog(std::string_view log) {
    auto const pageSize = pageSizeOf(bytes_);
    if (pageSize < headerSize) return; // damage that the check will find
    auto const read = readWriteAheadLog(log, pageSize);
    hasLostChanges_ = read.hasLostPages;
    if (read.pageCount > largestFile / pageSize) throw LedgerRefusal("the store is larger than 1 GB");
    if (read.pageCount > 0) bytes_.resize(read.pageCount * pageSize);
    for (auto const& page : read.pages)
        if (page.number <= read.pageCount)
            std::ranges::copy(page.content,
                              bytes_.begin() + static_cast<std::ptrdiff_t>((page.number - 1) * pageSize));
    // A database in memory has no log: reader and writer version 1 say so.
    bytes_[formatsAt] = bytes_[formatsAt + 1] = '\1';
}

bool LedgerImage::shows(std::string_view bytes) const {
    std::string_view const own = bytes_;
    return bytes.size() == own.size() && bytes.substr(0, formatsAt) == own.substr(0, formatsAt) &&
           bytes.substr(formatsAt + 2) == own.substr(formatsAt + 2);
}

SQLite::Database& LedgerImage::database() {
    if (database_) return *database_;
    auto opened =
        std::make_unique<SQLite::Database>(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    auto* const bytes = reinterpret_cast<unsigned char*>(bytes_.data());
    auto const size = static_cast<sqlite3_int64>(bytes_.size());
    if (int const status =
            sqlite3_deserialize(opened->getHandle(), "main", bytes, size, size, SQLITE_DESERIALIZE_READONLY);
        status != SQLITE_OK)
        throw SQLite::Exception(opened->getHandle(), status);
    applyDefensiveSettings(*opened);
    database_ = std::move(opened);
    return *database_;
}

bool LedgerImage::hasOwnIdentifier() const {
    return isDatabase(bytes_) && bigEndian32(bytes_, applicationAt) == form_.applicationIdentifier;
}

void LedgerImage::requireOwnHeader() const {
    if (!isDatabase(bytes_)) throw LedgerRefusal("not a store");
    if (!hasOwnIdentifier()) throw LedgerRefusal("the file belongs to another application");
    auto const version = bigEndian32(bytes_, versionAt);
    if (version != form_.version)
        throw LedgerRefusal("the store has schema version " + std::to_string(version) + ", not " +
                            std::to_string(form_.version));
}

void LedgerImage::requireSchema() {
    SQLite::Database model{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
    model.exec(form_.schema);
    if (schemaOf(database()) != schemaOf(model)) throw LedgerRefusal("the store has another schema");
}

bool LedgerImage::isBroken() {
    if (isTornFromLog_) return true;
    requireOwnHeader();
    try {
        requireSchema();
        return database().execAndGet("PRAGMA quick_check(1)").getString() != "ok";
    } catch (SQLite::Exception const& failure) {
        if (!meansDamage(failure)) throw;
        return true;
    }
}

} // namespace trelundo
