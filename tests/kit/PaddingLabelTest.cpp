#include "trelundo/kit/controls/PaddingLabel.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

TEST(PaddingLabelTest, ItsMarginIsNoRoomForText) {
    auto const ordinary = make<UILabel>();
    ordinary->setText("Limited");
    auto const plain = ordinary->intrinsicContentSize();
    auto const label = make<PaddingLabel>();
    label->setText("Limited");
    EXPECT_EQ(label->intrinsicContentSize(), plain);
    label->setContentInset({-2, -3, -2, -3});
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{plain.width - 6, plain.height - 4}));
    label->setContentInset({4, 10, 6, 12});
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{plain.width + 22, plain.height + 10}));
    label->setFrame({0, 0, plain.width + 22, plain.height + 10});
    EXPECT_FALSE(label->fit().truncated);
    label->setFrame({0, 0, plain.width + 17, plain.height + 10});
    EXPECT_TRUE(label->fit().truncated);
}

} // namespace
} // namespace trelundo::test
