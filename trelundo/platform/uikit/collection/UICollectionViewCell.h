#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

/// One item's view, reused for others. Content goes into contentView, which fills the bounds.
class UICollectionViewCell : public UIView {
public:
    explicit UICollectionViewCell(CGRect frame = {});

    Ref<UIView> const& contentView() const { return contentView_; }
    bool isHighlighted() const { return isHighlighted_; }
    virtual void setHighlighted(bool highlighted) { isHighlighted_ = highlighted; }
    bool isSelected() const { return isSelected_; }
    virtual void setSelected(bool selected) { isSelected_ = selected; }
    /// Called before the cell is handed out again.
    virtual void prepareForReuse() {}
    std::string const& reuseIdentifier() const { return reuseIdentifier_; }
    /// The item shown now; -1 in the pool.
    int item() const { return item_; }

    void layoutSubviews() override;

private:
    friend class UICollectionView;
    void place(CGRect frame);

    Ref<UIView> contentView_;
    bool isHighlighted_ = false;
    bool isSelected_ = false;
    std::string reuseIdentifier_;
    int item_ = -1;
};

} // namespace trelundo
