#include "tools/paywall/output/EventLog.h"

#include "tools/paywall/Failure.h"
#include "trelundo/platform/foundation/Clock.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace trelundo::paywall {

namespace {

Json const* findField(Json const& line, std::string const& path) {
    if (line.contains(path)) return &line.at(path);
    auto const dot = path.find('.');
    if (dot == std::string::npos || !line.contains(path.substr(0, dot))) return nullptr;
    auto const& inner = line.at(path.substr(0, dot));
    return inner.is_object() ? findField(inner, path.substr(dot + 1)) : nullptr;
}

std::string asText(Json const& value) { return value.is_string() ? value.get<std::string>() : toText(value); }

/// The elements with commas between, as lists stand on the command line.
std::string asListText(Json const& list) {
    std::string text;
    for (auto const& element : list) text += (text.empty() ? "" : ",") + asText(element);
    return text;
}

std::string withoutQuotes(std::string text) {
    std::erase(text, '"');
    return text;
}

bool isNumber(Json const& value, std::string const& text) {
    double number = 0;
    auto const* const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end && value.get<double>() == number;
}

/// Lists and objects may be written without their quotation marks, which a script line takes for its own.
bool reads(Json const& value, std::string const& text) {
    if (asText(value) == text) return true;
    if (value.is_number()) return isNumber(value, text);
    if (value.is_array() && asListText(value) == text) return true;
    return value.is_structured() && withoutQuotes(toText(value)) == withoutQuotes(text);
}

} // namespace

EventLog::EventLog(std::optional<std::string> const& path)
    : file_(path ? std::fopen(path->c_str(), "w") : stdout)
    , ownsFile_(path.has_value())
    , name_(path.value_or("standard output")) {
    if (!file_) failInput(*path + ": cannot be written: " + std::strerror(errno));
}

void EventLog::requireWritten() const {
    if (file_ && std::ferror(file_)) failInput(name_ + ": the log cannot be written");
}

EventLog::~EventLog() {
    if (ownsFile_)
        std::fclose(file_);
    else if (file_)
        std::fflush(file_);
}

void EventLog::write(std::string const& kind, Json const& fields) {
    Json line{{"t", rounded(Clock::current().now() - start_, 1e6)}, {"kind", kind}};
    line.update(fields);
    if (file_) {
        auto const text = toText(line) + "\n";
        std::fwrite(text.data(), 1, text.size(), file_);
        std::fflush(file_);
    }
    lines_.push_back(std::move(line));
    if (listener_) listener_(lines_.back());
}

bool EventLog::holds(std::string const& kind,
                     std::vector<std::pair<std::string, std::string>> const& fields) const {
    return std::ranges::any_of(lines_, [&](Json const& line) {
        return line.at("kind") == kind && std::ranges::all_of(fields, [&](auto const& field) {
                   auto const* value = findField(line, field.first);
                   return value && reads(*value, field.second);
               });
    });
}

} // namespace trelundo::paywall
