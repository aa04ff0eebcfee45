#include "trelundo/platform/foundation/FileContents.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

Error failure(fs::path const& file, char const* what, std::error_code reason) {
    auto const told = reason ? reason.message() : "unknown reason";
    return {file.string() + ": cannot be " + what + " (" + told + ")"};
}

/// Of the call that failed last.
std::error_code lastError() { return {errno, std::generic_category()}; }

/// What went wrong, or nothing.
std::error_code write(fs::path const& file, std::string_view bytes) {
    errno = 0;
    std::ofstream stream{file, std::ios::binary | std::ios::trunc};
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (stream) return {};
    auto const reason = lastError();
    return reason ? reason : std::make_error_code(std::errc::io_error);
}

} // namespace

Result<std::string> readFile(fs::path const& file, std::size_t megabytes) {
    std::error_code unknown;
    auto const status = fs::status(file, unknown);
    if (status.type() == fs::file_type::not_found) return Error{file.string() + ": no such file"};
    if (status.type() != fs::file_type::unknown && !fs::is_regular_file(status))
        return Error{file.string() + ": cannot be read (not a file)"};
    errno = 0;
    std::ifstream stream{file, std::ios::binary};
    std::string bytes(megabytes * 1024 * 1024 + 1, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.is_open() || stream.bad()) return failure(file, "read", lastError());
    auto const count = static_cast<std::size_t>(stream.gcount());
    if (count == bytes.size())
        return Error{file.string() + ": larger than " + std::to_string(megabytes) + " MB"};
    bytes.resize(count);
    bytes.shrink_to_fit();
    return bytes;
}

Result<void> writeFile(fs::path const& file, std::string_view bytes) {
    std::error_code reason;
    auto const status = fs::status(file, reason);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        if (auto const problem = write(file, bytes)) return failure(file, "written", problem);
        return {};
    }
    // Behind a link it is the file that changes, not the link.
    auto const target = fs::exists(status) ? fs::canonical(file, reason) : file;
    auto const fresh = fs::path{target.string() + ".new"};
    reason = write(fresh, bytes);
    if (!reason && fs::exists(status)) fs::permissions(fresh, status.permissions(), reason);
    if (!reason) fs::rename(fresh, target, reason);
    if (!reason) return {};
    std::error_code ignored;
    fs::remove(fresh, ignored);
    return failure(file, "written", reason);
}

} // namespace trelundo
