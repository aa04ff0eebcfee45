#include "tools/paywall/script/StepArguments.h"

#include <fmt/core.h>

namespace trelundo::paywall {

void fail(Step const& step, std::string const& reason) {
    std::string words = step.command;
    for (auto const& word : step.arguments)
        words += word.isQuoted ? " \"" + word.text + "\"" : " " + word.text;
    failInput(fmt::format("{}: {}: {}", step.place, words, reason));
}

bool choice(Step const& step, std::size_t index, std::string_view yes, std::string_view no) {
    if (argument(step, index) == yes) return true;
    if (argument(step, index) != no) fail(step, fmt::format("neither {} nor {}", yes, no));
    return false;
}

} // namespace trelundo::paywall
