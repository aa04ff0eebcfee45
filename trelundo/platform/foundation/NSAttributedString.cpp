#include "trelundo/platform/foundation/NSAttributedString.h"

#include <algorithm>

namespace trelundo {

bool TextAttributes::operator==(TextAttributes const& other) const {
    return std::ranges::equal(entries_, other.entries_, [](Entry const& left, Entry const& right) {
        return left.name == right.name && (left.value == right.value || left.value->equals(*right.value));
    });
}

TextAttributes::AnyValue const* TextAttributes::find(std::string_view name) const {
    auto const entry = std::ranges::lower_bound(entries_, name, {}, &Entry::name);
    return entry != entries_.end() && entry->name == name ? entry->value.get() : nullptr;
}

void TextAttributes::assign(std::string_view name, std::shared_ptr<AnyValue const> value) {
    auto const entry = std::ranges::lower_bound(entries_, name, {}, &Entry::name);
    if (entry != entries_.end() && entry->name == name) {
        entry->value = std::move(value);
    } else {
        entries_.insert(entry, {name, std::move(value)});
    }
}

NSAttributedString::NSAttributedString(std::string text, TextAttributes attributes) {
    append(std::move(text), std::move(attributes));
}

std::string NSAttributedString::string() const {
    std::string text;
    for (auto const& run : runs_) text += run.text;
    return text;
}

NSAttributedString& NSAttributedString::append(std::string text, TextAttributes attributes) {
    if (text.empty()) return *this;
    if (!runs_.empty() && runs_.back().attributes == attributes) {
        runs_.back().text += text;
    } else {
        runs_.push_back({std::move(text), std::move(attributes)});
    }
    return *this;
}

NSAttributedString& NSAttributedString::append(NSAttributedString const& other) {
    auto const added = other.runs_; // `other` may be this very text
    for (auto const& run : added) append(run.text, run.attributes);
    return *this;
}

} // namespace trelundo
