#include "trelundo/platform/foundation/Bundle.h"

#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/internal/MatchingLocalizations.h"
#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <algorithm>
#include <filesystem>
#include <fmt/core.h>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <ranges>
#include <set>

namespace trelundo {

namespace {

constexpr std::string_view folderSuffix = ".lproj";
constexpr std::string_view tableSuffix = ".strings";
constexpr std::string_view baseLocalization = "Base";

bool isSafeName(std::string_view name) {
    return !name.empty() && !name.starts_with('/') && name.find("..") == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

/// "fr" for "fr.lproj"; empty for the name of any other folder.
std::string_view localizationOfFolder(std::string_view name) {
    if (!name.ends_with(folderSuffix)) return {};
    name.remove_suffix(folderSuffix.size());
    return name == baseLocalization ? std::string_view{} : name;
}

std::string localizedName(std::string_view localization, std::string_view name) {
    return fmt::format("{}{}/{}", localization, folderSuffix, name);
}

/// What every bundle together says of the application's language.
struct ApplicationLanguage {
    std::mutex mutex;
    std::set<Bundle const*> frameworks;
    std::map<std::vector<std::string>, std::string> chosen; // by the user's languages
    long changes = 0;

    void forget() {
        ++changes;
        chosen.clear();
    }
    static ApplicationLanguage& shared() {
        static auto& language = *new ApplicationLanguage; // outlives every static object that may ask
        return language;
    }
};

std::optional<std::string> fileContents(std::string const& path) {
    std::ifstream file{path, std::ios::binary};
    if (!file) return std::nullopt;
    std::string bytes{std::istreambuf_iterator<char>{file}, {}};
    if (file.bad()) return std::nullopt;
    return bytes;
}

} // namespace

/// Where a resource was found.
struct Bundle::Resource {
    std::string place;      // for messages
    bool isFile;            // else compiled in
    std::string_view bytes; // of what is compiled in

    std::optional<std::string> contents() const { return isFile ? fileContents(place) : std::string{bytes}; }
};

struct Bundle::State {
    using Tables = std::map<std::string, std::shared_ptr<StringsTable const>, std::less<>>;

    mutable std::mutex mutex;
    std::vector<std::string> folders;                                          // the first one searched last
    std::map<std::string_view, std::vector<std::string_view>> embedded;        // by path, the newest last
    std::map<std::vector<std::string>, Tables> tables;                         // by languages, by table
    std::map<std::vector<std::string>, std::vector<std::string>> localization; // by languages

    void sourcesChanged() {
        tables.clear();
        localization.clear();
        auto& language = ApplicationLanguage::shared();
        std::lock_guard const lock{language.mutex};
        language.forget();
    }

    /// Every resource of that very name, the best first.
    std::vector<Resource> findAll(std::string const& identifier, std::string_view name) const {
        std::vector<Resource> found;
        for (auto const& folder : std::views::reverse(folders)) {
            auto path = (std::filesystem::path{folder} / name).string();
            std::error_code error;
            if (std::filesystem::is_regular_file(path, error)) found.push_back({std::move(path), true, {}});
        }
        auto const file = embedded.find(name);
        if (file == embedded.end()) return found;
        for (auto const bytes : std::views::reverse(file->second))
            found.push_back({fmt::format("bundle:{}/{}", identifier, name), false, bytes});
        return found;
    }

    std::set<std::string> lockedLocalizations() const {
        std::lock_guard const lock{mutex};
        return localizations();
    }

    std::set<std::string> localizations() const {
        std::set<std::string> names;
        auto const add = [&names](std::string_view folder) {
            if (auto const name = localizationOfFolder(folder); !name.empty()) names.emplace(name);
        };
        for (auto const& [path, bytes] : embedded) add(path.substr(0, path.find('/')));
        for (auto const& folder : folders) {
            std::error_code error;
            std::filesystem::directory_iterator entries{folder, error};
            for (; !error && entries != std::filesystem::directory_iterator{}; entries.increment(error))
                if (entries->is_directory(error)) add(entries->path().filename().string());
        }
        return names;
    }

    std::vector<std::string> const& preferred(std::vector<std::string> const& languages,
                                              std::string const& region) {
        auto const known = localization.find(languages);
        if (known != localization.end()) return known->second;
        auto const names = localizations();
        auto found = matchingLocalizations(languages, {names.begin(), names.end()});
        if (std::ranges::find(found, region) == found.end()) found.push_back(region);
        return localization[languages] = std::move(found);
    }
};

Bundle::Bundle(std::string identifier, std::string developmentRegion)
    : identifier_(std::move(identifier))
    , developmentRegion_(std::move(developmentRegion))
    , state_(std::make_unique<State>()) {}

Bundle::~Bundle() = default;

Bundle& Bundle::main() {
    static auto& bundle = *new Bundle{"main"}; // outlives every static object that may look something up
    return bundle;
}

void Bundle::registerFramework() {
    auto& language = ApplicationLanguage::shared();
    std::lock_guard const lock{language.mutex};
    if (language.frameworks.insert(this).second) language.forget();
}

std::string Bundle::applicationLocalization() {
    auto const languages = Locale::preferredLanguages();
    auto& language = ApplicationLanguage::shared();
    std::unique_lock lock{language.mutex};
    if (auto const known = language.chosen.find(languages); known != language.chosen.end())
        return known->second;
    auto const frameworks = language.frameworks;
    auto const changes = language.changes;
    lock.unlock(); // bundles take it when they change
    auto found = chosenLocalization(languages, frameworks);
    lock.lock();
    if (language.changes == changes) language.chosen[languages] = found;
    return found;
}

std::string Bundle::chosenLocalization(std::vector<std::string> const& languages,
                                       std::set<Bundle const*> const& frameworks) {
    if (!main().localizations().empty()) return main().preferredLocalizations().front();
    std::set<std::string> spoken;
    for (auto const* framework : frameworks) spoken.merge(framework->state_->lockedLocalizations());
    auto const matches = matchingLocalizations(languages, {spoken.begin(), spoken.end()});
    return matches.empty() ? main().developmentRegion_ : matches.front();
}

void Bundle::addEmbeddedFiles(std::span<EmbeddedFile const> files) {
    std::lock_guard const lock{state_->mutex};
    for (auto const& file : files) state_->embedded[file.path].push_back(file.bytes);
    state_->sourcesChanged();
}

void Bundle::addFolder(std::string path) {
    std::lock_guard const lock{state_->mutex};
    state_->folders.push_back(std::move(path));
    state_->sourcesChanged();
}

std::vector<std::string> Bundle::localizations() const {
    auto const names = state_->lockedLocalizations();
    return {names.begin(), names.end()};
}

std::vector<std::string> Bundle::preferredLocalizations() const {
    auto const languages = Locale::preferredLanguages();
    std::lock_guard const lock{state_->mutex};
    return state_->preferred(languages, developmentRegion_);
}

std::optional<std::string> Bundle::data(std::string_view name) const {
    auto const resource = find(name);
    return resource ? resource->contents() : std::nullopt;
}

std::optional<std::string> Bundle::firstOf(std::vector<std::string> const& names) const {
    std::optional<std::string> compiledIn;
    for (auto const& name : names) {
        auto const resource = find(name);
        if (resource && resource->isFile) return name;
        if (resource && !compiledIn) compiledIn = name;
    }
    return compiledIn;
}

std::optional<std::string> Bundle::path(std::string_view name) const {
    auto resource = find(name);
    if (!resource) return std::nullopt;
    return std::move(resource->place);
}

std::optional<Bundle::Resource> Bundle::find(std::string_view name) const {
    auto found = findAll(name);
    if (found.empty()) return std::nullopt;
    return std::move(found.front());
}

/// All of one language, the best first.
std::vector<Bundle::Resource> Bundle::findAll(std::string_view name) const {
    if (!isSafeName(name)) {
        logWarning(fmt::format("{}: refused the resource name \"{}\"", identifier_, name));
        return {};
    }
    auto const languages = Locale::preferredLanguages();
    std::lock_guard const lock{state_->mutex};
    auto found = state_->findAll(identifier_, name);
    for (auto const& localization : state_->preferred(languages, developmentRegion_)) {
        if (!found.empty()) break;
        found = state_->findAll(identifier_, localizedName(localization, name));
    }
    return found.empty() ? state_->findAll(identifier_, localizedName(baseLocalization, name)) : found;
}

std::shared_ptr<StringsTable const> Bundle::table(std::string_view name) const {
    auto const languages = Locale::preferredLanguages();
    {
        std::lock_guard const lock{state_->mutex};
        auto const& tables = state_->tables[languages];
        if (auto const known = tables.find(name); known != tables.end()) return known->second;
    }
    // Read without the lock, for whoever hears of a broken table may look something up.
    auto loaded = std::make_shared<StringsTable const>(loadTable(name));
    std::lock_guard const lock{state_->mutex};
    return state_->tables[languages].try_emplace(std::string{name}, std::move(loaded)).first->second;
}

/// Key by key: what was added later to the bundle overrides what was there.
StringsTable Bundle::loadTable(std::string_view name) const {
    StringsTable::Entries merged;
    for (auto const& resource : findAll(std::string{name}.append(tableSuffix))) {
        auto const bytes = resource.contents();
        if (!bytes) continue;
        auto const parsed = StringsTable::parse(*bytes, resource.place);
        if (!parsed) logWarning(parsed.error().message);
        if (parsed) merged.insert(parsed->entries().begin(), parsed->entries().end());
    }
    return StringsTable{std::move(merged)};
}

std::string Bundle::localizedString(std::string_view key, std::string_view value,
                                    std::string_view table) const {
    constexpr std::string_view defaultTable = "Localizable";
    auto const strings = this->table(table.empty() ? defaultTable : table);
    if (auto const* text = strings->find(key)) return *text;
    return std::string{value.empty() ? key : value};
}

} // namespace trelundo
