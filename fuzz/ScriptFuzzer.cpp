#include "fuzz/Fuzzer.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/script/Script.h"

using namespace trelundo;

/// A script is read whole, or refused with file and line.
void fuzz::run(std::string_view input) {
    try {
        for (auto const& step : paywall::parseScript(input, "file"))
            require(!step.command.empty() && step.place.starts_with("file:"));
    } catch (paywall::Failure const& failure) {
        require(failure.message.starts_with("file:") && failure.status != paywall::statusOk);
    }
}
