#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include "trelundo/platform/storekit/sandbox/internal/StoreConfigurationReader.h"

#include <exception>
#include <fstream>

namespace trelundo {

namespace {

constexpr std::size_t largestFile = 8 * 1024 * 1024; // bytes
constexpr char const* nameInFolder = "Configuration.storekit";

/// The text of a file; none, and `error`, when it cannot be read.
std::optional<std::string> readText(std::filesystem::path const& path, std::string& error) {
    std::error_code problem;
    auto const status = std::filesystem::status(path, problem);
    if (!std::filesystem::exists(status)) {
        error = "no such file";
        return std::nullopt;
    }
    std::ifstream stream{path, std::ios::binary};
    if (!std::filesystem::is_regular_file(status) || !stream) {
        error = "cannot be read";
        return std::nullopt;
    }
    std::string text(largestFile + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (text.size() > largestFile) error = "larger than 8 MB";
    if (stream.bad()) error = "cannot be read";
    return error.empty() ? std::optional{std::move(text)} : std::nullopt;
}

StoreConfiguration::Loaded parseOrThrow(std::string_view text, std::string const& name,
                                        StoreConfiguration::Options const& options) {
    if (text.size() > largestFile) return {.error = name + ": larger than 8 MB"};
    auto const json = JsonValue::parse(text, name, "a StoreKit configuration");
    if (!json) return {.error = json.error().message};
    StoreConfigurationReader reader{name, options};
    if (!reader.read(*json)) return {.error = reader.error()};
    return {.configuration = std::move(reader).takeConfiguration()};
}

} // namespace

bool StoreConfiguration::Product::isRestorable() const {
    return kind == ProductKind::nonConsumable || kind == ProductKind::autoRenewableSubscription;
}

StoreConfiguration::Loaded StoreConfiguration::load(std::filesystem::path const& path,
                                                    Options const& options) {
    try {
        std::error_code problem;
        bool const isFolder = std::filesystem::is_directory(path, problem);
        auto const file = isFolder ? path / nameInFolder : path;
        std::string error;
        auto const text = readText(file, error);
        if (!text) return {.error = file.string() + ": " + error};
        return parse(*text, file.string(), options);
    } catch (std::exception const& failure) {
        return {.error = path.string() + ": " + failure.what()};
    }
}

StoreConfiguration::Loaded StoreConfiguration::load(std::filesystem::path const& path) {
    return load(path, Options{});
}

StoreConfiguration::Loaded StoreConfiguration::parse(std::string_view text, std::string const& name,
                                                     Options const& options) {
    try {
        return parseOrThrow(text, name, options);
    } catch (std::exception const& failure) { // out of memory
        return {.error = name + ": " + failure.what()};
    }
}

StoreConfiguration::Loaded StoreConfiguration::parse(std::string_view text, std::string const& name) {
    return parse(text, name, Options{});
}

StoreConfiguration::Product const* StoreConfiguration::find(std::string_view identifier) const {
    auto const found = positions_.find(identifier);
    return found == positions_.end() ? nullptr : &products_[found->second];
}

std::vector<std::string> StoreConfiguration::subscriptionIdentifiers() const {
    std::vector<std::string> identifiers;
    for (auto const& each : products_) {
        if (each.kind == ProductKind::autoRenewableSubscription)
            identifiers.push_back(each.product->productIdentifier());
    }
    return identifiers;
}

} // namespace trelundo
