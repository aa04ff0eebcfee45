#pragma once

#include <filesystem>
#include <string>

namespace trelundo::test {

/// The root of the source tree, for goldens, scripts and samples.
std::filesystem::path sourceFolder();

/// The bytes of a file; none when it cannot be read.
std::string readText(std::filesystem::path const& path);

/// Writes a file, with the folders on its way, and gives its path.
std::filesystem::path writeText(std::filesystem::path const& path, std::string const& text);

/// A folder of the test's own, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path operator/(std::string const& name) const { return path_ / name; }
    std::filesystem::path const& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace trelundo::test
