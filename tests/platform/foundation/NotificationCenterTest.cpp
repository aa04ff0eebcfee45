#include "trelundo/platform/foundation/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Listener : NSObject {
    void hear(Notification const& notification) { heard.push_back(notification.name); }
    std::vector<std::string> heard;
};

class NotificationCenterTest : public testing::Test {
protected:
    NotificationCenter::Block note(std::string const& mark) {
        return [this, mark](Notification const&) { order.push_back(mark); };
    }

    NotificationCenter center;
    std::vector<std::string> order;
};

TEST_F(NotificationCenterTest, DeliversByNameAndIdentityInOrderOfRegistration) {
    auto const sender = make<Listener>();
    auto const other = make<Listener>();
    center.addObserver("a", nullptr, note("a"));
    center.addObserver(std::nullopt, nullptr, note("all"));
    center.addObserver("a", sender, note("a from sender"));
    center.addObserver("a", nullptr, note("a"));
    center.post("a", sender);
    center.post("a", other);
    center.post("b");
    EXPECT_THAT(order, ElementsAre("a", "all", "a from sender", "a", "a", "all", "a", "all"));
}

TEST_F(NotificationCenterTest, HandsOverTheSenderAndItsInformation) {
    auto const sender = make<Listener>();
    Notification received;
    center.addObserver(std::nullopt, nullptr, [&](Notification const& heard) { received = heard; });
    center.post("c", sender, {{"count", 3}});
    EXPECT_EQ(received.object, sender);
    EXPECT_EQ(std::any_cast<int>(received.userInfo.at("count")), 3);
    center.post("b");
    EXPECT_EQ(received.object, nullptr);
}

TEST_F(NotificationCenterTest, TargetsAndSendersAreNotKept) {
    auto listener = make<Listener>();
    auto sender = make<Listener>();
    Weak<Listener> const weakListener = listener, weakSender = sender;
    center.addObserver(listener.get(), &Listener::hear, "a");
    center.addObserver("a", sender, note("from sender"));
    center.post("a");
    EXPECT_THAT(listener->heard, ElementsAre("a"));
    listener = sender = nullptr;
    EXPECT_TRUE(weakListener.isExpired() && weakSender.isExpired());
    auto const newcomer = make<Listener>(); // may live at the address of the sender
    center.post("a", newcomer);
    EXPECT_THAT(order, IsEmpty());
}

TEST_F(NotificationCenterTest, DroppingATokenDoesNotStopDeliveryRemovingItDoes) {
    auto const token = center.addObserver("a", nullptr, note("kept"));
    center.addObserver("a", nullptr, note("dropped"));
    center.removeObserver(token);
    center.removeObserver(token);
    center.removeObserver(Ref<NotificationCenter::Token>{});
    center.post("a");
    EXPECT_THAT(order, ElementsAre("dropped"));

    auto const listener = make<Listener>();
    center.addObserver(listener.get(), &Listener::hear, "a");
    center.addObserver(listener.get(), &Listener::hear, std::nullopt);
    center.post("a");
    EXPECT_THAT(listener->heard, ElementsAre("a", "a")) << "registered twice, delivered twice";
    center.removeObserver(*listener);
    center.post("a");
    EXPECT_EQ(listener->heard.size(), 2U);
}

TEST_F(NotificationCenterTest, ObserversMayChangeTheCentreDuringADelivery) {
    Ref<NotificationCenter::Token> second;
    auto const first = center.addObserver("a", nullptr, [&](Notification const&) {
        order.push_back("first");
        center.removeObserver(second);
        center.addObserver("a", nullptr, note("added"));
        center.post("b");
    });
    second = center.addObserver("a", nullptr, note("second"));
    center.addObserver("b", nullptr, note("nested"));
    center.post("a");
    EXPECT_THAT(order, ElementsAre("first", "nested")) << "removed ones are skipped, new ones wait";
    center.removeObserver(first);
    order.clear();
    center.post("a");
    EXPECT_THAT(order, ElementsAre("added"));
}

TEST_F(NotificationCenterTest, ABlockMayOwnWhatRemovesItself) {
    auto const listener = make<Listener>();
    std::shared_ptr<void> owned{nullptr, [&](void*) { center.removeObserver(*listener); }};
    auto const token = center.addObserver("a", nullptr, [owned = std::move(owned)](Notification const&) {});
    center.addObserver(listener.get(), &Listener::hear, "a");
    center.removeObserver(token); // what is owned ends here and enters the centre again
    center.post("a");
    EXPECT_THAT(listener->heard, IsEmpty());
}

} // namespace
} // namespace trelundo
