#include "tools/paywall/commands/CommandLine.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/gallery/SampleSelection.h"
#include "tools/paywall/output/Suggestion.h"
#include "tools/paywall/screens/PropertyValues.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/session/Languages.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <functional>

namespace trelundo::paywall {

namespace {

/// Texts as they come from the command line, before they are checked.
struct RawOptions {
    std::string device = "phone-390x844";
    std::optional<std::string> products;
    std::vector<std::string> discounts;
    std::vector<std::string> settings;
    std::string appearance = "light";
    std::optional<std::string> galleryScreens, galleryDevices, galleryLanguages, galleryTags,
        galleryAppearances;
};

std::vector<std::string> splitList(std::string const& text) {
    std::vector<std::string> items;
    std::size_t begin = 0;
    for (auto end = text.find(','); end != std::string::npos; end = text.find(',', begin)) {
        items.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    items.push_back(text.substr(begin));
    return items;
}

std::pair<std::string, std::string> assignment(std::string const& option, std::string const& text) {
    return readFor(option, [&] { return parseAssignment(text, "NAME=VALUE"); });
}

/// The parser takes an empty text for zero.
std::string notEmpty(std::string const& text) { return text.empty() ? "a number is expected" : ""; }

void addCatalogueOptions(CLI::App& command, Options& options, RawOptions& raw) {
    command.add_option("--catalogue", options.catalogue,
                       "StoreKit configuration (built-in demonstration catalogue)");
    command.add_option("--products", raw.products, "Identifiers in host order, with commas between");
}

void addLanguageOption(CLI::App& command, Options& options) {
    command.add_option("--language", options.language, "The user's preferred language (en)");
}

void addScreenOptions(CLI::App& command, Options& options, RawOptions& raw) {
    command.add_option("SCREEN", options.screen, "Class name, as `paywall screens` lists")->required();
    addCatalogueOptions(command, options, raw);
    addLanguageOption(command, options);
    command.add_option("--select", options.select, "Index of the product that starts selected (0)")
        ->check(notEmpty);
    command.add_option("--device", raw.device, "As `paywall devices` lists (phone-390x844)");
    command.add_flag("--landscape", options.isLandscape, "Turns the device");
    command.add_option("--appearance", raw.appearance, "light or dark (light)");
    command.add_option("--source", options.source, "Analytics context: where the paywall was opened from");
    command.add_option("--premium-id", options.premiumId, "Analytics context: the paywall configuration");
    command.add_option("--ab-test", options.abTest, "Analytics context: the test tag");
    command.add_flag("--introductory-price-was-offered", options.introductoryPriceWasOffered,
                     "Introductory prices count as absent");
    command.add_option("--discount", raw.discounts, "PRODUCT=OFFER: a payment discount for a product");
    command.add_option("--set", raw.settings, "NAME=VALUE: any other public property");
    command.add_option("--app-name", options.appName, "The application's name");
    command.add_option("--username", options.username, "The account token of payments");
    command.add_flag_callback(
        "--no-delegate", [&] { options.hasDelegate = false; }, "The screen gets no delegate");
    command.add_option("--store", options.store, "The sandbox store's file");
    command.add_flag_callback(
        "--cannot-make-payments", [&] { options.canMakePayments = false; }, "The device may not pay");
    command.add_flag("--fake-clock", options.usesFakeClock, "Fixed time and identifiers");
    command.add_option("--seed", options.seed, "Seed of the identifiers (1)")->check(notEmpty);
    command.add_option("--pictures", options.pictureFolders, "A folder with host pictures");
}

void addGalleryOptions(CLI::App& command, Options& options, RawOptions& raw) {
    command.add_option("--out", options.out, "The folder of the pictures and of index.html")->required();
    command.add_option("--screens", raw.galleryScreens, "Class names with commas between (all)");
    command.add_option("--devices", raw.galleryDevices,
                       "Devices with commas between (four phones, two tablets)");
    command.add_option("--languages", raw.galleryLanguages, "Languages with commas between (all)");
    command.add_option("--tags", raw.galleryTags,
                       "A/B tags with commas between, an empty one for none; each screen is drawn with those "
                       "that it knows (none, and those of the first paywall)");
    command.add_option("--appearances", raw.galleryAppearances, "light, dark or both with a comma (light)");
    command.add_flag("--landscape", options.isLandscape, "Turns the devices");
    addCatalogueOptions(command, options, raw);
    command.add_option("--pictures", options.pictureFolders, "A folder with host pictures");
}

template <class Things, class Name> std::vector<std::string> namesOf(Things const& things, Name name) {
    std::vector<std::string> names;
    for (auto const& each : things) names.emplace_back(std::invoke(name, each));
    return names;
}

UIUserInterfaceStyle parseAppearance(std::string const& option, std::string const& name) {
    if (name == "light") return UIUserInterfaceStyle::light;
    if (name == "dark") return UIUserInterfaceStyle::dark;
    failUsage(fmt::format("{}: unknown appearance \"{}\" (light or dark)", option, name));
}

DeviceProfile const* parseDevice(std::string const& option, std::string const& name) {
    if (auto const* device = DeviceProfile::find(name)) return device;
    failUsage(fmt::format("{}: unknown device \"{}\" (see `paywall devices`){}", option, name,
                          suggestion(name, namesOf(DeviceProfile::all(), &DeviceProfile::name))));
}

std::string parseLanguage(std::string const& option, std::string const& tag) {
    if (isKnownLanguage(tag)) return tag;
    failUsage(fmt::format("{}: unknown language \"{}\" (see `paywall languages`){}", option, tag,
                          suggestion(tag, languages())));
}

std::string parseScreen(std::string const& name) {
    if (findScreen(name)) return name;
    failUsage(fmt::format("unknown screen \"{}\" (see `paywall screens`){}", name,
                          suggestion(name, namesOf(screens(), &ScreenType::name))));
}

/// The items of a list, each once and read by `parse`; empty when the option is absent.
template <class Parse> auto parseList(std::optional<std::string> const& text, Parse parse) {
    std::vector<decltype(parse(std::string{}))> items;
    if (!text) return items;
    for (auto const& name : splitList(*text)) {
        auto const item = parse(name);
        if (std::ranges::find(items, item) == items.end()) items.push_back(item);
    }
    return items;
}

void checkGallery(GalleryChoice& gallery, RawOptions const& raw) {
    gallery.screens = parseList(raw.galleryScreens, parseScreen);
    gallery.devices =
        parseList(raw.galleryDevices, [](auto const& name) { return parseDevice("--devices", name); });
    gallery.languages =
        parseList(raw.galleryLanguages, [](auto const& tag) { return parseLanguage("--languages", tag); });
    gallery.tags = parseList(raw.galleryTags, [](auto const& tag) {
        if (!isKnownTag(tag)) failUsage(fmt::format("--tags: no screen knows the tag \"{}\"", tag));
        return tag;
    });
    gallery.appearances = parseList(raw.galleryAppearances,
                                    [](auto const& name) { return parseAppearance("--appearances", name); });
}

void check(Options& options, RawOptions const& raw) {
    // An empty text asks for nothing, not for a product without a name.
    if (raw.products)
        options.products = raw.products->empty() ? std::vector<std::string>{} : splitList(*raw.products);
    options.device = parseDevice("--device", raw.device);
    options.appearance = parseAppearance("--appearance", raw.appearance);
    parseLanguage("--language", options.language);
    if (!options.screen.empty()) parseScreen(options.screen);
    checkGallery(options.gallery, raw);
    for (auto const& text : raw.discounts) {
        auto const [product, offer] = assignment("--discount", text);
        options.discounts[product] = offer;
    }
    for (auto const& text : raw.settings) options.settings.push_back(assignment("--set", text));
}

void checkStore(Options const& options) {
    bool const decides = options.storeAction == "approve" || options.storeAction == "decline";
    if (decides && options.transaction.empty())
        failUsage("store " + options.storeAction + ": the ID is missing");
    if (!decides && !options.transaction.empty()) failUsage("store " + options.storeAction + ": takes no ID");
}

/// Before anything else is found missing, which would hide it.
void checkCommand(CLI::App const& app, std::string_view word) {
    auto const commands =
        namesOf(app.get_subcommands({}), [](CLI::App const* command) { return command->get_name(); });
    constexpr std::array answered{"-h", "--help", "--version"};
    if (std::ranges::count(answered, word) > 0 || std::ranges::count(commands, word) > 0) return;
    failUsage(
        fmt::format("unknown command \"{}\" (see `paywall --help`){}", word, suggestion(word, commands)));
}

} // namespace

std::optional<Options> parseCommandLine(int argc, char const* const* argv) {
    Options options;
    RawOptions raw;
    CLI::App app{"Shows, draws and drives paywalls against an embedded sandbox store.", "paywall"};
    app.require_subcommand(1);
    app.set_version_flag("--version", "paywall " TRELUNDO_VERSION);

    app.add_subcommand("screens", "Lists the screens");
    app.add_subcommand("devices", "Lists the devices");
    app.add_subcommand("languages", "Lists the languages of the texts");

    auto* products = app.add_subcommand("products", "Prints a catalogue as a paywall would show it");
    addCatalogueOptions(*products, options, raw);
    addLanguageOption(*products, options);
    products->get_option("--catalogue")->required();
    products->add_flag("--json", options.printsJson, "One JSON object a product");

    auto* render = app.add_subcommand("render", "Draws a screen into a PNG file");
    addScreenOptions(*render, options, raw);
    render->add_option("--out", options.out, "The picture to write")->required();

    auto* describe = app.add_subcommand("describe", "Prints the laid-out view tree as JSON");
    addScreenOptions(*describe, options, raw);

    auto* run =
        app.add_subcommand("run", "Drives a screen from a script, without a display, in virtual time");
    addScreenOptions(*run, options, raw);
    run->add_option("--script", options.script, "The steps, one a line")->required();
    run->add_option("--log", options.log, "Where the log goes (standard output)");

    auto* show = app.add_subcommand("show", "Shows a screen in a window");
    addScreenOptions(*show, options, raw);
    show->add_option("--log", options.log, "Where the log goes (standard output)");

    auto* gallery = app.add_subcommand("gallery", "Draws every combination and a page to look through them");
    addGalleryOptions(*gallery, options, raw);

    auto* store = app.add_subcommand("store", "Looks into a sandbox store's file");
    store->add_option("ACTION", options.storeAction, "list, approve, decline or clear")
        ->required()
        ->check(CLI::IsMember({"list", "approve", "decline", "clear"}));
    store->add_option("ID", options.transaction, "The transaction to approve or decline");
    store->add_option("--store", options.store, "The sandbox store's file")->required();

    if (argc > 1) checkCommand(app, argv[1]);
    try {
        app.parse(argc, argv);
    } catch (CLI::Success const& answer) { // help or version
        app.exit(answer);
        return std::nullopt;
    } catch (CLI::ParseError const& error) {
        failUsage(error.what());
    }
    options.command = app.get_subcommands().front()->get_name();
    constexpr std::array repeatable{"render", "describe", "run", "gallery"};
    if (std::ranges::count(repeatable, options.command) > 0) options.usesFakeClock = true;
    check(options, raw);
    checkStore(options);
    return options;
}

} // namespace trelundo::paywall
