#pragma once

#include "trelundo/platform/foundation/Weak.h"

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace trelundo {

struct Notification {
    std::string name;
    Ref<NSObject> object;                          // null: none
    std::map<std::string, std::any> userInfo = {}; // empty: none
};

/// Delivers notifications to observers synchronously on the posting thread, in the order of their
/// registration. An observer removed during a delivery is not called any more; one added waits for the next.
class NotificationCenter {
public:
    using Block = std::function<void(Notification const&)>;

    /// Keeps an observation alive in the centre until it is removed; dropping it does not stop delivery.
    class Token : public NSObject {};

    static NotificationCenter& defaultCenter();

    /// `name` none matches every name, `object` null every sender; an object matches by identity and is not
    /// kept alive.
    Ref<Token> addObserver(std::optional<std::string> name, Ref<NSObject> object, Block block);
    void removeObserver(Ref<Token> const& token);

    /// Target form: the target is held weakly and need not be removed.
    template <class Target>
    void addObserver(Target* target, void (Target::*action)(Notification const&),
                     std::optional<std::string> name, Ref<NSObject> object = nullptr) {
        Weak<Target> const weak{target};
        add(Weak<NSObject>{target}, std::move(name), std::move(object),
            [weak, action](Notification const& notification) {
                if (auto strongTarget = weak.lock()) ((*strongTarget).*action)(notification);
            });
    }
    void removeObserver(NSObject& target);

    /// Runs every matching observer before it returns.
    void post(std::string const& name, Ref<NSObject> object = nullptr,
              std::map<std::string, std::any> userInfo = {});

private:
    struct Observation;
    Ref<Token> add(std::optional<Weak<NSObject>> target, std::optional<std::string> name,
                   Ref<NSObject> object, Block block);
    template <class Condition> void remove(Condition condition);

    std::mutex mutex_;
    std::vector<std::shared_ptr<Observation>> observations_; // in the order of registration
};

} // namespace trelundo
