#include "trelundo/platform/coreanimation/CADisplayLink.h"

#include "trelundo/platform/foundation/internal/Context.h"

#include <map>
#include <set>
#include <vector>

namespace trelundo {

namespace {

int last = 0;

/// Those of one shell fire with its frames. Each is also known by its id alone, so that it can be removed
/// from anywhere.
struct Links {
    std::map<int, std::function<void(double)>> callbacks;

    Links() { all().insert(this); }
    ~Links() { all().erase(this); }
    static std::set<Links*>& all() {
        static auto* const links = new std::set<Links*>; // outlives what is of static lifetime
        return *links;
    }
};

Links& links() { return Context::current().part<Links>(); }

} // namespace

int CADisplayLink::add(std::function<void(double timestamp)> callback) {
    links().callbacks.emplace(++last, std::move(callback));
    return last;
}

void CADisplayLink::remove(int id) {
    for (auto* const links : Links::all()) links->callbacks.erase(id);
}

void CADisplayLink::fire(double timestamp) {
    std::vector<int> ids;
    auto const& callbacks = links().callbacks;
    for (auto const& [id, callback] : callbacks) ids.push_back(id);
    for (auto const id : ids) {
        auto const found = callbacks.find(id);
        if (found == callbacks.end()) continue;
        auto const callback = found->second; // it may remove itself while it runs
        callback(timestamp);
    }
}

bool CADisplayLink::hasAny() { return !links().callbacks.empty(); }

} // namespace trelundo
