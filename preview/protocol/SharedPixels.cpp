#include "preview/protocol/SharedPixels.hpp"

#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr qint64 bytesPerPixel = 4;

qint64 byteCountOf(QSize size)
{
    // In 64 bits, since the product of two sides of a decoder's choice overflows an int.
    return qint64{size.width()} * size.height() * bytesPerPixel;
}

/// Mapped memory, unmapped when this is destroyed.
struct Mapping {
    Mapping(int descriptor, qint64 length, int protection)
        : byteCount(static_cast<std::size_t>(length)),
          start(mmap(nullptr, byteCount, protection, MAP_SHARED, descriptor, 0))
    {
    }
    ~Mapping()
    {
        if (isMapped()) {
            munmap(start, byteCount);
        }
    }
    Q_DISABLE_COPY_MOVE(Mapping)

    [[nodiscard]] bool isMapped() const { return start != MAP_FAILED; }

    std::size_t byteCount;
    void *start;
};

void destroyMapping(void *mapping)
{
    delete static_cast<Mapping *>(mapping);
}

QImage::Format formatOf(bool hasAlpha)
{
    // The two formats that the raster engine draws without converting them.
    return hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
}

} // namespace

std::optional<SharedPixels> SharedPixels::make(QSize size)
{
    // Bounds the memory of one image, whatever size a view asks for.
    if (size.isEmpty() || qint64{size.width()} * size.height() > maxPixelCount) {
        return std::nullopt;
    }
    // Anonymous memory with a descriptor: no name in /dev/shm that a crash would leave behind.
    scan::FileDescriptor memory(memfd_create("tessaly-preview", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const qint64 byteCount = byteCountOf(size);
    // The seals come after the length, and the last one forbids the decoder to add others.
    if (!memory.isOpen() || ftruncate(memory.number(), byteCount) != 0 ||
        fcntl(memory.number(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return std::nullopt;
    }
    return SharedPixels(std::move(memory), byteCount);
}

QImage SharedPixels::image(QSize size, bool hasAlpha) const
{
    // The size is the decoder's word, so it is checked against the memory that there is.
    if (size.isEmpty() || byteCountOf(size) > m_byteCount) {
        return {};
    }
    // Read-only: QImage copies before it writes. The decoder can still change the pixels, but not
    // the size.
    auto mapping = std::make_unique<Mapping>(descriptor(), byteCountOf(size), PROT_READ);
    if (!mapping->isMapped()) {
        return {};
    }
    const auto *pixels = static_cast<const uchar *>(mapping->start);
    // The mapping belongs to the image, and is unmapped with its last copy.
    return QImage(pixels, size.width(), size.height(), size.width() * bytesPerPixel,
                  formatOf(hasAlpha), destroyMapping, mapping.release());
}

QImage SharedPixels::canvas(const scan::FileDescriptor &memory, QSize size, bool hasAlpha)
{
    auto mapping =
        std::make_unique<Mapping>(memory.number(), byteCountOf(size), PROT_READ | PROT_WRITE);
    if (!mapping->isMapped()) {
        return {};
    }
    auto *pixels = static_cast<uchar *>(mapping->start);
    return QImage(pixels, size.width(), size.height(), size.width() * bytesPerPixel,
                  formatOf(hasAlpha), destroyMapping, mapping.release());
}

} // namespace tessaly
