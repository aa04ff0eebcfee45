#include "trelundo/platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <atomic>

namespace trelundo {

struct NotificationCenter::Observation {
    std::optional<Weak<NSObject>> target; // none: a block, kept until it is removed
    std::optional<std::string> name;
    std::optional<Weak<NSObject>> object; // weak, so that observing a sender does not keep it
    Block block;
    Ref<Token> token;
    std::atomic<bool> isRemoved = false;

    bool isOver() const { return isRemoved || (target && target->isExpired()); }
    bool matches(Notification const& notification) const {
        if (name && *name != notification.name) return false;
        return !object || (notification.object && object->refersTo(*notification.object));
    }
};

NotificationCenter& NotificationCenter::defaultCenter() {
    static auto& center = *new NotificationCenter; // outlives every static object that observes
    return center;
}

Ref<NotificationCenter::Token> NotificationCenter::addObserver(std::optional<std::string> name,
                                                               Ref<NSObject> object, Block block) {
    return add(std::nullopt, std::move(name), std::move(object), std::move(block));
}

Ref<NotificationCenter::Token> NotificationCenter::add(std::optional<Weak<NSObject>> target,
                                                       std::optional<std::string> name, Ref<NSObject> object,
                                                       Block block) {
    auto observation = std::make_shared<Observation>();
    observation->target = std::move(target);
    observation->name = std::move(name);
    if (object) observation->object = Weak<NSObject>{object};
    observation->block = std::move(block);
    observation->token = make<Token>();
    auto token = observation->token;
    std::lock_guard const lock{mutex_};
    observations_.push_back(std::move(observation));
    return token;
}

void NotificationCenter::removeObserver(Ref<Token> const& token) {
    if (token) remove([&](Observation const& observation) { return observation.token == token; });
}

void NotificationCenter::removeObserver(NSObject& target) {
    remove([&](Observation const& observation) {
        return observation.target && observation.target->refersTo(target);
    });
}

template <class Condition> void NotificationCenter::remove(Condition condition) {
    std::vector<std::shared_ptr<Observation>> removed; // dies after the lock: a block may own observers
    std::lock_guard const lock{mutex_};
    auto const rest = std::ranges::stable_partition(
        observations_, [&](auto const& observation) { return !condition(*observation); });
    for (auto const& observation : rest) observation->isRemoved = true;
    removed.assign(std::make_move_iterator(rest.begin()), std::make_move_iterator(rest.end()));
    observations_.erase(rest.begin(), rest.end());
}

void NotificationCenter::post(std::string const& name, Ref<NSObject> object,
                              std::map<std::string, std::any> userInfo) {
    remove([](Observation const& observation) { return observation.isOver(); });
    auto const observations = [&] {
        std::lock_guard const lock{mutex_};
        return observations_;
    }();
    Notification const notification{name, std::move(object), std::move(userInfo)};
    for (auto const& observation : observations)
        if (!observation->isRemoved && observation->matches(notification) && observation->block)
            observation->block(notification);
}

} // namespace trelundo
