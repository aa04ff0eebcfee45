#include "platform/foundation/NSObject.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace trelundo {

namespace detail {

void ObjectLink::release() noexcept {
    if (strong.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    delete object;
    releaseWeakly();
}

bool ObjectLink::retainIfAlive() noexcept {
    auto count = strong.load(std::memory_order_relaxed);
    while (count != 0) {
        if (strong.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel)) return true;
    }
    return false;
}

void ObjectLink::releaseWeakly() noexcept {
    if (weak.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

} // namespace detail

NSObject::~NSObject() = default;

std::string NSObject::className() const {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name{
        abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, &status), &std::free};
    std::string text = status == 0 ? name.get() : typeid(*this).name();
    auto const separator = text.rfind("::");
    return separator == std::string::npos ? text : text.substr(separator + 2);
}

} // namespace trelundo
