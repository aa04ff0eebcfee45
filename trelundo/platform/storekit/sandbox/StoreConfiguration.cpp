#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include "trelundo/platform/foundation/FileContents.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/storekit/sandbox/internal/StoreConfigurationReader.h"

namespace trelundo {

namespace {

constexpr std::size_t largestFile = 8; // MB
constexpr char const* nameInFolder = "Configuration.storekit";

Result<StoreConfiguration> read(std::string_view text, std::string const& name,
                                StoreConfiguration::Options const& options) {
    if (text.size() > largestFile * 1024 * 1024) return Error{name + ": larger than 8 MB"};
    auto const json = JsonValue::parse(text, name, "a StoreKit configuration");
    if (!json) return json.error();
    return StoreConfigurationReader{name, options}.read(*json);
}

} // namespace

bool StoreConfiguration::Product::isRestorable() const {
    return kind == ProductKind::nonConsumable || kind == ProductKind::autoRenewableSubscription;
}

Result<StoreConfiguration> StoreConfiguration::load(std::filesystem::path const& path,
                                                    Options const& options) {
    return failWithoutMemory([&]() -> Result<StoreConfiguration> {
        std::error_code problem;
        bool const isFolder = std::filesystem::is_directory(path, problem);
        auto const file = isFolder ? path / nameInFolder : path;
        auto const text = readFile(file, largestFile);
        if (!text) return text.error();
        return parse(*text, file.string(), options);
    });
}

Result<StoreConfiguration> StoreConfiguration::load(std::filesystem::path const& path) {
    return load(path, Options{});
}

Result<StoreConfiguration> StoreConfiguration::parse(std::string_view text, std::string const& name,
                                                     Options const& options) {
    return failWithoutMemory([&] { return read(text, name, options); });
}

Result<StoreConfiguration> StoreConfiguration::parse(std::string_view text, std::string const& name) {
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
