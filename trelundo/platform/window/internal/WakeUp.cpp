#include "trelundo/platform/window/internal/WakeUp.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/MainThread.h"

#include <utility>

namespace trelundo {

std::shared_ptr<WakeUp> WakeUp::make(std::function<void()> callback) {
    auto wakeUp = std::make_shared<WakeUp>();
    if (!callback) return wakeUp;
    wakeUp->callback_ = std::move(callback);
    wakeUp->id_ = DispatchQueue::main().addWakeUp([wakeUp] { wakeUp->ask(); });
    return wakeUp;
}

void WakeUp::ask() {
    if (isMainThread() && isInFrame_) return;
    if (isAsked_.exchange(true)) return;
    std::lock_guard const lock{mutex_};
    if (callback_) callback_();
}

void WakeUp::end() {
    DispatchQueue::main().removeWakeUp(id_);
    std::lock_guard const lock{mutex_};
    callback_ = nullptr;
}

WakeUp::Frame::Frame(WakeUp& wakeUp)
    : wakeUp_(wakeUp)
    , wasInFrame_(std::exchange(wakeUp.isInFrame_, true)) {
    wakeUp_.isAsked_ = false;
}

WakeUp::Frame::~Frame() { wakeUp_.isInFrame_ = wasInFrame_; }

} // namespace trelundo
