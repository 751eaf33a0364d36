#include "app/controls/frame/WindowPlacement.hpp"

#include <QDataStream>
#include <QIODevice>

#include <cstdint>

namespace tessaly {

namespace {

// The last digit is the version of what follows.
constexpr std::uint32_t signature = 0x5457'5001;

// Beyond every screen, and small enough that sums of coordinates do not overflow an int.
constexpr std::int32_t maxLength = 1'000'000;

bool isPlausible(std::int32_t place)
{
    return place >= -maxLength && place <= maxLength;
}

} // namespace

QByteArray WindowPlacement::bytes() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    // Pinned, so that another version of Qt reads the same bytes.
    stream.setVersion(QDataStream::Qt_6_4);
    stream << signature << std::int32_t{frame.x()} << std::int32_t{frame.y()}
           << std::int32_t{frame.width()} << std::int32_t{frame.height()} << isMaximized;
    return bytes;
}

std::optional<WindowPlacement> WindowPlacement::fromBytes(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    std::uint32_t found = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool isMaximized = false;
    stream >> found >> x >> y >> width >> height >> isMaximized;
    // The settings can be edited by anyone. Bytes that are too short, too long or of another kind
    // give no placement.
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || found != signature) {
        return {};
    }
    const bool isFrame = isPlausible(x) && isPlausible(y) && isPlausible(width) &&
                         isPlausible(height) && width > 0 && height > 0;
    if (!isFrame) {
        return {};
    }
    return WindowPlacement{{x, y, width, height}, isMaximized};
}

} // namespace tessaly
