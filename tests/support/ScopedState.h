#pragma once

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/Log.h"

#include <string>
#include <utility>
#include <vector>

namespace trelundo::test {

/// Sets the user's languages until the end of a scope.
class ScopedLanguages {
public:
    explicit ScopedLanguages(std::vector<std::string> languages) {
        Locale::setPreferredLanguages(std::move(languages));
    }
    ~ScopedLanguages() { Locale::setPreferredLanguages(previous_); }
    ScopedLanguages(ScopedLanguages const&) = delete;
    ScopedLanguages& operator=(ScopedLanguages const&) = delete;

private:
    std::vector<std::string> previous_ = Locale::preferredLanguages();
};

/// Collects the warnings of a scope.
class RecordedWarnings {
public:
    RecordedWarnings() {
        setWarningSink([this](std::string_view text) { lines.emplace_back(text); });
    }
    ~RecordedWarnings() { setWarningSink(nullptr); }
    RecordedWarnings(RecordedWarnings const&) = delete;
    RecordedWarnings& operator=(RecordedWarnings const&) = delete;

    std::vector<std::string> lines;
};

/// Lets the process run on virtual time until the end of a scope.
class ScopedVirtualClock {
public:
    explicit ScopedVirtualClock(double referenceDate = 0)
        : clock(referenceDate) {
        Clock::setCurrent(&clock);
    }
    ~ScopedVirtualClock() { Clock::setCurrent(nullptr); }
    ScopedVirtualClock(ScopedVirtualClock const&) = delete;
    ScopedVirtualClock& operator=(ScopedVirtualClock const&) = delete;

    VirtualClock clock;
};

} // namespace trelundo::test
