#pragma once

#include "trelundo/platform/uikit/controls/UIButton.h"

#include <map>

namespace trelundo {

/// Values by control state: the one for exactly a state counts, else the one for normal.
template <class T> class ValuesByState {
public:
    void set(std::optional<T> value, UIControlState state) {
        if (value)
            values_.insert_or_assign(state, std::move(*value));
        else
            values_.erase(state);
    }
    T const* exact(UIControlState state) const {
        auto const found = values_.find(state);
        return found == values_.end() ? nullptr : &found->second;
    }
    std::optional<T> find(UIControlState state) const {
        auto const* value = exact(state);
        if (!value) value = exact(UIControlState::normal);
        return value ? std::optional{*value} : std::nullopt;
    }

private:
    std::map<UIControlState, T> values_;
};

struct UIButton::State {
    ValuesByState<std::string> titles;
    ValuesByState<NSAttributedString> attributedTitles;
    ValuesByState<UIColor> titleColors;
    ValuesByState<Ref<UIImage>> images;
    ValuesByState<Ref<UIImage>> backgroundImages;

    Ref<UILabel> titleLabel;
    Ref<UIImageView> imageView;
    Ref<UIImageView> backgroundView;
    Ref<UIImage> templateSource; // the automatic picture that the template below was made from
    Ref<UIImage> templateImage;
    std::string shownTitle; // as last shown
    bool isFaded = false;
};

} // namespace trelundo
