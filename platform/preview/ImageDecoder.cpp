#include "platform/preview/ImageDecoder.hpp"

#include "platform/preview/PreviewFile.hpp"
#include "platform/preview/SvgFilter.hpp"

#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <mutex>

namespace tessaly {

namespace {

/// More than this takes too long, however little memory it takes.
constexpr qint64 mostPixels = 500'000'000;
/// The decoded image of a format that cannot be scaled down while it is decoded; scaling it down
/// after takes as much again.
constexpr qint64 mostWholeBytes = qint64{128} << 20U;
/// Decoders that read their file whole.
constexpr qint64 mostFileBytes = qint64{128} << 20U;
/// From here on one at a time.
constexpr qint64 largeBytes = qint64{32} << 20U;
// What may be decoded anew for each frame, on the main thread.
constexpr qint64 mostMoviePixels = 2'000'000;
constexpr qint64 mostMovieBytes = qint64{32} << 20U;

/// Pixels that a drawing's elements may fill, if each fills the whole of it: a matter of seconds.
constexpr double mostDrawnPixels = 3e10;
/// Larger drawings are drawn in strips, between which they can be stopped.
constexpr std::uint64_t simpleDrawing = 2000;

std::mutex largeDecodes;

quint8 byteAt(const QByteArray &bytes, qsizetype index)
{
    return static_cast<quint8>(bytes[index]);
}

/// Whether a JPEG file comes in several scans, whose coefficients are kept for the whole image.
bool hasSeveralScans(PreviewFile &file)
{
    constexpr quint8 startOfScan = 0xDA;
    constexpr std::array<quint8, 3> unusualMarkers{0xC4, 0xC8, 0xCC}; // tables among the frames
    int components = 0;
    file.seek(2);
    for (;;) {
        const QByteArray header = file.read(4);
        if (header.size() < 4 || byteAt(header, 0) != 0xFF) {
            return true; // nothing can be said
        }
        const quint8 marker = byteAt(header, 1);
        if (marker == 0xFF) { // padding
            file.seek(file.pos() - 3);
            continue;
        }
        const int length = byteAt(header, 2) * 256 + byteAt(header, 3);
        const qint64 next = file.pos() + length - 2;
        if (marker >= 0xC0 && marker <= 0xCF &&
            std::count(unusualMarkers.begin(), unusualMarkers.end(), marker) == 0) {
            const QByteArray frame = file.read(6);
            if (frame.size() < 6 || (marker != 0xC0 && marker != 0xC1)) {
                return true;
            }
            components = byteAt(frame, 5);
        } else if (marker == startOfScan) {
            const QByteArray scan = file.read(1);
            return scan.isEmpty() || byteAt(scan, 0) < components;
        }
        if (length < 2 || !file.seek(next)) {
            return true;
        }
    }
}

/// Whether a PNG file is scaled down line by line: one of true colour that comes in one pass.
bool isReadByLines(PreviewFile &file)
{
    constexpr qint64 bitDepthOffset = 24; // the colour type follows; two bytes on, the passes
    file.seek(bitDepthOffset);
    const QByteArray kind = file.read(5);
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

/// By a reader of its own, since decoders begin where reading the header has left them.
ImageHeader headerOf(PreviewFile &file)
{
    file.seek(0);
    QImageReader reader(&file);
    ImageHeader header;
    header.format = reader.format();
    header.size = reader.size();
    header.isTurned = (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
    header.isMoving = reader.supportsAnimation();
    // Of a damaged image, decoders may tell a format that there is none of.
    const QImage::Format pixels = reader.imageFormat();
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
qint64 bytesToDecode(const ImageHeader &header, qint64 pixels, PreviewFile &file)
{
    if (header.format == "jpeg") {
        constexpr qint64 leastScale = 64;      // it decodes at an eighth of both sides
        constexpr qint64 coefficientBytes = 3; // of the usual kind, with colours at half scale
        return hasSeveralScans(file) ? pixels * coefficientBytes
                                     : pixels * header.bytesPerPixel / leastScale;
    }
    if (header.format == "png" && isReadByLines(file)) {
        return 0;
    }
    return pixels * header.bytesPerPixel;
}

/// The file's bytes, if its image can be decoded again and again.
QByteArray movieOf(QSize size, PreviewFile &file)
{
    const bool isSmall = qint64{size.width()} * size.height() <= mostMoviePixels;
    return isSmall && file.size() <= mostMovieBytes && file.seek(0) ? file.read(mostMovieBytes)
                                                                    : QByteArray();
}

QSize sizeToDraw(QSize nominal, QSize bounds, std::uint64_t work)
{
    const QSizeF size = QSizeF(nominal).scaled(bounds, Qt::KeepAspectRatio);
    const double pixels = size.width() * size.height() * static_cast<double>(work);
    const double scale = std::min(1.0, std::sqrt(mostDrawnPixels / pixels));
    return (size * scale).toSize().expandedTo(QSize(1, 1));
}

} // namespace

DecodedImage decodeImage(PreviewFile &file, QSize bounds)
{
    DecodedImage decoded;
    const ImageHeader header = headerOf(file);
    // The last two would not be read as images, and the first of them looks at other files.
    if (header.format.isEmpty() || header.format.startsWith("svg") || header.format == "pdf") {
        decoded.problem = ImageProblem::unreadable;
        return decoded;
    }
    const qint64 pixels = qint64{header.size.width()} * header.size.height();
    const qint64 bytes = bytesToDecode(header, pixels, file);
    if (pixels > mostPixels || bytes > mostWholeBytes ||
        (readsFileWhole(header.format) && file.size() > mostFileBytes)) {
        decoded.problem = ImageProblem::tooLarge;
        return decoded;
    }
    file.seek(0);
    QImageReader reader(&file, header.format);
    reader.setAutoTransform(true);
    const QSize room = header.isTurned ? bounds.transposed() : bounds;
    if (header.size.isValid() &&
        (header.size.width() > room.width() || header.size.height() > room.height())) {
        const QSize scaled = header.size.scaled(room, Qt::KeepAspectRatio);
        reader.setScaledSize(scaled.expandedTo(QSize(1, 1)));
    }
    std::unique_lock lock(largeDecodes, std::defer_lock);
    if (bytes > largeBytes) {
        lock.lock();
    }
    QImage image = reader.read();
    if (image.isNull()) {
        decoded.problem = ImageProblem::unreadable;
        return decoded;
    }
    QSize &fullSize = decoded.image.fullSize;
    fullSize = !header.size.isValid() ? image.size()
               : header.isTurned      ? header.size.transposed()
                                      : header.size;
    decoded.image.image = std::move(image);
    if (header.format == "gif" && header.isMoving) {
        decoded.image.movie = movieOf(fullSize, file);
    }
    return decoded;
}

DecodedImage decodeSvg(PreviewFile &file, QSize bounds)
{
    DecodedImage decoded;
    const auto drawing = filteredSvg(file);
    QSvgRenderer renderer;
    if (!drawing || !renderer.load(drawing->source)) {
        decoded.problem = drawing ? ImageProblem::unreadable : ImageProblem::tooLarge;
        return decoded;
    }
    const QSize nominal = renderer.defaultSize().expandedTo(QSize(1, 1));
    QImage image(sizeToDraw(nominal, bounds, drawing->work), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const int stripCount = drawing->work > simpleDrawing ? 6 : 1;
    for (int strip = 0; strip < stripCount; ++strip) {
        if (file.isStopped()) {
            decoded.problem = ImageProblem::unreadable;
            return decoded;
        }
        const int top = image.height() * strip / stripCount;
        const int end = image.height() * (strip + 1) / stripCount;
        painter.setClipRect(0, top, image.width(), end - top);
        renderer.render(&painter, QRectF(image.rect()));
    }
    painter.end();
    decoded.image.image = std::move(image);
    decoded.image.fullSize = nominal;
    decoded.image.mayGrow = true;
    return decoded;
}

} // namespace tessaly
