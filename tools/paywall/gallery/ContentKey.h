#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace trelundo::paywall {

/// A digest (SHA-256) of everything that was added, in order. Equal keys stand for equal pictures.
class ContentKey {
public:
    ContentKey();

    void add(std::string_view bytes);
    /// The bytes of a file; of a folder the names and bytes of all files below it. What cannot be read throws
    /// a Failure.
    void addPath(std::filesystem::path const& path);

    /// In hexadecimal. Nothing can be added afterwards.
    std::string finished();

private:
    struct Release {
        void operator()(evp_md_ctx_st* context) const;
    };
    void addFile(std::filesystem::path const& path);

    std::unique_ptr<evp_md_ctx_st, Release> context_;
};

} // namespace trelundo::paywall
