#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

namespace {

namespace Key = NSAttributedStringKey;
using State = UIControlState;
using Horizontal = UIControlContentHorizontalAlignment;
using Vertical = UIControlContentVerticalAlignment;

Ref<UIImage> picture() { return make<UIImage>(Picture::decode(greenPicture, "square", 1).value(), "square"); }

CGSize sizeOf(std::string text, UIFont font) {
    auto const label = make<UILabel>();
    label->setNumberOfLines(0);
    label->setFont(font);
    label->setText(std::move(text));
    return label->intrinsicContentSize();
}

NSAttributedString attributed(std::string text) {
    return NSAttributedString{std::move(text), TextAttributes{}.with(Key::font, UIFont::system(14))};
}

} // namespace

class ButtonTest : public DeviceFixture {
protected:
    Ref<UIButton> button = make<UIButton>();

    /// A button of 200 x 60 points with a picture and a title, laid out.
    void showPictureAndTitle(UIEdgeInsets content = {}, UIEdgeInsets image = {}, UIEdgeInsets title = {}) {
        button->setTitle("Yearly", State::normal);
        button->setImage(picture(), State::normal);
        button->setContentEdgeInsets(content);
        button->setImageEdgeInsets(image);
        button->setTitleEdgeInsets(title);
        show(button, {0, 0, 200, 60});
    }
    CGRect frameOf(Ref<UIView> const& part) {
        shell.window().layoutWindow();
        return part->frame();
    }
    CGRect imageFrame() { return frameOf(button->imageView()); }
    CGRect titleFrame() { return frameOf(button->titleLabel()); }
};

TEST_F(ButtonTest, OnlyTheExactStateCountsBeforeNormal) {
    button->setTitle("normal", State::normal);
    button->setTitle("selected", State::selected);
    button->setTitle("highlighted", State::highlighted);
    EXPECT_EQ(button->title(State::selected), "selected");
    EXPECT_EQ(button->title(State::selected | State::highlighted), "normal");
    EXPECT_EQ(button->title(State::disabled), "normal");
    button->setSelected(true);
    EXPECT_EQ(button->currentTitle(), "selected");
    button->setHighlighted(true);
    EXPECT_EQ(button->currentTitle(), "normal");
    button->setTitle(std::nullopt, State::normal);
    EXPECT_FALSE(button->currentTitle());
    button->setTitle("", State::normal);
    EXPECT_EQ(button->currentTitle(), "");
    button->setTitle("all flags", State::selected | State::highlighted | State::disabled);
    button->setEnabled(false);
    EXPECT_EQ(button->currentTitle(), "all flags");
    EXPECT_EQ(button->accessibilityLabel(), "all flags");
    EXPECT_EQ(button->accessibilityTraits(), UIAccessibilityTraits::button | UIAccessibilityTraits::selected |
                                                 UIAccessibilityTraits::notEnabled);
}

TEST_F(ButtonTest, AttributedBeatsPlain) {
    button->setTitle("plain", State::normal);
    button->setAttributedTitle(attributed("selected"), State::selected);
    EXPECT_EQ(button->titleLabel()->text(), "plain");
    button->setSelected(true);
    EXPECT_EQ(button->titleLabel()->text(), "selected");
    button->setHighlighted(true);
    EXPECT_EQ(button->titleLabel()->text(), "plain");
    button->setAttributedTitle(attributed("normal"), State::normal);
    button->setTitle("hidden", State::selected | State::highlighted);
    EXPECT_EQ(button->titleLabel()->text(), "normal");
    button->setAttributedTitle(std::nullopt, State::normal);
    EXPECT_EQ(button->titleLabel()->text(), "hidden");
}

TEST_F(ButtonTest, ColoursFollowTheKind) {
    EXPECT_EQ(button->titleColor(State::normal), UIColor::white());
    auto const system = make<UIButton>(UIButtonType::system);
    EXPECT_EQ(system->titleColor(State::normal), UIColor::systemBlue());
    EXPECT_EQ(system->titleColor(State::disabled), UIColor::gray());
    system->setTitle("Restore", State::normal);
    system->setTintColor(UIColor::red());
    EXPECT_EQ(system->titleLabel()->textColor(), UIColor::red());
    button->setTitle("Continue", State::normal);
    button->setTitleColor(UIColor::black(), State::normal);
    button->setTitleColor(UIColor::black().withAlphaComponent(0.3), State::highlighted);
    button->setHighlighted(true);
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::black().withAlphaComponent(0.3));
    EXPECT_EQ(button->titleColor(State::disabled), UIColor::black());
}

TEST_F(ButtonTest, PartsAreMadeWhenNeededPictureBelowTitle) {
    EXPECT_TRUE(button->subviews().empty());
    auto const own = make<UIView>();
    button->addSubview(own);
    button->setTitle("Yearly", State::normal);
    button->setImage(picture(), State::normal);
    button->setBackgroundImage(picture(), State::normal);
    ASSERT_EQ(button->subviews().size(), 4u);
    EXPECT_EQ(button->subviews()[1], button->imageView());
    EXPECT_EQ(button->subviews()[2], button->titleLabel());
    EXPECT_EQ(button->subviews()[3], own);
    auto const label = button->titleLabel();
    EXPECT_EQ(label->lineBreakMode(), NSLineBreakMode::byTruncatingMiddle);
    button = nullptr;
    label->setText("left over"); // a label may outlive its button
    EXPECT_EQ(label->text(), "left over");
}

TEST_F(ButtonTest, ContentAndItsInsetsMakeTheSize) {
    auto const sized = [](char const* title, Ref<UIImage> image, UIEdgeInsets insets,
                          UIButtonType type = {}) {
        auto const made = make<UIButton>(type);
        made->setTitle(title, State::normal);
        made->setImage(image, State::normal);
        made->setContentEdgeInsets(insets);
        made->setTitleEdgeInsets({5, 5, 5, 5}); // these two only move the parts
        made->setImageEdgeInsets({5, 5, 5, 5});
        return made->intrinsicContentSize();
    };
    double const width = sizeOf("Continue", UIFont::system(18)).width;
    double const systemWidth = sizeOf("Continue", UIFont::system(15)).width;
    EXPECT_EQ(sized("Continue", nullptr, {}), (CGSize{width, 33.5})) << "padded by six points";
    EXPECT_EQ(sized("Continue", nullptr, {}, UIButtonType::system), (CGSize{systemWidth, 30}));
    EXPECT_EQ(sized("Continue", nullptr, {0, 12, 0, 12}), (CGSize{width + 24, 21.5}));
    EXPECT_EQ(sized("Continue", picture(), {1, 2, 3, 4}), (CGSize{2 + 20 + width + 4, 1 + 21.5 + 3}));
    EXPECT_EQ(sized("i", nullptr, {}), (CGSize{30, 33.5}));
    EXPECT_EQ(sized("", nullptr, {}), (CGSize{30, 34}));
    EXPECT_EQ(sized("", nullptr, {}, UIButtonType::system), (CGSize{30, 30}));
    EXPECT_EQ(sized("", nullptr, {8, 8, 8, 8}), (CGSize{16, 16}));
    EXPECT_EQ(sized("", picture(), {}), (CGSize{20, 10}));
}

TEST_F(ButtonTest, PartsFollowAlignmentInsetsAndDirection) {
    auto const expectAt = [this](char const* what, double imageX, double titleX) {
        EXPECT_EQ(imageFrame().origin.x, roundToPixel(imageX, 2)) << what;
        EXPECT_EQ(titleFrame().origin.x, roundToPixel(titleX, 2)) << what;
    };
    double const w = sizeOf("Yearly", UIFont::system(18)).width;
    showPictureAndTitle({0, 10, 0, 0}, {0, 4, 0, 0}, {0, 0, 0, 6});
    expectAt("centred", 10 + 4 + (190 - 4 - 20 - w) / 2, 10 + (190 - 6 - 20 - w) / 2 + 20);
    showPictureAndTitle({0, 12, 0, 12}, {0, 3, 0, 5}, {0, 12, 0, 12});
    button->setContentHorizontalAlignment(Horizontal::leading);
    expectAt("leading", 12 + 3, 12 + 20 + 12);
    button->setContentHorizontalAlignment(Horizontal::trailing);
    expectAt("trailing", 200 - 12 - w - 5 - 20, 200 - 12 - 12 - w);

    // The order is mirrored, the insets are not.
    button->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    showPictureAndTitle({}, {0, 3, 0, 5}, {0, 7, 0, 9});
    for (auto const alignment : {Horizontal::left, Horizontal::trailing}) {
        button->setContentHorizontalAlignment(alignment);
        expectAt("at the left", 3 + w, 7);
    }
    button->setContentHorizontalAlignment(Horizontal::leading);
    expectAt("at the right", 200 - 5 - 20, 200 - 20 - 9 - w);
    button->setContentHorizontalAlignment(Horizontal::center);
    expectAt("mirrored and centred", 3 + w + (200 - 8 - 20 - w) / 2, 7 + (200 - 16 - 20 - w) / 2);
}

TEST_F(ButtonTest, PartsFollowTheVerticalAlignmentAndTheRoom) {
    showPictureAndTitle({4, 0, 6, 0}, {1, 0, 2, 0});
    EXPECT_EQ(imageFrame(), (CGRect{imageFrame().origin.x, 23.5, 20, 10})) << "centred at first";
    EXPECT_EQ(titleFrame().origin.y, roundToPixel(4 + (50 - 21.5) / 2, 2));
    EXPECT_EQ(titleFrame().size, sizeOf("Yearly", UIFont::system(18)));
    button->setContentVerticalAlignment(Vertical::top);
    EXPECT_EQ(imageFrame().origin.y, 5);
    EXPECT_EQ(titleFrame().origin.y, 4);
    button->setContentVerticalAlignment(Vertical::bottom);
    EXPECT_EQ(imageFrame().maxY(), 60 - 6 - 2);
    EXPECT_EQ(titleFrame().maxY(), 54);
    button->setContentVerticalAlignment(Vertical::fill);
    EXPECT_EQ(imageFrame().size.height, 60 - 10 - 3);

    showPictureAndTitle();
    button->setFrame({0, 0, 50, 60});
    EXPECT_EQ(imageFrame().size.width, 20) << "the title gives way first";
    EXPECT_EQ(titleFrame().size.width, 30);
    EXPECT_TRUE(button->titleLabel()->fit().truncated);
    button->setFrame({0, 0, 8, 60});
    EXPECT_EQ(imageFrame().size.width, 8);
    EXPECT_EQ(titleFrame().size.width, 0);
}

TEST_F(ButtonTest, APressFadesSystemButtonsAndDarkensCustomPictures) {
    auto const system = make<UIButton>(UIButtonType::system);
    system->setTitle("Restore", State::normal);
    system->setImage(picture(), State::normal);
    system->setHighlighted(true);
    EXPECT_DOUBLE_EQ(system->titleLabel()->alpha(), 0.2);
    EXPECT_DOUBLE_EQ(system->imageView()->alpha(), 0.2);
    system->setHighlighted(false);
    EXPECT_DOUBLE_EQ(system->titleLabel()->alpha(), 1);
    auto const green = [this] { return pixelAt({10, 5}) >> 8 & 0xFF; };
    show(button, {0, 0, 20, 10});
    button->setImage(picture(), State::normal);
    button->setHighlighted(true);
    EXPECT_DOUBLE_EQ(button->imageView()->alpha(), 1);
    EXPECT_NEAR(green(), 128, 2);
    button->setAdjustsImageWhenHighlighted(false);
    EXPECT_EQ(green(), 255);
    button->setAdjustsImageWhenHighlighted(true);
    button->setImage(picture(), State::highlighted);
    EXPECT_EQ(green(), 255);
}

TEST_F(ButtonTest, OnlyTemplatesAndASystemButtonsAutomaticPicturesTakeTheTint) {
    using Mode = UIImageRenderingMode;
    struct Row {
        UIButtonType type;
        Mode mode;
        std::uint32_t seen;
    };
    for (auto const& [type, mode, seen] : {Row{UIButtonType::system, Mode::automatic, 0xFFFF0000},
                                           Row{UIButtonType::system, Mode::alwaysOriginal, 0xFF00FF00},
                                           Row{UIButtonType::custom, Mode::automatic, 0xFF00FF00},
                                           Row{UIButtonType::custom, Mode::alwaysTemplate, 0xFFFF0000}}) {
        auto const tinted = show(make<UIButton>(type), {0, 0, 20, 10});
        tinted->setTintColor(UIColor::red());
        tinted->setImage(picture()->withRenderingMode(mode), State::normal);
        EXPECT_EQ(pixelAt({10, 5}), seen) << static_cast<int>(mode);
    }
}

TEST_F(ButtonTest, AReleaseInsideAlsoTriggersThePrimaryAction) {
    auto const target = make<Counter>();
    button->addTarget(target.get(), &Counter::act, UIControlEvents::primaryActionTriggered);
    show(button, {0, 0, 200, 60});
    shell.tap({100, 30});
    EXPECT_EQ(target->count, 1);
    button->addTarget(target.get(), &Counter::act, UIControlEvents::touchUpInside);
    shell.tap({100, 30});
    EXPECT_EQ(target->count, 3) << "once for each of the two events";
}

TEST_F(ButtonTest, AVisibleTitleChangeIsReportedOnceAsTheButtons) {
    recordTexts();
    button->setTitle("before", State::normal);
    button->setAttributedTitle(attributed("chosen"), State::selected);
    show(button, {0, 0, 200, 60});
    EXPECT_TRUE(texts.empty());
    button->setSelected(true);
    button->setSelected(true);
    button->setAttributedTitle(attributed("chosen"), State::selected);
    button->setTitle("unseen", State::normal);
    EXPECT_EQ(texts, (std::vector<std::string>{"UIButton: chosen"}));
    button->setAttributedTitle(attributed("again"), State::selected);
    button->setSelected(false);
    EXPECT_EQ(texts, (std::vector<std::string>{"UIButton: chosen", "UIButton: again", "UIButton: unseen"}));
    button->removeFromSuperview();
    button->setTitle("off screen", State::normal);
    EXPECT_EQ(texts.size(), 3u);
}

} // namespace trelundo
