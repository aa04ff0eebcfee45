#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace trelundo {

/// What the database library will take from a log that was left beside a database: its documented format,
/// read without changing anything.
struct WriteAheadLog {
    struct Page {
        std::size_t number = 1;
        std::string_view content; // lies in the bytes that were read
    };
    std::vector<Page> pages = {}; // committed ones; a later one of a number replaces an earlier one
    std::size_t pageCount = 0;    // of the database after the last commit; 0: there is none
    bool hasLostPages = false;    // behind damage that the library will not read past
};

/// Whether `bytes` begin as a log does.
bool isWriteAheadLog(std::string_view bytes);

/// `pageSize` is the database's, in bytes.
WriteAheadLog readWriteAheadLog(std::string_view bytes, std::size_t pageSize);

} // namespace trelundo
