#include "tools/paywall/system/Environment.h"

#include <cstdlib>
#include <unistd.h>

namespace trelundo::paywall {

namespace fs = std::filesystem;

fs::path programFile() { return "/proc/self/exe"; }

fs::path userDataFolder() {
    auto const* data = std::getenv("XDG_DATA_HOME");
    if (data && *data) return data;
    auto const* home = std::getenv("HOME");
    return home ? fs::path{home} / ".local/share" : fs::temp_directory_path();
}

bool isStandardOutputTerminal() { return isatty(STDOUT_FILENO) == 1; }

} // namespace trelundo::paywall
