#include "tools/paywall/Failure.h"
#include "tools/paywall/commands/CommandLine.h"
#include "tools/paywall/commands/Commands.h"
#include "tools/paywall/output/Console.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    using namespace trelundo::paywall;
    try {
        auto const options = parseCommandLine(argc, argv);
        auto const status = options ? runCommand(*options, argc, argv) : statusOk;
        if (std::fflush(stdout) != 0 || std::ferror(stdout)) failInput("standard output cannot be written");
        return status;
    } catch (Failure const& failure) {
        complain(failure.message);
        return failure.status;
    } catch (std::exception const& error) {
        complain(error.what());
        return statusFailure;
    }
}
