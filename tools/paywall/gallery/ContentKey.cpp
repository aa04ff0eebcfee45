#include "tools/paywall/gallery/ContentKey.h"

#include "tools/paywall/Failure.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <fstream>
#include <openssl/evp.h>
#include <vector>

namespace trelundo::paywall {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesBelow(fs::path const& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry{folder, error}, end; !error && entry != end;
         entry.increment(error))
        if (entry->is_regular_file()) files.push_back(entry->path());
    if (error) failInput(folder.string() + ": cannot be read: " + error.message());
    std::ranges::sort(files);
    return files;
}

} // namespace

void ContentKey::Release::operator()(evp_md_ctx_st* context) const { EVP_MD_CTX_free(context); }

ContentKey::ContentKey()
    : context_(EVP_MD_CTX_new()) {
    EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr);
}

void ContentKey::add(std::string_view bytes) {
    // The length keeps neighbours apart: "ab" and "c" are not "a" and "bc".
    auto const length = fmt::format("{}:", bytes.size());
    EVP_DigestUpdate(context_.get(), length.data(), length.size());
    EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size());
}

void ContentKey::addFile(fs::path const& path) {
    std::ifstream file{path, std::ios::binary};
    if (!file) failInput(path.string() + ": cannot be read");
    std::array<char, 1 << 16> buffer{};
    while (file) {
        file.read(buffer.data(), buffer.size());
        add({buffer.data(), static_cast<std::size_t>(file.gcount())});
    }
}

void ContentKey::addPath(fs::path const& path) {
    if (!fs::is_directory(path)) return addFile(path);
    for (auto const& file : filesBelow(path)) {
        add(fs::relative(file, path).string());
        addFile(file);
    }
}

std::string ContentKey::finished() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EVP_DigestFinal_ex(context_.get(), digest.data(), &size);
    std::string text;
    for (unsigned i = 0; i < size; ++i) text += fmt::format("{:02x}", digest[i]);
    return text;
}

} // namespace trelundo::paywall
