#include "fuzz/Fuzzer.h"
#include "tests/support/Files.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <algorithm>

using namespace trelundo;

/// A store file is read, or refused and left as it is, or set aside as it is.
void fuzz::run(std::string_view input) {
    setWarningSink([](auto) {});
    test::TemporaryFolder const folder;
    auto const file = test::writeText(folder / "store", std::string(input));
    {
        auto const ledger = SandboxLedger::open(file);
        if (!ledger) return require(!ledger.error().message.empty() && test::readText(file) == input);
        if ((*ledger)->records()) return;
    }
    require(std::ranges::any_of(std::filesystem::directory_iterator(folder.path()),
                                [&](auto const& each) { return test::readText(each) == input; }));
}
