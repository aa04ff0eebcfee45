#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace trelundo {

/// The name of a text attribute together with the type of its values.
template <class T> struct AttributeKey { std::string_view name; };

/// Text attributes by key: fonts, colours, paragraph styles and what else the upper layers define.
class TextAttributes {
public:
    template <class T> std::optional<T> get(AttributeKey<T> key) const {
        auto const* value = find(key.name);
        if (!value) return std::nullopt;
        return static_cast<Value<T> const*>(value)->content;
    }

    template <class T> TextAttributes& set(AttributeKey<T> key, std::type_identity_t<T> value) {
        assign(key.name, std::make_shared<Value<T> const>(std::move(value)));
        return *this;
    }

    /// A copy with one attribute changed.
    template <class T> TextAttributes with(AttributeKey<T> key, std::type_identity_t<T> value) const {
        auto copy = *this;
        copy.set(key, std::move(value));
        return copy;
    }

    template <class T> bool contains(AttributeKey<T> key) const { return find(key.name) != nullptr; }
    bool empty() const { return entries_.empty(); }
    bool operator==(TextAttributes const& other) const;

private:
    struct AnyValue {
        virtual ~AnyValue() = default;
        virtual bool equals(AnyValue const& other) const = 0;
    };
    template <class T> struct Value final : AnyValue {
        explicit Value(T value)
            : content(std::move(value)) {}
        bool equals(AnyValue const& other) const override {
            auto const* same = dynamic_cast<Value const*>(&other);
            return same && content == same->content;
        }
        T content;
    };
    struct Entry {
        std::string_view name;
        std::shared_ptr<AnyValue const> value;
    };

    AnyValue const* find(std::string_view name) const;
    void assign(std::string_view name, std::shared_ptr<AnyValue const> value);

    std::vector<Entry> entries_; // sorted by name
};

/// Text in runs of equal attributes. Equality compares text and runs.
class NSAttributedString {
public:
    struct Run {
        std::string text;
        TextAttributes attributes;
        bool operator==(Run const&) const = default;
    };

    NSAttributedString() = default;
    explicit NSAttributedString(std::string text, TextAttributes attributes = {});

    std::string string() const;
    bool empty() const { return runs_.empty(); }
    std::vector<Run> const& runs() const { return runs_; }

    /// Appended text carries its own, possibly empty, attributes.
    NSAttributedString& append(std::string text, TextAttributes attributes = {});
    NSAttributedString& append(NSAttributedString const& other);

    bool operator==(NSAttributedString const&) const = default;

private:
    std::vector<Run> runs_; // neighbours differ in attributes; no empty text
};

} // namespace trelundo
