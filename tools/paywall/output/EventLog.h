#pragma once

#include "tools/paywall/output/Json.h"

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trelundo::paywall {

/// Everything that a host would notice, one JSON object a line with `t` (seconds since the start) and `kind`,
/// written at the moment it happens and kept for expectations.
class EventLog {
public:
    /// Written nowhere.
    EventLog() = default;
    /// Writes to `path`, or to standard output when absent. A file that cannot be written throws a Failure.
    explicit EventLog(std::optional<std::string> const& path);
    ~EventLog();
    EventLog(EventLog const&) = delete;
    EventLog& operator=(EventLog const&) = delete;

    /// Counts `t` from `start` of Clock::current(); until then from 0, where virtual time starts.
    void setStart(double start) { start_ = start; }
    /// `fields` follow `t` and `kind` in the line.
    void write(std::string const& kind, Json const& fields = Json::object());

    /// Throws a Failure when a line was lost (a full disk); within write() nothing may be thrown.
    void requireWritten() const;
    /// Whether the log so far holds a line of `kind` in which every named field, shown as text, equals the
    /// value. A name may be a path ("parameters.Source"); texts compare without their quotes, null as "null",
    /// a list also as its elements with commas between.
    bool holds(std::string const& kind, std::vector<std::pair<std::string, std::string>> const& fields) const;

    /// Called after each line (a window's test waits for lines).
    void setListener(std::function<void(Json const&)> listener) { listener_ = std::move(listener); }

private:
    std::FILE* file_ = nullptr;
    bool ownsFile_ = false;
    std::string name_;
    double start_ = 0;
    std::vector<Json> lines_;
    std::function<void(Json const&)> listener_;
};

} // namespace trelundo::paywall
