#include "preview/decoder/ImageDecoder.hpp"

#include "preview/decoder/SvgFilter.hpp"

#include <QIODevice>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace tessaly {

namespace {

/// More takes too long, even where memory is no problem.
constexpr qint64 maxPixels = 500'000'000;
/// The decoded image of a format that cannot be scaled down while it is decoded; scaling it down
/// after takes as much again.
constexpr qint64 maxWholeBytes = qint64{128} << 20U;
/// Decoders that read their file whole.
constexpr qint64 maxFileBytes = qint64{128} << 20U;
// What may be decoded again for each frame.
constexpr qint64 maxMoviePixels = 2'000'000;
constexpr qint64 maxMovieBytes = qint64{32} << 20U;

/// Pixels that a drawing's elements may fill, if each fills the whole of it: a matter of seconds.
constexpr double maxDrawnPixels = 3e10;

quint8 byteAt(const QByteArray &bytes, qsizetype index)
{
    return static_cast<quint8>(bytes[index]);
}

/// Whether a JPEG file comes in several scans, whose coefficients are kept for the whole image.
bool hasSeveralScans(QIODevice &device)
{
    constexpr quint8 startOfScan = 0xDA;
    constexpr std::array<quint8, 3> unusualMarkers{0xC4, 0xC8, 0xCC}; // tables among the frames
    int components = 0;
    device.seek(2);
    for (;;) {
        const QByteArray header = device.read(4);
        if (header.size() < 4 || byteAt(header, 0) != 0xFF) {
            return true; // not a JPEG file as expected: assume the worst
        }
        const quint8 marker = byteAt(header, 1);
        if (marker == 0xFF) { // padding
            device.seek(device.pos() - 3);
            continue;
        }
        const int length = byteAt(header, 2) * 256 + byteAt(header, 3);
        const qint64 next = device.pos() + length - 2;
        if (marker >= 0xC0 && marker <= 0xCF &&
            std::count(unusualMarkers.begin(), unusualMarkers.end(), marker) == 0) {
            const QByteArray frame = device.read(6);
            if (frame.size() < 6 || (marker != 0xC0 && marker != 0xC1)) {
                return true;
            }
            // A baseline file has one scan if that scan has all components.
            components = byteAt(frame, 5);
        } else if (marker == startOfScan) {
            const QByteArray scan = device.read(1);
            return scan.isEmpty() || byteAt(scan, 0) < components;
        }
        if (length < 2 || !device.seek(next)) {
            return true;
        }
    }
}

/// Whether a PNG file is scaled down line by line: one of true colour that comes in one pass.
bool isReadByLines(QIODevice &device)
{
    constexpr qint64 bitDepthOffset = 24; // the colour type follows; two bytes on, the passes
    device.seek(bitDepthOffset);
    const QByteArray kind = device.read(5);
    constexpr quint8 colored = 2;
    return kind.size() == 5 && byteAt(kind, 0) == 8 && (byteAt(kind, 1) & colored) != 0 &&
           byteAt(kind, 1) != 3 && byteAt(kind, 4) == 0;
}

struct ImageHeader {
    QByteArray format;
    QSize size; ///< as it is stored; invalid when the format does not tell
    int bytesPerPixel = 4;
    bool isTurned = false; ///< width and height change places when it is upright
    bool isMoving = false;
};

/// A reader for a format that was told by the content, and for no other.
std::unique_ptr<QImageReader> readerOf(QIODevice &device, const QByteArray &format)
{
    device.seek(0);
    auto reader = std::make_unique<QImageReader>(&device, format);
    // With it a reader would try the other formats as well, drawings among them.
    reader->setAutoDetectImageFormat(false);
    return reader;
}

/// Formats that are no images. The reader of the first loads its whole file, and what that refers
/// to, to tell its size.
bool isDrawingOrDocument(const QByteArray &format)
{
    return format.startsWith("svg") || format == "pdf";
}

/// By a reader of its own, since decoders begin where reading the header has left them.
ImageHeader headerOf(QIODevice &device)
{
    ImageHeader header;
    device.seek(0);
    header.format = QImageReader::imageFormat(&device); // looks at the first bytes alone
    if (header.format.isEmpty() || isDrawingOrDocument(header.format)) {
        return {};
    }
    const auto reader = readerOf(device, header.format);
    header.size = reader->size();
    header.isTurned = (reader->transformation() & QImageIOHandler::TransformationRotate90) != 0;
    header.isMoving = reader->supportsAnimation();
    // For a damaged image, readers may return a format that does not exist.
    const QImage::Format pixels = reader->imageFormat();
    if (pixels > QImage::Format_Invalid && pixels < QImage::NImageFormats) {
        // Scaling makes smaller pixels this large.
        header.bytesPerPixel = pixels == QImage::Format_Grayscale16
                                   ? 8
                                   : std::max(QImage::toPixelFormat(pixels).bitsPerPixel() / 8, 4);
    }
    return header;
}

bool readsFileWhole(const QByteArray &format)
{
    constexpr std::array<const char *, 5> readInPieces{"jpeg", "png", "gif", "tiff", "bmp"};
    return std::none_of(readInPieces.begin(), readInPieces.end(),
                        [&](const char *known) { return format == known; });
}

/// The bytes that decoding takes at its height, before anything is scaled.
qint64 bytesToDecode(const ImageHeader &header, qint64 pixels, QIODevice &device)
{
    if (header.format == "jpeg") {
        constexpr qint64 minScale = 64;        // it decodes at an eighth of both sides
        constexpr qint64 coefficientBytes = 3; // of the usual kind, with colours at half scale
        return hasSeveralScans(device) ? pixels * coefficientBytes
                                       : pixels * header.bytesPerPixel / minScale;
    }
    if (header.format == "png" && isReadByLines(device)) {
        return 0;
    }
    return pixels * header.bytesPerPixel;
}

bool isSmallMovie(const ImageHeader &header, QSize size, QIODevice &device)
{
    return header.format == "gif" && header.isMoving &&
           qint64{size.width()} * size.height() <= maxMoviePixels && device.size() <= maxMovieBytes;
}

QSize sizeWithin(QSize size, QSize room)
{
    return size.scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QSize sizeToDraw(QSize nominal, QSize bounds, std::uint64_t work)
{
    const QSizeF size = QSizeF(nominal).scaled(bounds, Qt::KeepAspectRatio);
    const double pixels = size.width() * size.height() * static_cast<double>(work);
    const double scale = std::min(1.0, std::sqrt(maxDrawnPixels / pixels));
    return (size * scale).toSize().expandedTo(QSize(1, 1));
}

} // namespace

DecodedImage decodeImage(QIODevice &device, QSize bounds)
{
    DecodedImage decoded;
    // The header first: a file of a few bytes may claim an image of gigabytes.
    const ImageHeader header = headerOf(device);
    if (header.format.isEmpty()) {
        decoded.problem = DecoderProblem::unreadable;
        return decoded;
    }
    const qint64 pixels = qint64{header.size.width()} * header.size.height();
    if (pixels > maxPixels || bytesToDecode(header, pixels, device) > maxWholeBytes ||
        (readsFileWhole(header.format) && device.size() > maxFileBytes)) {
        decoded.problem = DecoderProblem::tooLarge;
        return decoded;
    }
    const auto reader = readerOf(device, header.format);
    reader->setAutoTransform(true);
    const QSize room = header.isTurned ? bounds.transposed() : bounds;
    if (header.size.isValid() &&
        (header.size.width() > room.width() || header.size.height() > room.height())) {
        // The reader scales before it turns the image, so the room is turned the other way.
        reader->setScaledSize(sizeWithin(header.size, room));
    }
    QImage image = reader->read();
    if (image.isNull()) {
        decoded.problem = DecoderProblem::unreadable;
        return decoded;
    }
    decoded.fullSize = !header.size.isValid() ? image.size()
                       : header.isTurned      ? header.size.transposed()
                                              : header.size;
    if (image.width() > bounds.width() || image.height() > bounds.height()) {
        // A format whose reader does not know the size beforehand.
        image = image.scaled(sizeWithin(image.size(), bounds), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation);
    }
    decoded.image = std::move(image);
    decoded.isMoving = isSmallMovie(header, decoded.fullSize, device);
    return decoded;
}

DecodedImage decodeSvg(QIODevice &device, QSize bounds)
{
    DecodedImage decoded;
    // Qt's renderer would open files that a drawing refers to, and has no limits.
    const auto drawing = filteredSvg(device);
    QSvgRenderer renderer;
    if (!drawing || !renderer.load(drawing->source)) {
        decoded.problem = drawing ? DecoderProblem::unreadable : DecoderProblem::tooLarge;
        return decoded;
    }
    const QSize nominal = renderer.defaultSize().expandedTo(QSize(1, 1));
    QImage image(sizeToDraw(nominal, bounds, drawing->work), QImage::Format_ARGB32_Premultiplied);
    // A new image has undefined pixels.
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(image.rect()));
    painter.end();
    decoded.image = std::move(image);
    decoded.fullSize = nominal;
    return decoded;
}

ImageFrames::ImageFrames(QIODevice &device) : m_device(device)
{
    restart();
}

ImageFrames::~ImageFrames() = default;

void ImageFrames::restart()
{
    m_device.seek(0);
    m_reader = readerOf(m_device, QImageReader::imageFormat(&m_device));
}

ImageFrames::Frame ImageFrames::next()
{
    Frame frame;
    frame.image = m_reader->read();
    // Not every format tells its number of frames. The end shows as a failure, and the animation
    // starts over.
    if (frame.image.isNull()) {
        restart();
        frame.image = m_reader->read();
    }
    frame.delayMs = m_reader->nextImageDelay();
    return frame;
}

} // namespace tessaly
