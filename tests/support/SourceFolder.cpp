#include "tests/support/SourceFolder.h"

namespace trelundo::test {

std::filesystem::path sourceFolder() { return TRELUNDO_SOURCE_DIR; }

} // namespace trelundo::test
