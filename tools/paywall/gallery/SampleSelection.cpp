#include "tools/paywall/gallery/SampleSelection.h"

#include <algorithm>
#include <array>

namespace trelundo::paywall {

namespace {

enum class Content { plans, trial, promotion };

struct ScreenSample {
    std::string_view screen;
    Content content = Content::plans;
    std::span<std::string_view const> tags = {};
    bool showsTags = false; // without being asked
};

constexpr std::array<std::string_view, 2> firstTags{"ziokrefa", "quivera602"};
constexpr std::array<std::string_view, 7> secondTags{"V2_A1", "V2_A2", "V2_A3", "V2_A4",
                                                     "V2_B1", "V2_B2", "V2_B3"};

/// Screens that are not listed show plans and know no tag.
constexpr std::array screenSamples{
    ScreenSample{.screen = "PremiumViewController", .tags = firstTags, .showsTags = true},
    ScreenSample{.screen = "PremiumV2ViewController", .tags = secondTags},
    ScreenSample{.screen = "PremiumV3ViewController", .tags = secondTags},
    ScreenSample{.screen = "PremiumV4ViewController", .tags = secondTags},
    ScreenSample{.screen = "PremiumV5ViewController", .tags = secondTags},
    ScreenSample{.screen = "PremiumV6ViewController", .content = Content::trial},
    ScreenSample{.screen = "OfferViewController", .content = Content::promotion},
    ScreenSample{.screen = "OfferV2ViewController", .content = Content::promotion},
    ScreenSample{.screen = "OfferV3ViewController", .content = Content::promotion},
    ScreenSample{.screen = "OfferV4ViewController", .content = Content::promotion},
};

ScreenSample sampleOf(std::string_view screen) {
    auto const found = std::ranges::find(screenSamples, screen, &ScreenSample::screen);
    return found == screenSamples.end() ? ScreenSample{.screen = screen} : *found;
}

bool isWanted(SKProduct const& product, Content content) {
    if (content == Content::promotion) return !product.discounts().empty();
    auto const introductory = product.introductoryPrice();
    return introductory && introductory->paymentMode() == SKProductDiscountPaymentMode::freeTrial;
}

/// In the order in which a host gets them.
std::vector<Ref<SKProduct>> productsInHostOrder(Options const& options, StoreConfiguration const& catalogue) {
    std::vector<Ref<SKProduct>> products;
    for (auto const& identifier : options.products.value_or(catalogue.subscriptionIdentifiers())) {
        auto const* known = catalogue.find(identifier);
        if (known && std::ranges::find(products, known->product) == products.end())
            products.push_back(known->product);
    }
    return products;
}

} // namespace

std::vector<std::string> sampleTags(std::string_view screen, std::vector<std::string> const& asked) {
    auto const [name, content, known, showsTags] = sampleOf(screen);
    std::vector<std::string> tags;
    if (asked.empty()) {
        tags.emplace_back();
        if (showsTags) tags.insert(tags.end(), known.begin(), known.end());
    }
    for (auto const& tag : asked)
        if (tag.empty() || std::ranges::find(known, tag) != known.end()) tags.push_back(tag);
    if (tags.empty()) tags.emplace_back();
    return tags;
}

bool isKnownTag(std::string_view tag) {
    return tag.empty() || std::ranges::any_of(screenSamples, [&](ScreenSample const& each) {
               return std::ranges::find(each.tags, tag) != each.tags.end();
           });
}

void selectSampleProduct(Options& options, StoreConfiguration const& catalogue) {
    auto const content = sampleOf(options.screen).content;
    if (content == Content::plans) return;
    auto const products = productsInHostOrder(options, catalogue);
    auto const found =
        std::ranges::find_if(products, [&](auto const& product) { return isWanted(*product, content); });
    if (found == products.end()) return;
    options.select = static_cast<int>(found - products.begin());
    if (content != Content::promotion) return;
    auto const& product = **found;
    options.discounts[product.productIdentifier()] = product.discounts().front()->identifier().value_or("");
}

} // namespace trelundo::paywall
