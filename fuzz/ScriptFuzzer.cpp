#include "fuzz/Pieces.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/script/Script.h"

#include <cstdlib>

using namespace trelundo;

/// A script is read whole, or refused with file and line.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    try {
        for (auto const& step : paywall::parseScript(fuzz::textOf(data, size), "file"))
            if (step.command.empty() || !step.place.starts_with("file:")) std::abort();
    } catch (paywall::Failure const& failure) {
        if (!failure.message.starts_with("file:") || failure.status == paywall::statusOk) std::abort();
    }
    return 0;
}
