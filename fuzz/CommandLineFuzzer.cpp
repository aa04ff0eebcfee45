#include "fuzz/Fuzzer.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/commands/CommandLine.h"

#include <iostream>

using namespace trelundo;

/// One argument a line. The command line is read, answered with help, or refused with a reason.
void fuzz::run(std::string_view input) {
    std::cout.setstate(std::ios::failbit); // help
    auto const arguments = pieces(input);
    std::vector<char const*> argv{"paywall"};
    for (auto const& argument : arguments) argv.push_back(argument.c_str());
    try {
        auto const options = paywall::parseCommandLine(static_cast<int>(argv.size()), argv.data());
        require(!options || !options->command.empty());
    } catch (paywall::Failure const& failure) {
        require(!failure.message.empty() && failure.status != paywall::statusOk);
    }
}
