#include "trelundo/platform/foundation/RunLoop.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/internal/MainThread.h"

#include <algorithm>
#include <vector>

namespace trelundo {

struct RunLoop::State {
    struct Observer {
        int id;
        int order;
        std::function<void()> run;
    };
    std::vector<Observer> observers; // by order, then by registration
    int nextId = 1;

    bool contains(int id) const { return std::ranges::find(observers, id, &Observer::id) != observers.end(); }
};

RunLoop::RunLoop()
    : state_(std::make_unique<State>()) {}
RunLoop::~RunLoop() = default;

RunLoop& RunLoop::main() {
    static auto& loop = *new RunLoop; // outlives every static object that registered with it
    return loop;
}

void RunLoop::runTurn() {
    requireMainThread("the main loop");
    DispatchQueue::main().runReady();
    // An observer may register or remove observers: those removed are skipped, new ones wait for the next
    // turn.
    auto const observers = state_->observers;
    for (auto const& observer : observers)
        if (state_->contains(observer.id)) observer.run();
}

void RunLoop::runUntilIdle(int limit) {
    for (int turn = 0; turn < limit; ++turn) {
        runTurn();
        if (!DispatchQueue::main().hasReady()) return;
    }
}

int RunLoop::addBeforeSleepObserver(int order, std::function<void()> observer) {
    auto& observers = state_->observers;
    int const id = state_->nextId++;
    auto const place = std::ranges::upper_bound(observers, order, {}, &State::Observer::order);
    observers.insert(place, {id, order, std::move(observer)});
    return id;
}

void RunLoop::removeBeforeSleepObserver(int id) {
    std::erase_if(state_->observers, [id](auto const& observer) { return observer.id == id; });
}

} // namespace trelundo
