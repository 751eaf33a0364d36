#include "preview/MatroskaDuration.hpp"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>

namespace tessaly {

namespace {

constexpr quint32 headerId = 0x1A45DFA3;
constexpr quint32 segmentId = 0x18538067;
constexpr quint32 informationId = 0x1549A966;
constexpr quint32 timestampScaleId = 0x2AD7B1;
constexpr quint32 durationId = 0x4489;
constexpr quint32 clusterId = 0x1F43B675;

struct Element {
    quint32 id = 0;
    QByteArrayView content; ///< as much of it as there is
    bool isWhole = false;
};

/// A number whose first byte tells by its leading zeros how many bytes follow, taken from the
/// front of the bytes. With the mark of its length, or without.
enum class Mark : quint8 { kept, removed };
std::optional<quint64> takeNumber(QByteArrayView &bytes, int maxByteCount, Mark mark)
{
    if (bytes.isEmpty()) {
        return std::nullopt;
    }
    const auto first = static_cast<quint8>(bytes.front());
    // A first byte of 0 gives nine, which no number has.
    const int byteCount = std::countl_zero(first) + 1;
    if (byteCount > maxByteCount || byteCount > bytes.size()) {
        return std::nullopt;
    }
    quint64 number =
        mark == Mark::kept ? first : first & (0xFFU >> static_cast<unsigned>(byteCount));
    for (const char byte : bytes.sliced(1, byteCount - 1)) {
        number = number << 8U | static_cast<quint8>(byte);
    }
    bytes = bytes.sliced(byteCount);
    return number;
}

/// Takes the first element from the front of the bytes.
std::optional<Element> takeElement(QByteArrayView &bytes)
{
    constexpr int maxIdByteCount = 4;
    constexpr int maxSizeByteCount = 8;
    const auto id = takeNumber(bytes, maxIdByteCount, Mark::kept);
    const auto size = id ? takeNumber(bytes, maxSizeByteCount, Mark::removed) : std::nullopt;
    if (!size) {
        return std::nullopt;
    }
    // An unknown size is larger than any file, too.
    const auto there = std::min<quint64>(*size, static_cast<quint64>(bytes.size()));
    const Element element{static_cast<quint32>(*id), bytes.first(static_cast<qsizetype>(there)),
                          there == *size};
    bytes = bytes.sliced(static_cast<qsizetype>(there));
    return element;
}

/// The content of the first element of this kind, before any that holds pictures or sounds.
std::optional<Element> find(QByteArrayView bytes, quint32 id)
{
    while (const auto element = takeElement(bytes)) {
        if (element->id == id) {
            return element;
        }
        // Clusters hold the media, and the head that was read ends somewhere in them.
        if (element->id == clusterId || !element->isWhole) {
            break;
        }
    }
    return std::nullopt;
}

std::optional<double> floatOf(QByteArrayView bytes)
{
    switch (bytes.size()) {
    case sizeof(float):
        return qFromBigEndian<float>(bytes.data());
    case sizeof(double):
        return qFromBigEndian<double>(bytes.data());
    default:
        return std::nullopt;
    }
}

double scaleOf(QByteArrayView information)
{
    constexpr double usualScale = 1'000'000; // nanoseconds
    const auto element = find(information, timestampScaleId);
    if (!element || element->content.size() > static_cast<qsizetype>(sizeof(quint64))) {
        return usualScale;
    }
    quint64 scale = 0;
    for (const char byte : element->content) {
        scale = scale << 8U | static_cast<quint8>(byte);
    }
    return static_cast<double>(scale);
}

} // namespace

std::optional<qint64> matroskaDuration(QByteArrayView head)
{
    const auto header = takeElement(head);
    if (!header || header->id != headerId) {
        return std::nullopt;
    }
    const auto segment = find(head, segmentId);
    const auto information = segment ? find(segment->content, informationId) : std::nullopt;
    const auto element = information ? find(information->content, durationId) : std::nullopt;
    const auto duration = element && element->isWhole ? floatOf(element->content) : std::nullopt;
    if (!duration) {
        return std::nullopt;
    }
    constexpr double nanosecondsPerMillisecond = 1'000'000;
    constexpr double maxMilliseconds = 1e12; // a damaged file may have any number
    const double milliseconds =
        *duration * scaleOf(information->content) / nanosecondsPerMillisecond;
    if (!(milliseconds >= 1 && milliseconds <= maxMilliseconds)) { // true for NaN, too
        return std::nullopt;
    }
    return std::llround(milliseconds);
}

} // namespace tessaly
