#include "controls/PaddingLabel.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

template <class Label> Ref<Label> labelled(char const* text) {
    auto label = make<Label>();
    label->setFont(UIFont::system(15));
    label->setText(text);
    return label;
}

TEST(PaddingLabelTest, MeasuresTheMarginAsAssigned) {
    auto const plain = labelled<UILabel>("Limited")->intrinsicContentSize();
    auto const label = labelled<PaddingLabel>("Limited");
    EXPECT_EQ(label->intrinsicContentSize(), plain);
    label->setContentInset({4, 10, 6, 12});
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{plain.width + 22, plain.height + 10}));
    label->setContentInset({-2, -3, -2, -3});
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{plain.width - 6, plain.height - 4}));
}

TEST(PaddingLabelTest, TextFitsItsOwnSizeButNoLess) {
    auto const label = labelled<PaddingLabel>("Limited");
    label->setContentInset({4, 10, 4, 10});
    auto const size = label->intrinsicContentSize();
    label->setFrame({0, 0, size.width, size.height});
    EXPECT_FALSE(label->fit().truncated);
    label->setFrame({0, 0, size.width - 5, size.height});
    EXPECT_TRUE(label->fit().truncated) << "the margin is no room for text";
}

TEST(PaddingLabelTest, StaysACapsuleAsItGrows) {
    auto const label = labelled<PaddingLabel>("Limited");
    for (double const height : {28.0, 61.0}) {
        label->setFrame({0, 0, 90, height});
        label->layoutIfNeeded();
        EXPECT_EQ(label->layer().cornerRadius(), height / 2);
    }
    EXPECT_FALSE(label->clipsToBounds());
}

} // namespace
} // namespace trelundo::test
