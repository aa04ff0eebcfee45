#include "tools/paywall/EventLog.h"

#include "platform/foundation/Clock.h"
#include "tools/paywall/Failure.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace trelundo::paywall {

namespace {

/// Whole microseconds, so that virtual times print short and equal everywhere.
double logTime() { return std::round(Clock::current().now() * 1e6) / 1e6; }

Json const* findField(Json const& line, std::string const& path) {
    if (line.contains(path)) return &line.at(path);
    auto const dot = path.find('.');
    if (dot == std::string::npos || !line.contains(path.substr(0, dot))) return nullptr;
    auto const& inner = line.at(path.substr(0, dot));
    return inner.is_object() ? findField(inner, path.substr(dot + 1)) : nullptr;
}

std::string asText(Json const& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

/// The elements with commas between, as lists stand on the command line.
std::string asListText(Json const& list) {
    std::string text;
    for (auto const& element : list) text += (text.empty() ? "" : ",") + asText(element);
    return text;
}

bool reads(Json const& value, std::string const& text) {
    return asText(value) == text || (value.is_array() && asListText(value) == text);
}

} // namespace

EventLog::EventLog(std::optional<std::string> const& path)
    : file_(path ? std::fopen(path->c_str(), "w") : stdout)
    , ownsFile_(path.has_value()) {
    if (!file_) failInput(*path + ": cannot be written: " + std::strerror(errno));
}

EventLog::~EventLog() {
    if (ownsFile_)
        std::fclose(file_);
    else
        std::fflush(file_);
}

void EventLog::write(std::string const& kind, Json const& fields) {
    Json line{{"t", logTime()}, {"kind", kind}};
    line.update(fields);
    auto const text = line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    std::fwrite(text.data(), 1, text.size(), file_);
    std::fflush(file_);
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
