#include "tests/preview/WebmFile.hpp"

#include "tests/preview/PreviewFiles.hpp"

#include <QtEndian>

namespace tessaly {

namespace {

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

/// An element, by the digits of its identifier.
QByteArray element(const char *id, const QByteArray &content)
{
    constexpr quint32 sizeMark = 0x1000'0000; // of a size of four bytes
    return QByteArray::fromHex(id) + bigEndian(sizeMark | static_cast<quint32>(content.size())) +
           content;
}

QByteArray element(const char *id, int number)
{
    return element(id, bigEndian(static_cast<quint32>(number)));
}

} // namespace

QByteArray webmBytes(QSize size, QColor color, int pictureCount, std::optional<double> durationMs)
{
    constexpr int millisecond = 1'000'000;
    constexpr quint8 keyFrame = 0x80;
    const QByteArray head =
        element("1A45DFA3", element("4286", 1) + element("42F7", 1) + element("42F2", 4) +
                                element("42F3", 8) + element("4282", QByteArray("webm")) +
                                element("4287", 4) + element("4285", 2));
    QByteArray duration(sizeof(double), '\0');
    qToBigEndian(durationMs.value_or(0), duration.data());
    const QByteArray information =
        element("1549A966", element("2AD7B1", millisecond) + element("4D80", QByteArray("test")) +
                                element("5741", QByteArray("test")) +
                                (durationMs ? element("4489", duration) : QByteArray()));
    const QByteArray picture =
        element("E0", element("B0", size.width()) + element("BA", size.height()));
    const QByteArray tracks =
        element("1654AE6B", element("AE", element("D7", 1) + element("73C5", 1) + element("83", 1) +
                                              element("86", QByteArray("V_MJPEG")) + picture));
    const QByteArray image = imageBytes("jpg", size, color);
    QByteArray blocks;
    for (int i = 0; i < pictureCount; ++i) {
        QByteArray time(sizeof(quint16), '\0');
        qToBigEndian(static_cast<quint16>(i * 100), time.data());
        blocks += element("A3", '\x81' + time + static_cast<char>(keyFrame) + image);
    }
    const QByteArray segment = QByteArray::fromHex("18538067"
                                                   "01FFFFFFFFFFFFFF"); // of unknown size
    return head + segment + information + tracks + element("1F43B675", element("E7", 0) + blocks);
}

} // namespace tessaly
