#include "trelundo/platform/coreanimation/CADisplayLink.h"

#include <map>
#include <vector>

namespace trelundo {

namespace {

struct Links {
    std::map<int, std::function<void(double)>> callbacks;
    int last = 0;
};

Links& links() {
    static auto* const all = new Links; // outlives objects of static lifetime that remove themselves
    return *all;
}

} // namespace

int CADisplayLink::add(std::function<void(double timestamp)> callback) {
    links().callbacks.emplace(++links().last, std::move(callback));
    return links().last;
}

void CADisplayLink::remove(int id) { links().callbacks.erase(id); }

void CADisplayLink::fire(double timestamp) {
    std::vector<int> ids;
    for (auto const& [id, callback] : links().callbacks) ids.push_back(id);
    for (auto const id : ids) {
        auto const found = links().callbacks.find(id);
        if (found == links().callbacks.end()) continue;
        auto const callback = found->second; // it may remove itself while it runs
        callback(timestamp);
    }
}

bool CADisplayLink::hasAny() { return !links().callbacks.empty(); }

} // namespace trelundo
