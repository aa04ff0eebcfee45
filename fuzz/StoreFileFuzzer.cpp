#include "fuzz/Pieces.h"
#include "tests/support/Files.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <algorithm>
#include <cstdlib>

using namespace trelundo;

namespace {

bool isKept(test::TemporaryFolder const& folder, std::string_view bytes) {
    return std::ranges::any_of(std::filesystem::directory_iterator(folder.path()),
                               [&](auto const& each) { return test::readText(each.path()) == bytes; });
}

} // namespace

/// A store file is read, or refused and left as it is, or set aside as it is.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    setWarningSink([](auto) {});
    test::TemporaryFolder const folder;
    auto const bytes = fuzz::textOf(data, size);
    auto const file = test::writeText(folder / "store", std::string(bytes));
    {
        auto const ledger = SandboxLedger::open(file);
        if (!ledger) {
            if (ledger.error().message.empty() || test::readText(file) != bytes) std::abort();
            return 0;
        }
        if ((*ledger)->records()) return 0;
    }
    if (!isKept(folder, bytes)) std::abort();
    return 0;
}
