#include "trelundo/platform/storekit/sandbox/internal/WriteAheadLog.h"

#include "trelundo/platform/storekit/sandbox/internal/BigEndian.h"

namespace trelundo {

namespace {

// Offsets in bytes. The log is a header and frames, each of which is a header and a page.
constexpr std::uint32_t magic = 0x377f0682; // its last bit says how the checksum reads its words
constexpr std::uint32_t formatVersion = 3'007'000;
constexpr std::size_t headerSize = 32, versionAt = 4, pageSizeAt = 8, saltsAt = 16, headerSumAt = 24;
constexpr std::size_t frameHeaderSize = 24, pageCountAt = 4, frameSaltsAt = 8, frameSumAt = 16;
constexpr std::size_t saltsSize = 8;

/// The running checksum of a log.
struct Checksum {
    bool isBigEndian = false;
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    std::uint32_t word(std::string_view bytes, std::size_t at) const {
        auto const value = bigEndian32(bytes, at);
        return isBigEndian ? value : __builtin_bswap32(value);
    }
    void add(std::string_view bytes) {
        for (std::size_t at = 0; at < bytes.size(); at += 8) {
            first += word(bytes, at) + second;
            second += word(bytes, at + 4) + first;
        }
    }
    bool isAt(std::string_view bytes, std::size_t at) const {
        return first == bigEndian32(bytes, at) && second == bigEndian32(bytes, at + 4);
    }
};

struct Reader {
    std::string_view bytes;
    std::size_t pageSize;
    Checksum checksum = {.isBigEndian = (bigEndian32(bytes, 0) & 1) != 0};

    std::size_t frameSize() const { return frameHeaderSize + pageSize; }
    std::size_t frameCount() const { return (bytes.size() - headerSize) / frameSize(); }
    std::string_view frame(std::size_t index) const {
        return bytes.substr(headerSize + index * frameSize(), frameSize());
    }
    /// Whether a frame was written after the log last began anew.
    bool isCurrent(std::string_view frame) const {
        return frame.substr(frameSaltsAt, saltsSize) == bytes.substr(saltsAt, saltsSize);
    }

    bool takeHeader() {
        checksum.add(bytes.substr(0, headerSumAt));
        return isWriteAheadLog(bytes) && bigEndian32(bytes, versionAt) == formatVersion &&
               bigEndian32(bytes, pageSizeAt) == pageSize && checksum.isAt(bytes, headerSumAt);
    }
    bool takeFrame(std::string_view frame) {
        checksum.add(frame.substr(0, frameSaltsAt));
        checksum.add(frame.substr(frameHeaderSize));
        return isCurrent(frame) && bigEndian32(frame, 0) != 0 && checksum.isAt(frame, frameSumAt);
    }
};

} // namespace

bool isWriteAheadLog(std::string_view bytes) {
    return bytes.size() >= headerSize && (bigEndian32(bytes, 0) & ~1U) == magic;
}

WriteAheadLog readWriteAheadLog(std::string_view bytes, std::size_t pageSize) {
    WriteAheadLog log;
    if (bytes.size() <= headerSize) return log;
    Reader reader{bytes, pageSize};
    log.hasLostPages = !reader.takeHeader();
    if (log.hasLostPages) return log;

    std::vector<WriteAheadLog::Page> uncommitted;
    std::size_t index = 0;
    for (; index < reader.frameCount(); ++index) {
        auto const frame = reader.frame(index);
        if (!reader.takeFrame(frame)) break;
        uncommitted.push_back({bigEndian32(frame, 0), frame.substr(frameHeaderSize)});
        auto const pageCount = bigEndian32(frame, pageCountAt);
        if (pageCount == 0) continue;
        log.pageCount = pageCount;
        log.pages.insert(log.pages.end(), uncommitted.begin(), uncommitted.end());
        uncommitted.clear();
    }
    // A frame that a dying process has left half written is the last of its log; one that is damaged is not.
    for (++index; index < reader.frameCount(); ++index)
        log.hasLostPages = log.hasLostPages || reader.isCurrent(reader.frame(index));
    return log;
}

} // namespace trelundo
