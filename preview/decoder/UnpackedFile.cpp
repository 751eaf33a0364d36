#include "preview/decoder/UnpackedFile.hpp"

#include <QIODevice>

#include <algorithm>

#include <zlib.h>

namespace tessaly {

namespace {

/// Unpacks the first member of a gzip file; what follows it is no part of a drawing.
std::optional<QByteArray> unpacked(QByteArray packed, qint64 maxByteCount)
{
    constexpr int gzipFormat = 16 + MAX_WBITS;
    constexpr qsizetype minRoom = 64 << 10U;
    z_stream stream{};
    stream.next_in = reinterpret_cast<Bytef *>(packed.data());
    // Fits: the file is no longer than maxByteCount.
    stream.avail_in = static_cast<uInt>(packed.size());
    if (inflateInit2(&stream, gzipFormat) != Z_OK) {
        return std::nullopt;
    }
    QByteArray content;
    int status = Z_OK;
    // Checked while unpacking: gzip packs a thousand to one, so the packed size says nothing.
    while (status == Z_OK && content.size() <= maxByteCount) {
        const qsizetype filled = content.size();
        // Doubled, so that a growing array is copied a few times only.
        content.resize(filled + std::max(filled, minRoom));
        stream.next_out = reinterpret_cast<Bytef *>(content.data() + filled);
        stream.avail_out = static_cast<uInt>(content.size() - filled);
        status = inflate(&stream, Z_NO_FLUSH);
        content.resize(content.size() - static_cast<qsizetype>(stream.avail_out));
    }
    inflateEnd(&stream);
    return status == Z_STREAM_END && content.size() <= maxByteCount
               ? std::optional(std::move(content))
               : std::nullopt;
}

} // namespace

std::optional<QByteArray> unpackedFile(QIODevice &device, qint64 maxByteCount)
{
    // One byte more than allowed tells a file that is too long, whatever its size() says.
    QByteArray content = device.read(maxByteCount + 1);
    if (content.size() > maxByteCount) {
        return std::nullopt;
    }
    return content.startsWith("\x1F\x8B") ? unpacked(std::move(content), maxByteCount)
                                          : std::optional(std::move(content));
}

} // namespace tessaly
