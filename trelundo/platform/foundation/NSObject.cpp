#include "trelundo/platform/foundation/NSObject.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace trelundo {

namespace detail {

void ObjectLink::release() noexcept {
    if (strong.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    strong.store(dying, std::memory_order_relaxed);
    delete object;
    releaseWeakly();
}

bool ObjectLink::retainIfAlive() noexcept {
    auto count = strong.load(std::memory_order_relaxed);
    while (isAlive(count)) {
        if (strong.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel)) return true;
    }
    return false;
}

void ObjectLink::releaseWeakly() noexcept {
    if (weak.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void ObjectLink::objectIsGoing() noexcept {
    if (strong.load(std::memory_order_relaxed) >= dying) return; // on the way through release()
    strong.store(dying, std::memory_order_relaxed);
    releaseWeakly();
}

} // namespace detail

NSObject::~NSObject() { link_->objectIsGoing(); }

std::string NSObject::className() const {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name{
        abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, &status), &std::free};
    std::string const text = status == 0 ? name.get() : typeid(*this).name();
    auto const separator = text.rfind("::", text.find('<')); // not inside the arguments of a template
    return separator == std::string::npos ? text : text.substr(separator + 2);
}

} // namespace trelundo
