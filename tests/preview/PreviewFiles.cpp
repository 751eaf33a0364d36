#include "tests/preview/PreviewFiles.hpp"

#include "tests/preview/NumberBytes.hpp"

#include <QBuffer>
#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>

#include <array>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace tessaly {

namespace {

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

QByteArray pngChunk(const char *name, const QByteArray &bytes)
{
    const QByteArray named = name + bytes;
    return bigEndian(static_cast<quint32>(bytes.size())) + named + bigEndian(crc32(named));
}

QByteArray png(quint32 width, quint32 height, const QByteArray &kind, const QByteArray &row)
{
    QByteArray pixels = qCompress(row.repeated(static_cast<qsizetype>(height)), 1);
    pixels.remove(0, 4); // Qt's own length
    return QByteArray("\x89PNG\r\n\x1A\n", 8) +
           pngChunk("IHDR", bigEndian(width) + bigEndian(height) + kind) +
           pngChunk("IDAT", pixels) + pngChunk("IEND", {});
}

/// A chunk of a RIFF file; an odd one is padded.
QByteArray riffChunk(const char *name, const QByteArray &bytes)
{
    const QByteArray padding(bytes.size() % 2, '\0');
    return name + littleEndian(static_cast<quint32>(bytes.size())) + bytes + padding;
}

QByteArray numbers(std::initializer_list<quint32> values)
{
    QByteArray bytes;
    for (const quint32 value : values) {
        bytes += littleEndian(value);
    }
    return bytes;
}

} // namespace

void writeFile(const std::string &path, const QByteArray &bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), bytes.size());
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

QByteArray imageBytes(const char *format, QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, format)) {
        throw std::runtime_error("cannot make an image");
    }
    return bytes;
}

QByteArray greyPng(quint32 width, quint32 height)
{
    const QByteArray row(1 + (static_cast<qsizetype>(width) + 7) / 8, '\0');
    return png(width, height, QByteArray("\x01\x00\x00\x00\x00", 5), row);
}

QByteArray colorPng(quint32 width, quint32 height)
{
    const QByteArray row(1 + static_cast<qsizetype>(width) * 3, '\0');
    return png(width, height, QByteArray("\x08\x02\x00\x00\x00", 5), row);
}

QByteArray bmpHeader(qint32 width, qint32 height)
{
    const auto w = static_cast<quint32>(width);
    const auto h = static_cast<quint32>(height);
    return "BM" + numbers({54 + w * h * 3, 0, 54, 40, w, h, 1U | 24U << 16U, 0, 0, 0, 0, 0, 0});
}

QByteArray movingGif()
{
    const QByteArray delay("\x21\xF9\x04\x00\x01\x00\x00\x00", 8);
    const QByteArray place("\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00", 10);
    return QByteArray("GIF89a\x01\x00\x01\x00\x80\x00\x00\xFF\x00\x00\x00\x00\xFF", 19) + delay +
           place + QByteArray("\x02\x02\x44\x01\x00", 5) + delay + place +
           QByteArray("\x02\x02\x4C\x01\x00", 5) + ';';
}

QByteArray gzipBytes(const QByteArray &bytes)
{
    const QByteArray packed = qCompress(bytes, 9);
    // Between Qt's length with the two bytes of zlib's header, and its checksum.
    const QByteArray deflated = packed.sliced(6, packed.size() - 10);
    return QByteArray("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10) + deflated + littleEndian(crc32(bytes)) +
           littleEndian(static_cast<quint32>(bytes.size()));
}

QByteArray pdfOf(const std::vector<QByteArray> &objects)
{
    QByteArray bytes = "%PDF-1.4\n";
    QByteArray table;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        table += QByteArray::number(bytes.size()).rightJustified(10, '0') + " 00000 n \n";
        bytes += QByteArray::number(static_cast<int>(i) + 1) + " 0 obj" + objects[i] + " endobj\n";
    }
    const QByteArray count = QByteArray::number(static_cast<int>(objects.size()) + 1);
    const QByteArray tableOffset = QByteArray::number(bytes.size());
    return bytes + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer<</Size " +
           count + "/Root 1 0 R>>\nstartxref\n" + tableOffset + "\n%%EOF";
}

QByteArray pdfBytes(int pageCount)
{
    std::vector<QByteArray> objects{
        "<</Type/Catalog/Pages 2 0 R>>", {}, "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"};
    QByteArray pages;
    for (int page = 0; page < pageCount; ++page) {
        const QByteArray stream = "BT /F1 24 Tf 40 100 Td (Page " + QByteArray::number(page + 1) +
                                  ") Tj ET 0 0 1 rg 40 60 100 20 re f";
        const QByteArray number = QByteArray::number(static_cast<int>(objects.size()) + 1);
        pages += number + " 0 R ";
        objects.push_back("<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 200]/Contents " +
                          QByteArray::number(static_cast<int>(objects.size()) + 2) +
                          " 0 R/Resources<</Font<</F1 3 0 R>>>>>>");
        objects.push_back("<</Length " + QByteArray::number(stream.size()) + ">>stream\n" + stream +
                          "\nendstream");
    }
    objects[1] = "<</Type/Pages/Kids[" + pages + "]/Count " + QByteArray::number(pageCount) + ">>";
    return pdfOf(objects);
}

QByteArray wavBytes()
{
    constexpr quint32 rate = 8000;
    QByteArray samples;
    for (quint32 i = 0; i < rate; ++i) {
        samples += littleEndian(static_cast<qint16>(i % 20 < 10 ? 4000 : -4000));
    }
    const QByteArray format = numbers({1U | 1U << 16U, rate, rate * 2, 2U | 16U << 16U});
    return riffChunk("RIFF", "WAVE" + riffChunk("fmt ", format) + riffChunk("data", samples));
}

QByteArray aviBytes(QSize size, QColor color, int pictureCount)
{
    const QByteArray picture = imageBytes("jpg", size, color);
    const auto width = static_cast<quint32>(size.width());
    const auto height = static_cast<quint32>(size.height());
    const auto count = static_cast<quint32>(pictureCount);
    const auto length = static_cast<quint32>(picture.size());
    const QByteArray mainHeader =
        numbers({100'000, length * 10, 0, 0x10, count, 0, 1, length, width, height, 0, 0, 0, 0});
    const QByteArray streamHeader =
        "vidsMJPG" + numbers({0, 0, 0, 1, 10, 0, count, length, 0, 0, 0, width | height << 16U});
    const QByteArray format = numbers({40, width, height, 1U | 24U << 16U}) + "MJPG" +
                              numbers({width * height * 3, 0, 0, 0, 0});
    const QByteArray stream =
        riffChunk("LIST", "strl" + riffChunk("strh", streamHeader) + riffChunk("strf", format));
    QByteArray pictures = "movi";
    QByteArray index;
    for (int i = 0; i < pictureCount; ++i) {
        index += "00dc" + numbers({0x10, static_cast<quint32>(pictures.size()), length});
        pictures += riffChunk("00dc", picture);
    }
    return riffChunk("RIFF",
                     "AVI " + riffChunk("LIST", "hdrl" + riffChunk("avih", mainHeader) + stream) +
                         riffChunk("LIST", pictures) + riffChunk("idx1", index));
}

void waitUntil(const std::function<bool()> &isTrue)
{
    while (!isTrue()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace tessaly
