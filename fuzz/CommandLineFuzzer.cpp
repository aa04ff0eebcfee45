#include "fuzz/Pieces.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/commands/CommandLine.h"

#include <cstdlib>
#include <iostream>

using namespace trelundo;

/// One argument a line. The command line is read, answered with help, or refused with a reason.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::cout.setstate(std::ios::failbit); // help
    auto const arguments = fuzz::pieces(fuzz::textOf(data, size));
    std::vector<char const*> argv{"paywall"};
    for (auto const& argument : arguments) argv.push_back(argument.c_str());
    try {
        auto const options = paywall::parseCommandLine(static_cast<int>(argv.size()), argv.data());
        if (options && options->command.empty()) std::abort();
    } catch (paywall::Failure const& failure) {
        if (failure.message.empty() || failure.status == paywall::statusOk) std::abort();
    }
    return 0;
}
