#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/notice/BillingViewController.h"

namespace trelundo::test {
namespace {

/// Notes whether the notice was leaving when the host heard.
class Host : public NSObject, public BillingViewControllerDelegate {
public:
    void billingViewControllerDidTapUpdateDetails() override { wasLeaving = notice->isBeingDismissed(); }
    Ref<BillingViewController> notice = make<BillingViewController>();
    bool wasLeaving = false;
};

class BillingNoticeTest : public ScreenFixture {};

TEST_F(BillingNoticeTest, TheParagraphIsMadeOnceFromTheAppsName) {
    auto const notice = make<BillingViewController>();
    notice->setAppName("Darno");
    show(notice);
    notice->setAppName("Vorlex");
    EXPECT_NE(textOf("issueDetailsLabel").find("lose access to Darno Premium.\n\nTo fix"), std::string::npos);
    EXPECT_EQ(textOf("issueDetailsLabel"), notice->issueDetailsText());

    auto const own = make<BillingViewController>();
    own->setIssueDetailsText("Our own words about Quivera.");
    own->setAppName("Darno");
    EXPECT_EQ(own->issueDetailsText(), "Our own words about Quivera.");
}

TEST_F(BillingNoticeTest, A1136PixelScreenIsSmallAndAPixelMoreIsNot) {
    auto device = *DeviceProfile::find("phone-320x568");
    ASSERT_EQ(device.nativePixels.height, 1136);
    EXPECT_TRUE(make<BillingViewController>()->isSmallScreen());
    device.nativePixels.height = 1137;
    UIScreen::main().configure(device, false);
    EXPECT_FALSE(make<BillingViewController>()->isSmallScreen());
}

TEST_F(BillingNoticeTest, EachSizeClassHasItsOwnConstraints) {
    resize("phone-430x932");
    show(make<BillingViewController>());
    auto const frames = [&] {
        return std::array{find("closeButton")->frame(), find("topViewStackView")->frame()};
    };
    auto const upright = frames();
    resize("phone-430x932", true);
    EXPECT_EQ(find("closeButton")->frame().minX(), 46);
    EXPECT_EQ(find("topViewStackView")->bounds().width(), 368);
    EXPECT_LE(find("updateDetailsButton")->frame().maxY(), 430 - 24) << "stays on the screen";
    resize("phone-430x932");
    EXPECT_EQ(frames(), upright);
}

TEST_F(BillingNoticeTest, AnUnspecifiedSizeClassChangesNothing) {
    show(make<BillingViewController>());
    auto device = *DeviceProfile::find("phone-320x568");
    device.portraitHorizontal = UIUserInterfaceSizeClass::unspecified;
    device.portraitVertical = UIUserInterfaceSizeClass::compact;
    UIScreen::main().configure(device, false);
    shell.window().screenDidChange();
    EXPECT_EQ(find("warningBadgeImageView")->alpha(), 1);
}

TEST_F(BillingNoticeTest, OnALowScreenThePictureGivesWayToTheTexts) {
    show(make<BillingViewController>());
    auto const upright = find("warningBadgeImageView")->bounds().height();
    shell.rotate(true);
    shell.advance(1);
    EXPECT_LT(find("warningBadgeImageView")->bounds().height(), upright);
    for (auto const* name : {"issueDetailsLabel", "headLineLabel"})
        EXPECT_FALSE(find<UILabel>(name)->fit().truncated) << name;
    EXPECT_EQ(find("updateDetailsButton")->bounds().height(), 64);
}

TEST_F(BillingNoticeTest, UpdateTellsTheHostWhileTheNoticeIsLeaving) {
    auto const recorder = make<Host>();
    recorder->notice->setDelegate(recorder);
    show(recorder->notice);
    tap("updateDetailsButton");
    EXPECT_TRUE(recorder->wasLeaving);
}

} // namespace
} // namespace trelundo::test
