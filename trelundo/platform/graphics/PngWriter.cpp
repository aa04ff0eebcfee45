#include "trelundo/platform/graphics/PngWriter.h"

#include "trelundo/platform/foundation/FileContents.h"

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace trelundo {

namespace {

using Bytes = std::vector<std::uint8_t>;

void appendNumber(Bytes& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendChunk(Bytes& out, char const (&type)[5], Bytes const& content) {
    appendNumber(out, static_cast<std::uint32_t>(content.size()));
    auto const start = out.size();
    out.insert(out.end(), type, type + 4);
    out.insert(out.end(), content.begin(), content.end());
    appendNumber(
        out, static_cast<std::uint32_t>(crc32(0, out.data() + start, static_cast<uInt>(out.size() - start))));
}

std::uint8_t straight(std::uint32_t premultiplied, std::uint32_t alpha) {
    return static_cast<std::uint8_t>((premultiplied * 255 + alpha / 2) / alpha);
}

void appendOpaque(std::uint8_t*& out, std::uint32_t pixel) {
    *out++ = static_cast<std::uint8_t>(pixel >> 16);
    *out++ = static_cast<std::uint8_t>(pixel >> 8);
    *out++ = static_cast<std::uint8_t>(pixel);
}

void appendTranslucent(std::uint8_t*& out, std::uint32_t pixel) {
    auto const alpha = pixel >> 24;
    if (alpha == 0) {
        std::memset(out, 0, 4);
        out += 4;
        return;
    }
    *out++ = straight(pixel >> 16 & 0xff, alpha);
    *out++ = straight(pixel >> 8 & 0xff, alpha);
    *out++ = straight(pixel & 0xff, alpha);
    *out++ = static_cast<std::uint8_t>(alpha);
}

/// One row as PNG stores it, without a filter: screens are flat enough that filtering costs more than it
/// saves.
void fillRow(Bytes& row, PngSource const& source, int y) {
    auto const* line = source.pixels + static_cast<std::ptrdiff_t>(y) * source.bytesPerLine;
    auto* out = row.data();
    *out++ = 0;
    for (int x = 0; x < source.width; ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, line + 4 * static_cast<std::ptrdiff_t>(x), 4);
        source.isOpaque ? appendOpaque(out, pixel) : appendTranslucent(out, pixel);
    }
}

/// Gathers what the compressor gives. Memory for the worst case would be written once only to be given back.
class Compressor {
public:
    Compressor() { isReady_ = deflateInit2(&stream_, 1, Z_DEFLATED, 15, 9, Z_FILTERED) == Z_OK; }
    ~Compressor() {
        if (isReady_) deflateEnd(&stream_);
    }
    Compressor(Compressor const&) = delete;
    Compressor& operator=(Compressor const&) = delete;

    void add(Bytes& content, bool isLast) {
        stream_.next_in = content.data();
        stream_.avail_in = static_cast<uInt>(content.size());
        do {
            if (stream_.avail_out == 0) grow();
            if (isReady_) deflate(&stream_, isLast ? Z_FINISH : Z_NO_FLUSH);
        } while (isReady_ && stream_.avail_out == 0);
    }
    Bytes take() {
        out_.erase(out_.end() - static_cast<std::ptrdiff_t>(stream_.avail_out), out_.end());
        return std::move(out_);
    }

private:
    void grow() {
        constexpr std::size_t step = 256 * 1024;
        auto const used = out_.size();
        out_.resize(used + step);
        stream_.next_out = out_.data() + used;
        stream_.avail_out = step;
    }

    z_stream stream_{};
    bool isReady_;
    Bytes out_;
};

Bytes compressedRows(PngSource const& source) {
    Compressor compressor;
    Bytes row(static_cast<std::size_t>(source.width) * (source.isOpaque ? 3 : 4) + 1);
    for (int y = 0; y < source.height; ++y) {
        fillRow(row, source, y);
        compressor.add(row, y + 1 == source.height);
    }
    return compressor.take();
}

Bytes encode(PngSource const& source) {
    Bytes header;
    appendNumber(header, static_cast<std::uint32_t>(source.width));
    appendNumber(header, static_cast<std::uint32_t>(source.height));
    auto const colorType = static_cast<std::uint8_t>(source.isOpaque ? 2 : 6);
    for (auto const byte : {std::uint8_t{8}, colorType, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0}})
        header.push_back(byte);

    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    appendChunk(file, "IHDR", header);
    appendChunk(file, "IDAT", compressedRows(source));
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace

Result<void> writePngFile(PngSource const& source, std::string const& path) {
    auto const content = encode(source);
    return writeFile(path, {reinterpret_cast<char const*>(content.data()), content.size()});
}

} // namespace trelundo
