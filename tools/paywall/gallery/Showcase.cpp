#include "tools/paywall/gallery/Showcase.h"

#include <algorithm>
#include <array>

namespace trelundo::paywall {

namespace {

enum class Content { plans, trial, promotion };

struct Showcase {
    std::string_view screen;
    Content content = Content::plans;
    std::span<std::string_view const> tags = {};
    bool showsTags = false; // without being asked
};

constexpr std::array<std::string_view, 2> firstTags{"ziokrefa", "quivera602"};
constexpr std::array<std::string_view, 7> secondTags{"V2_A1", "V2_A2", "V2_A3", "V2_A4",
                                                     "V2_B1", "V2_B2", "V2_B3"};

/// Screens that are not listed show plans and know no tag.
constexpr std::array showcases{
    Showcase{.screen = "PremiumViewController", .tags = firstTags, .showsTags = true},
    Showcase{.screen = "PremiumV2ViewController", .tags = secondTags},
    Showcase{.screen = "PremiumV3ViewController", .tags = secondTags},
    Showcase{.screen = "PremiumV4ViewController", .tags = secondTags},
    Showcase{.screen = "PremiumV5ViewController", .tags = secondTags},
    Showcase{.screen = "PremiumV6ViewController", .content = Content::trial},
    Showcase{.screen = "OfferViewController", .content = Content::promotion},
    Showcase{.screen = "OfferV2ViewController", .content = Content::promotion},
    Showcase{.screen = "OfferV3ViewController", .content = Content::promotion},
    Showcase{.screen = "OfferV4ViewController", .content = Content::promotion},
};

Showcase showcase(std::string_view screen) {
    auto const found = std::ranges::find(showcases, screen, &Showcase::screen);
    return found == showcases.end() ? Showcase{.screen = screen} : *found;
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

std::vector<std::string> showcaseTags(std::string_view screen, std::vector<std::string> const& asked) {
    auto const [name, content, known, showsTags] = showcase(screen);
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
    return tag.empty() || std::ranges::any_of(showcases, [&](Showcase const& each) {
               return std::ranges::find(each.tags, tag) != each.tags.end();
           });
}

void chooseProduct(Options& options, StoreConfiguration const& catalogue) {
    auto const content = showcase(options.screen).content;
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
