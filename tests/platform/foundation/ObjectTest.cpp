#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/NSAttributedString.h"
#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/foundation/Weak.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <thread>

namespace trelundo {

/// Counts how many of its kind are alive.
struct Counted : NSObject {
    Counted() { ++alive; }
    ~Counted() override { --alive; }
    static inline std::atomic<int> alive = 0;
};

template <class T> class Boxed : public NSObject {};

namespace {

struct Greeter {
    virtual ~Greeter() = default;
    virtual int greet() = 0;
};
struct Padding {
    virtual ~Padding() = default;
    int padding = 0;
};
struct GreetingObject : Counted, Padding, Greeter {
    int greet() override { return 7; }
};

TEST(RefTest, OwnsAndReleases) {
    {
        auto const first = make<Counted>();
        Ref<NSObject> const second = first;
        Ref<Counted> third;
        third = first;
        third = std::move(third);
        EXPECT_EQ(third, first);
        EXPECT_EQ(Counted::alive, 1);
        EXPECT_EQ(cast<Counted>(second), first);
        EXPECT_EQ(cast<NSError>(second), nullptr);
        EXPECT_EQ(cast<Counted>(Ref<NSObject>{}), nullptr);
        EXPECT_EQ(strong(*first), first);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(WeakTest, ReachesAProtocolUntilTheObjectIsGone) {
    auto object = make<GreetingObject>();
    Weak<Greeter> const greeter = object;
    Weak<GreetingObject> const same = object;
    EXPECT_EQ(greeter.lock()->greet(), 7);
    EXPECT_TRUE(greeter.refersToSame(same));
    EXPECT_TRUE(greeter.refersTo(*object));
    EXPECT_EQ(cast<NSObject>(greeter.lock()), object);
    {
        auto const kept = greeter.lock();
        object = nullptr;
        EXPECT_EQ(kept->greet(), 7) << "a lock keeps the object";
        EXPECT_FALSE(greeter.isExpired());
    }
    EXPECT_TRUE(greeter.isExpired());
    EXPECT_TRUE(greeter.refersToSame(same)) << "also after its end";
    EXPECT_EQ(Weak<Greeter>{}.lock(), nullptr);
}

TEST(WeakTest, AConstructorAndADestructorMayHandOutTheirObject) {
    struct Registering : Counted {
        Registering()
            : self(this) {
            auto const kept = strong(*this);
            EXPECT_EQ(self.lock(), kept);
        }
        ~Registering() override {
            auto const kept = strong(*this);
            EXPECT_EQ(self.lock(), nullptr) << "an object that goes is gone for weak references";
        }
        Weak<Registering> self;
    };
    Weak<Registering> const weak = make<Registering>();
    EXPECT_EQ(weak.lock(), nullptr);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(WeakTest, SurvivesAConstructorThatFails) {
    struct Failing : Counted {
        explicit Failing(Weak<Failing>& self) {
            self = Weak<Failing>{this};
            throw std::runtime_error{"no"};
        }
    };
    Weak<Failing> weak;
    EXPECT_THROW(make<Failing>(weak), std::runtime_error);
    EXPECT_EQ(weak.lock(), nullptr);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(WeakTest, LocksAndReleasesFromSeveralThreads) {
    for (int round = 0; round < 200; ++round) {
        auto object = make<GreetingObject>();
        Weak<Greeter> const weak = object;
        std::array<std::thread, 4> threads;
        for (auto& thread : threads)
            thread = std::thread{[weak, copy = object]() mutable {
                // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): copying is what is tested
                auto const other = weak;
                copy = nullptr;
                for (int i = 0; i < 50; ++i) {
                    auto const greeter = other.lock();
                    EXPECT_TRUE(!greeter || greeter->greet() == 7);
                }
            }};
        object = nullptr;
        for (auto& thread : threads) thread.join();
        EXPECT_EQ(weak.lock(), nullptr);
        EXPECT_EQ(Counted::alive, 0);
    }
}

TEST(NSObjectTest, NamesItsDynamicType) {
    Ref<NSObject> const object = make<Counted>();
    EXPECT_EQ(object->description(), "Counted");
    EXPECT_EQ(make<GreetingObject>()->className(), "GreetingObject");
    EXPECT_EQ(make<Boxed<Counted>>()->className(), "Boxed<trelundo::Counted>");
    EXPECT_TRUE(object->isEqual(*object));
    EXPECT_FALSE(object->isEqual(*make<Counted>()));
}

TEST(FatalErrorDeathTest, EndsTheProgramWithItsText) {
    EXPECT_DEATH(fatalError("init(coder:) has not been implemented"), "Fatal error: init.coder:.*ObjectTest");
    EXPECT_EQ(trappingInteger(-4.9975), -4);
    EXPECT_EQ(trappingInteger(-0x1p63), std::numeric_limits<std::int64_t>::min());
    EXPECT_DEATH(trappingInteger(std::nan("")), "NaN");
    EXPECT_DEATH(trappingInteger(-std::numeric_limits<double>::infinity()), "infinite");
    EXPECT_DEATH(trappingInteger(0x1p63), "out of range");
    EXPECT_EQ(trappingSum(2147483646, 1), 2147483647);
    EXPECT_DEATH(trappingSum(2147483647, 1), "overflow");
    EXPECT_EQ(trappingProduct(-50, 10), -500);
    EXPECT_DEATH(trappingProduct(std::int64_t{1} << 62, 2), "overflow");
}

TEST(NSErrorTest, DescribesItself) {
    auto const bare = make<NSError>("SKErrorDomain", 2);
    EXPECT_EQ(bare->localizedDescription(), "The operation couldn’t be completed. (SKErrorDomain error 2.)");
    auto const error =
        make<NSError>("D", -1, NSError::UserInfo{{"A", "b"}, {"NSLocalizedDescription", "Sorry"}});
    EXPECT_EQ(error->localizedDescription(), "Sorry");
    EXPECT_EQ(error->description(),
              "Error Domain=D Code=-1 \"Sorry\" UserInfo={A=b, NSLocalizedDescription=Sorry}");
    EXPECT_TRUE(bare->isEqual(*make<NSError>("SKErrorDomain", 2)));
    EXPECT_FALSE(bare->isEqual(*make<NSError>("SKErrorDomain", 2, NSError::UserInfo{{"A", "b"}})));
    EXPECT_FALSE(bare->isEqual(*make<NSError>("SKErrorDomain", 3)));
    EXPECT_FALSE(bare->isEqual(*make<Counted>()));
}

constexpr AttributeKey<double> kern{"NSKern"};
constexpr AttributeKey<std::string> font{"NSFont"};

TEST(NSAttributedStringTest, JoinsEqualNeighboursAndComparesRuns) {
    auto const style = TextAttributes{}.with(kern, 1.5);
    auto const bold = style.with(font, "bold");
    EXPECT_EQ(bold, TextAttributes{}.with(font, "bold").with(kern, 1.5)) << "the order does not count";
    EXPECT_EQ(bold.get(kern), 1.5);
    EXPECT_EQ(style.get(font), std::nullopt);
    EXPECT_NE(TextAttributes{}.with(kern, 1), TextAttributes{}.with(font, "1"));

    NSAttributedString text{"a", style};
    text.append("b", TextAttributes{}.set(kern, 1.5)).append("").append("c").append("d", bold);
    ASSERT_EQ(text.runs().size(), 3U);
    EXPECT_EQ(text.runs()[0].text, "ab");
    EXPECT_TRUE(text.runs()[1].attributes.empty()) << "appended plain text takes nothing over";
    EXPECT_NE(text, NSAttributedString{"abcd"});
    text.append(text);
    EXPECT_EQ(text.string(), "abcdabcd");
    EXPECT_TRUE((NSAttributedString{"", style}.empty()));
}

} // namespace
} // namespace trelundo
