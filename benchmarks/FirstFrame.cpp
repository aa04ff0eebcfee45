#include "benchmarks/StagedScreen.h"

#include <fstream>
#include <iostream>

using namespace trelundo;

namespace {

/// KiB of memory that this process alone takes, and its part of what it shares; 0 where the system does not
/// tell.
long proportionalSize() {
    std::ifstream rollup{"/proc/self/smaps_rollup"};
    std::string word;
    long size = 0;
    while (rollup >> word)
        if (word == "Pss:" && rollup >> size) return size;
    return 0;
}

} // namespace

/// Draws the first whole frame of the measured screen, tells when it is done and what memory it took.
int main() {
    bench::StagedScreen screen{bench::measuredScreen};
    screen.shell().render();
    std::cout << "drawn\n" << std::flush << proportionalSize() << '\n';
}
