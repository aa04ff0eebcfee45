#include "tools/paywall/output/MakeFolder.h"

#include "tools/paywall/Failure.h"

namespace trelundo::paywall {

void makeFolder(std::filesystem::path const& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) failInput(folder.string() + ": cannot be made: " + error.message());
}

} // namespace trelundo::paywall
