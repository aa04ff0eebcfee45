#pragma once

#include "tools/paywall/Failure.h"
#include "tools/paywall/script/Script.h"

#include <string>
#include <string_view>

namespace trelundo::paywall {

/// The text of an argument that the step's form guarantees.
inline std::string const& argument(Step const& step, std::size_t index) {
    return step.arguments.at(index).text;
}

/// Throws a Failure that names the step's place and words.
[[noreturn]] void fail(Step const& step, std::string const& reason);

/// One of two words; anything else fails the step.
bool choice(Step const& step, std::size_t index, std::string_view yes, std::string_view no);

/// Does what `action` does; its failure becomes the step's.
template <class Action> auto performed(Step const& step, Action action) {
    try {
        return action();
    } catch (Failure const& failure) {
        fail(step, failure.message);
    }
}

/// A value read from an argument; what cannot be read fails the step.
template <class Parse> auto parsed(Step const& step, std::size_t index, Parse parse) {
    return performed(step, [&] { return parse(argument(step, index)); });
}

} // namespace trelundo::paywall
