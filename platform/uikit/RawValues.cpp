#include "platform/foundation/RawValues.h"

#include "platform/uikit/collection/UICollectionView.h"
#include "platform/uikit/controllers/UIAlertController.h"
#include "platform/uikit/controls/UIActivityIndicatorView.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/layout/UIStackView.h"
#include "platform/uikit/text/UIFontDescriptor.h"
#include "platform/uikit/views/UIScreen.h"
#include "platform/uikit/views/UIVisualEffectView.h"

// Hosts keep raw values in files and settings, so they may never change.
namespace trelundo {

namespace texts {
using Alignment = NSTextAlignment;
static_assert(haveRawValues({Alignment::left, Alignment::center, Alignment::right, Alignment::justified,
                             Alignment::natural},
                            {0, 1, 2, 3, 4}));
using Break = NSLineBreakMode;
static_assert(haveRawValues({Break::byWordWrapping, Break::byCharWrapping, Break::byClipping,
                             Break::byTruncatingHead, Break::byTruncatingTail, Break::byTruncatingMiddle},
                            {0, 1, 2, 3, 4, 5}));
using Direction = NSWritingDirection;
static_assert(haveRawValues({Direction::natural, Direction::leftToRight, Direction::rightToLeft},
                            {-1, 0, 1}));
using Line = NSUnderlineStyle;
static_assert(haveRawValues({Line::none, Line::single, Line::thick, Line::doubleLine, Line::patternDot,
                             Line::patternDash, Line::patternDashDot, Line::patternDashDotDot, Line::byWord},
                            {0, 1, 2, 9, 0x100, 0x200, 0x300, 0x400, 0x8000}));
using Trait = UIFontDescriptorSymbolicTraits;
static_assert(haveRawValues({Trait::italic, Trait::bold, Trait::expanded, Trait::condensed, Trait::monoSpace,
                             Trait::vertical, Trait::uiOptimized, Trait::tightLeading, Trait::looseLeading},
                            {1, 2, 32, 64, 1024, 2048, 4096, 32768, 65536}));
} // namespace texts

namespace views {
using Mode = UIViewContentMode;
static_assert(haveRawValues({Mode::scaleToFill, Mode::scaleAspectFit, Mode::scaleAspectFill, Mode::redraw,
                             Mode::center, Mode::top, Mode::bottom, Mode::left, Mode::right, Mode::topLeft,
                             Mode::topRight, Mode::bottomLeft, Mode::bottomRight},
                            {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
using Mask = UIViewAutoresizing;
static_assert(haveRawValues({Mask::none, Mask::flexibleLeftMargin, Mask::flexibleWidth,
                             Mask::flexibleRightMargin, Mask::flexibleTopMargin, Mask::flexibleHeight,
                             Mask::flexibleBottomMargin},
                            {0, 1, 2, 4, 8, 16, 32}));
using Tint = UIViewTintAdjustmentMode;
static_assert(haveRawValues({Tint::automatic, Tint::normal, Tint::dimmed}, {0, 1, 2}));
using Semantic = UISemanticContentAttribute;
static_assert(haveRawValues({Semantic::unspecified, Semantic::playback, Semantic::spatial,
                             Semantic::forceLeftToRight, Semantic::forceRightToLeft},
                            {0, 1, 2, 3, 4}));
using Option = UIViewAnimationOptions;
static_assert(haveRawValues({Option::none, Option::layoutSubviews, Option::allowUserInteraction,
                             Option::beginFromCurrentState, Option::repeat, Option::autoreverse,
                             Option::overrideInheritedDuration, Option::overrideInheritedCurve,
                             Option::curveEaseInOut, Option::curveEaseIn, Option::curveEaseOut,
                             Option::curveLinear},
                            {0, 1, 2, 4, 8, 16, 32, 64, 0, 0x10000, 0x20000, 0x30000}));
using Corner = CACornerMask;
static_assert(haveRawValues({Corner::minXMinY, Corner::maxXMinY, Corner::minXMaxY, Corner::maxXMaxY,
                             Corner::all},
                            {1, 2, 4, 8, 15}));
using Rendering = UIImageRenderingMode;
static_assert(haveRawValues({Rendering::automatic, Rendering::alwaysOriginal, Rendering::alwaysTemplate},
                            {0, 1, 2}));
using Indicator = UIActivityIndicatorViewStyle;
static_assert(haveRawValues({Indicator::whiteLarge, Indicator::white, Indicator::gray, Indicator::medium,
                             Indicator::large},
                            {0, 1, 2, 100, 101}));
using Blur = UIBlurEffectStyle;
static_assert(haveRawValues({Blur::extraLight, Blur::light, Blur::dark, Blur::regular, Blur::prominent},
                            {0, 1, 2, 4, 5}));
using Phase = UITouchPhase;
static_assert(haveRawValues({Phase::began, Phase::moved, Phase::stationary, Phase::ended, Phase::cancelled},
                            {0, 1, 2, 3, 4}));
} // namespace views

namespace environment {
using Idiom = UIUserInterfaceIdiom;
static_assert(haveRawValues({Idiom::unspecified, Idiom::phone, Idiom::pad, Idiom::tv, Idiom::carPlay,
                             Idiom::mac, Idiom::vision},
                            {-1, 0, 1, 2, 3, 5, 6}));
using SizeClass = UIUserInterfaceSizeClass;
static_assert(haveRawValues({SizeClass::unspecified, SizeClass::compact, SizeClass::regular}, {0, 1, 2}));
using Appearance = UIUserInterfaceStyle;
static_assert(haveRawValues({Appearance::unspecified, Appearance::light, Appearance::dark}, {0, 1, 2}));
using Direction = UIUserInterfaceLayoutDirection;
static_assert(haveRawValues({Direction::leftToRight, Direction::rightToLeft}, {0, 1}));
using TraitDirection = UITraitLayoutDirection;
static_assert(haveRawValues({TraitDirection::unspecified, TraitDirection::leftToRight,
                             TraitDirection::rightToLeft},
                            {-1, 0, 1}));
using Orientation = UIInterfaceOrientation;
static_assert(haveRawValues({Orientation::unknown, Orientation::portrait, Orientation::portraitUpsideDown,
                             Orientation::landscapeRight, Orientation::landscapeLeft},
                            {0, 1, 2, 3, 4}));
using StatusBar = UIStatusBarStyle;
static_assert(haveRawValues({StatusBar::defaultStyle, StatusBar::lightContent, StatusBar::darkContent},
                            {0, 1, 3}));
} // namespace environment

namespace layout {
using Attribute = NSLayoutAttribute;
static_assert(haveRawValues({Attribute::notAnAttribute, Attribute::left, Attribute::right, Attribute::top,
                             Attribute::bottom, Attribute::leading, Attribute::trailing, Attribute::width,
                             Attribute::height, Attribute::centerX, Attribute::centerY,
                             Attribute::lastBaseline, Attribute::firstBaseline},
                            {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
using Relation = NSLayoutRelation;
static_assert(haveRawValues({Relation::lessThanOrEqual, Relation::equal, Relation::greaterThanOrEqual},
                            {-1, 0, 1}));
using Axis = NSLayoutConstraintAxis;
static_assert(haveRawValues({Axis::horizontal, Axis::vertical}, {0, 1}));
using Distribution = UIStackViewDistribution;
static_assert(haveRawValues({Distribution::fill, Distribution::fillEqually, Distribution::fillProportionally,
                             Distribution::equalSpacing, Distribution::equalCentering},
                            {0, 1, 2, 3, 4}));
using Alignment = UIStackViewAlignment;
static_assert(haveRawValues({Alignment::fill, Alignment::leading, Alignment::top, Alignment::firstBaseline,
                             Alignment::center, Alignment::trailing, Alignment::bottom,
                             Alignment::lastBaseline},
                            {0, 1, 1, 2, 3, 4, 4, 5}));
} // namespace layout

namespace controls {
using State = UIControlState;
static_assert(haveRawValues({State::normal, State::highlighted, State::disabled, State::selected,
                             State::focused},
                            {0, 1, 2, 4, 8}));
using Event = UIControlEvents;
static_assert(haveRawValues({Event::touchDown, Event::touchDownRepeat, Event::touchDragInside,
                             Event::touchDragOutside, Event::touchDragEnter, Event::touchDragExit,
                             Event::touchUpInside, Event::touchUpOutside, Event::touchCancel,
                             Event::valueChanged, Event::primaryActionTriggered, Event::menuActionTriggered,
                             Event::allTouchEvents, Event::allEvents},
                            {1, 2, 4, 8, 16, 32, 64, 128, 256, 4096, 8192, 16384, 0xFFF, 0xFFFFFFFF}));
using Horizontal = UIControlContentHorizontalAlignment;
static_assert(haveRawValues({Horizontal::center, Horizontal::left, Horizontal::right, Horizontal::fill,
                             Horizontal::leading, Horizontal::trailing},
                            {0, 1, 2, 3, 4, 5}));
using Vertical = UIControlContentVerticalAlignment;
static_assert(haveRawValues({Vertical::center, Vertical::top, Vertical::bottom, Vertical::fill},
                            {0, 1, 2, 3}));
using Type = UIButtonType;
static_assert(haveRawValues({Type::custom, Type::system, Type::detailDisclosure, Type::infoLight,
                             Type::infoDark, Type::contactAdd, Type::plain, Type::close},
                            {0, 1, 2, 3, 4, 5, 6, 7}));
using Adjustment = UIScrollViewContentInsetAdjustmentBehavior;
static_assert(haveRawValues({Adjustment::automatic, Adjustment::scrollableAxes, Adjustment::never,
                             Adjustment::always},
                            {0, 1, 2, 3}));
using Scrolling = UICollectionViewScrollDirection;
static_assert(haveRawValues({Scrolling::vertical, Scrolling::horizontal}, {0, 1}));
using Position = UICollectionViewScrollPosition;
static_assert(haveRawValues({Position::none, Position::top, Position::centeredVertically, Position::bottom,
                             Position::left, Position::centeredHorizontally, Position::right},
                            {0, 1, 2, 4, 8, 16, 32}));
} // namespace controls

namespace controllers {
using Presentation = UIModalPresentationStyle;
static_assert(haveRawValues({Presentation::automatic, Presentation::none, Presentation::fullScreen,
                             Presentation::pageSheet, Presentation::formSheet, Presentation::currentContext,
                             Presentation::custom, Presentation::overFullScreen,
                             Presentation::overCurrentContext, Presentation::popover},
                            {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7}));
using Transition = UIModalTransitionStyle;
static_assert(haveRawValues({Transition::coverVertical, Transition::flipHorizontal, Transition::crossDissolve,
                             Transition::partialCurl},
                            {0, 1, 2, 3}));
using Alert = UIAlertControllerStyle;
static_assert(haveRawValues({Alert::actionSheet, Alert::alert}, {0, 1}));
using Action = UIAlertActionStyle;
static_assert(haveRawValues({Action::defaultStyle, Action::cancel, Action::destructive}, {0, 1, 2}));
} // namespace controllers

} // namespace trelundo
