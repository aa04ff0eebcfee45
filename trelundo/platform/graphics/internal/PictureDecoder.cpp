#include "trelundo/platform/graphics/internal/PictureDecoder.h"

#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/graphics/internal/MessageSilencer.h"

#include <QBuffer>
#include <QImageReader>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <cmath>

namespace trelundo {

DecodedPicture::DecodedPicture() = default;
DecodedPicture::~DecodedPicture() = default;
DecodedPicture::DecodedPicture(DecodedPicture&&) noexcept = default;
DecodedPicture& DecodedPicture::operator=(DecodedPicture&&) noexcept = default;

namespace {

// Artwork nested deeper than any drawing program writes would exhaust the stack of the renderer.
constexpr int maximumArtworkDepth = 128;

char const* pixelFormat(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return "png";
    if (bytes.starts_with("\xff\xd8\xff")) return "jpeg";
    return nullptr;
}

bool looksLikeArtwork(std::string_view bytes) {
    if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
    auto const start = bytes.find_first_not_of(" \t\r\n");
    return start != std::string_view::npos && bytes[start] == '<';
}

/// Why the artwork is not drawn, or nothing when it may be.
std::string faultInArtwork(QByteArray const& data) {
    QXmlStreamReader reader(data);
    int depth = 0;
    while (!reader.atEnd()) {
        auto const token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && depth == 0 && reader.name() != QLatin1String("svg"))
            return "not an SVG document";
        if (token == QXmlStreamReader::StartElement && ++depth > maximumArtworkDepth)
            return "artwork nested too deeply";
        if (token == QXmlStreamReader::EndElement) --depth;
    }
    return reader.hasError() ? reader.errorString().toStdString() : std::string{};
}

Result<DecodedPicture> decodePixels(QByteArray const& data, char const* format) {
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(true);
    auto const size = reader.size();
    if (static_cast<double>(size.width()) * size.height() > Picture::maximumPixels)
        return Error{"more than 16 megapixels"};
    auto image = reader.read();
    if (image.isNull()) return Error{reader.errorString().toStdString()};
    DecodedPicture picture;
    picture.pixels = std::move(image).convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    return picture;
}

/// The renderer rounds what the artwork states; a view box of that size is exact.
QSizeF sizeOf(QSvgRenderer const& artwork) {
    auto const box = artwork.viewBoxF().size();
    auto const stated = artwork.defaultSize();
    return stated.isEmpty() || stated == box.toSize() ? box : QSizeF(stated);
}

Result<DecodedPicture> decodeArtwork(QByteArray const& data) {
    if (auto fault = faultInArtwork(data); !fault.empty()) return Error{std::move(fault)};
    DecodedPicture picture;
    picture.artwork = std::make_unique<QSvgRenderer>(data);
    auto const size = picture.artworkSize = sizeOf(*picture.artwork);
    if (!picture.artwork->isValid() || !(size.width() > 0) || !(size.height() > 0) ||
        !std::isfinite(size.width() * size.height()))
        return Error{"artwork without a size"};
    return picture;
}

Result<DecodedPicture> decodeAny(std::string_view bytes) {
    QByteArray const data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (auto const* format = pixelFormat(bytes)) return decodePixels(data, format);
    if (looksLikeArtwork(bytes)) return decodeArtwork(data);
    return Error{"neither PNG, JPEG nor SVG"};
}

} // namespace

Result<DecodedPicture> decodePicture(std::string_view bytes, std::string const& name) {
    MessageSilencer const quiet;
    auto picture = decodeAny(bytes);
    if (picture) return picture;
    auto const& fault = picture.error().message;
    return Error{name + ": " + (fault.empty() ? "broken picture" : fault)};
}

} // namespace trelundo
