#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <QImage>
#include <QSize>

#include <optional>

namespace tessaly {

/// Memory for an image, which a decoder fills and the program shows without copying it.
///
/// The program allocates it and seals its size: a decoder that could shrink it would crash the
/// program.
/// The pixels are those of QImage::Format_ARGB32_Premultiplied or Format_RGB32, row by row.
///
/// Threads: one at a time.
class SharedPixels {
public:
    /// Room for an image of this size. Nothing when it is empty, has more than `maxPixelCount`
    /// pixels, or the system has no memory for it.
    [[nodiscard]] static std::optional<SharedPixels> make(QSize size);
    static constexpr qint64 maxPixelCount = 16'000'000;

    /// To be handed to a decoder.
    [[nodiscard]] int descriptor() const noexcept { return m_descriptor.number(); }

    /// The image that was put there; a null image when it would not fit. Keeps the memory.
    [[nodiscard]] QImage image(QSize size, bool hasAlpha) const;

    /// In the decoder: an image that lies in the memory behind this descriptor, to be drawn on. A
    /// null image when the memory cannot be had. Requires: there is room for it.
    [[nodiscard]] static QImage canvas(const scan::FileDescriptor &memory, QSize size,
                                       bool hasAlpha);

private:
    SharedPixels(scan::FileDescriptor descriptor, qint64 byteCount)
        : m_descriptor(std::move(descriptor)), m_byteCount(byteCount)
    {
    }

    scan::FileDescriptor m_descriptor;
    qint64 m_byteCount;
};

} // namespace tessaly
