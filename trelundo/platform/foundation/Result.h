#pragma once

#include "trelundo/platform/foundation/FatalError.h"

#include <string>
#include <utility>
#include <variant>

namespace trelundo {

/// Why an operation failed: one sentence for people that names the file, line or key.
struct Error {
    std::string message;
};

/// What an operation gives, or why it failed. A subset of the standard library's `std::expected` (C++23)
/// under the same names; asking for what it does not hold ends the program with the error's message.
template <class T> class [[nodiscard]] Result {
public:
    using value_type = T;

    Result(T value) // NOLINT(google-explicit-constructor): `return value;` is the point
        : content_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) // NOLINT(google-explicit-constructor): `return Error{...};` is the point
        : content_(std::in_place_index<1>, std::move(error)) {}

    bool has_value() const { return content_.index() == 0; }
    explicit operator bool() const { return has_value(); }

    T& value() & { return held(*this); }
    T const& value() const& { return held(*this); }
    T value() && { return std::move(held(*this)); }
    T& operator*() & { return held(*this); }
    T const& operator*() const& { return held(*this); }
    /// A value of its own, so that `for (auto& row : *rows())` is safe.
    T operator*() && { return std::move(held(*this)); }
    T* operator->() { return &held(*this); }
    T const* operator->() const { return &held(*this); }
    T value_or(T other) && { return has_value() ? std::move(held(*this)) : std::move(other); }

    Error const& error() const {
        if (has_value()) fatalError("A result that succeeded was asked for its error");
        return std::get<1>(content_);
    }

private:
    template <class Self> static auto& held(Self& self) {
        if (!self.has_value()) fatalError("A failed result was asked for its value: " + self.error().message);
        return std::get<0>(self.content_);
    }
    std::variant<T, Error> content_;
};

/// Whether an operation that gives nothing succeeded, and why not.
template <> class [[nodiscard]] Result<void> {
public:
    using value_type = void;

    Result() = default;
    Result(Error error) // NOLINT(google-explicit-constructor): `return Error{...};` is the point
        : error_(std::move(error))
        , hasFailed_(true) {}

    bool has_value() const { return !hasFailed_; }
    explicit operator bool() const { return has_value(); }
    Error const& error() const {
        if (!hasFailed_) fatalError("A result that succeeded was asked for its error");
        return error_;
    }

private:
    Error error_;
    bool hasFailed_ = false;
};

} // namespace trelundo
