#include "tests/support/Files.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace trelundo::test {

std::filesystem::path sourceFolder() { return TRELUNDO_SOURCE_DIR; }

std::string readText(std::filesystem::path const& path) {
    std::ifstream const file{path, std::ios::binary};
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::filesystem::path writeText(std::filesystem::path const& path, std::string const& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream{path, std::ios::binary} << text;
    return path;
}

TemporaryFolder::TemporaryFolder() {
    auto name = (std::filesystem::temp_directory_path() / "trelundo-XXXXXX").string();
    if (!mkdtemp(name.data())) std::abort();
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace trelundo::test
