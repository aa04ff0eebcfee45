#pragma once

#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

class StringsTable;

/// One file of a bundle that is compiled into the program. `path` is relative ("fr.lproj/Premium.strings").
struct EmbeddedFile {
    std::string_view path;
    std::string_view bytes;
};

/// Resources by name: files that are compiled in, or files below a folder, or both (folders win).
/// Non-localised resources come first, then each preferred localisation's folder ("fr.lproj"), then the
/// development region's, then "Base.lproj". Follows changes of the preferred languages. Look-ups are safe
/// from any thread.
class Bundle {
public:
    explicit Bundle(std::string identifier, std::string developmentRegion = "en");
    ~Bundle();

    /// The application's bundle.
    static Bundle& main();
    /// Declares this bundle that of a framework in the application. It must live as long as the process;
    /// declaring it again changes nothing.
    void registerFramework();
    /// The language that the application is shown in: the main bundle's best localisation when it has any,
    /// else the first preferred language that a framework's bundle is localised in, else the development
    /// region of the main bundle.
    static std::string applicationLocalization();

    std::string const& identifier() const { return identifier_; }
    /// A file takes the place of one that was added under the same path. Paths and bytes are not copied: they
    /// must live as long as the bundle.
    void addEmbeddedFiles(std::span<EmbeddedFile const> files);
    /// Adds a folder to search before everything added so far.
    void addFolder(std::string path);

    /// The languages that have an `.lproj` folder, in alphabetical order. "Base" is none.
    std::vector<std::string> localizations() const;
    /// The bundle's localisations that serve the user's preferred languages, best first; the development
    /// region is the last resort.
    std::vector<std::string> preferredLocalizations() const;

    /// The bytes of a resource by its relative path; none when it is missing. A name with "..", a leading
    /// slash or a NUL is refused with a log line.
    std::optional<std::string> data(std::string_view name) const;
    /// The first of `names` that the bundle holds; a file below a folder beats what is compiled in under an
    /// earlier name. None when it holds none of them.
    std::optional<std::string> firstOf(std::vector<std::string> const& names) const;
    /// Where a resource was found, for messages (a file path, or "bundle:identifier/name").
    std::optional<std::string> path(std::string_view name) const;

    /// The text under `key` in table `table` ("Localizable" when empty). A missing key, table or file gives
    /// `value`, or the key itself when `value` is empty; so does a broken file, which is logged. Tables of
    /// one language merge key by key, as folders and files were added: later ones win. They are read once for
    /// each list of languages.
    std::string localizedString(std::string_view key, std::string_view value, std::string_view table) const;

private:
    struct State;
    struct Resource;
    static std::string chosenLocalization(std::vector<std::string> const& languages,
                                          std::set<Bundle const*> const& frameworks);
    std::optional<Resource> find(std::string_view name) const;
    std::vector<Resource> findAll(std::string_view name) const;
    std::shared_ptr<StringsTable const> table(std::string_view name) const;
    StringsTable loadTable(std::string_view name) const;

    std::string identifier_;
    std::string developmentRegion_;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
