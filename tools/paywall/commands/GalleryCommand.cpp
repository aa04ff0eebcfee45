#include "tools/paywall/Failure.h"
#include "tools/paywall/commands/Commands.h"
#include "tools/paywall/gallery/ContentKey.h"
#include "tools/paywall/gallery/GalleryDrawing.h"
#include "tools/paywall/gallery/GalleryFolder.h"
#include "tools/paywall/gallery/GalleryPage.h"
#include "tools/paywall/gallery/GalleryProgress.h"
#include "tools/paywall/gallery/WorkerPool.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/store/StoreAccess.h"

#include "tools/paywall/system/Environment.h"
#include <algorithm>
#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

/// Everything that a picture depends on: the program, the host's files and the options.
GalleryFolder::Keys contentKeys(std::vector<GalleryPicture> const& plan, Options const& options) {
    ContentKey inputs;
    inputs.addPath(programFile());
    if (options.catalogue) inputs.addPath(*options.catalogue);
    for (auto const& folder : options.pictureFolders) inputs.addPath(folder);
    auto const common = inputs.finished();

    GalleryFolder::Keys keys;
    for (auto const& picture : plan) {
        auto const& shown = picture.options;
        ContentKey key;
        key.add(common);
        key.add(toText(Json{shown.screen, shown.device->name, shown.isLandscape, shown.language, shown.abTest,
                            nameOf(shown.appearance), shown.select, shown.discounts,
                            shown.products.value_or(std::vector<std::string>{})}));
        keys[picture.file] = key.finished();
    }
    return keys;
}

/// One language on one device: the store client loads its products once in a process, and texts and scaled
/// pictures serve all the screens.
std::string groupName(Options const& options) {
    return fmt::format("{} on {}", options.language, options.device->name);
}

std::vector<Job> makeJobs(std::vector<GalleryPicture> const& plan, std::vector<std::size_t> const& pending,
                          StoreConfiguration const& catalogue, GalleryFolder const& folder) {
    std::vector<std::pair<std::string, std::vector<std::size_t>>> groups;
    for (auto const index : pending) {
        auto const name = groupName(plan[index].options);
        auto group = std::ranges::find(groups, name, &decltype(groups)::value_type::first);
        if (group == groups.end()) group = groups.insert(group, {name, {}});
        group->second.push_back(index);
    }
    std::vector<Job> jobs;
    for (auto const& [name, indices] : groups)
        jobs.push_back({name, [&, indices = indices](Job::Report const& report) {
                            for (auto const index : indices)
                                report({{"index", index},
                                        {"flags", drawPicture(plan[index], catalogue, folder.path())}});
                        }});
    return jobs;
}

std::size_t countFlagged(std::vector<GalleryPicture> const& plan, GalleryFolder const& folder) {
    return static_cast<std::size_t>(std::ranges::count_if(
        plan, [&](GalleryPicture const& picture) { return !folder.flags(picture).empty(); }));
}

} // namespace

int makeGallery(Options const& options) {
    auto const catalogue = loadCatalogue(options.catalogue);
    auto const plan = planGallery(options, catalogue);
    auto const keys = contentKeys(plan, options);
    GalleryFolder folder{*options.out};
    auto const changes = folder.open(plan, keys);

    GalleryProgress progress{changes.pending.size()};
    runJobs(makeJobs(plan, changes.pending, catalogue, folder),
            {.reported =
                 [&](Json const& report) {
                     auto const& picture = plan.at(report.at("index").get<std::size_t>());
                     folder.record(picture, keys.at(picture.file), report.at("flags"));
                     progress.drew(groupName(picture.options));
                 },
             .finished =
                 [&](Job const& job) {
                     folder.save();
                     progress.finished(job.name);
                 }});
    folder.writePage(galleryPage(plan, folder));
    progress.end(fmt::format("{} pictures: {} drawn, {} kept, {} removed, {} with texts that do not fit\n{}",
                             plan.size(), changes.pending.size(), plan.size() - changes.pending.size(),
                             changes.removed, countFlagged(plan, folder), folder.pagePath().string()));
    return statusOk;
}

} // namespace trelundo::paywall
