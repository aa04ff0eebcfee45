#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trelundo::paywall {

/// One line of a script, taken apart: words as they stand, quoted ones without their quotes.
struct Step {
    struct Word {
        std::string text;
        bool isQuoted = false; // wholly in quotes: a visible text rather than a name
    };
    std::string place; // "file:line", for messages
    std::string command;
    std::vector<Word> arguments;
};

/// Reads a script: one step a line, `#` starts a comment outside quotes. An unknown step, a wrong number of
/// arguments or an unterminated quote throws a Failure that names file and line; nothing has run by then.
std::vector<Step> parseScript(std::string_view text, std::string const& fileName);

} // namespace trelundo::paywall
