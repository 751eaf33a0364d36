#include "tests/preview/HostileFiles.hpp"

#include "tests/preview/NumberBytes.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <stdexcept>

#include <zlib.h>

namespace tessaly {

namespace {

constexpr quint32 large = 60'000;

/// What zlib makes of the bytes, up to a place where something else may follow, or to the end.
QByteArray deflated(QByteArray bytes, int flush)
{
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("zlib");
    }
    QByteArray packed(static_cast<qsizetype>(deflateBound(&stream, bytes.size()) + 64), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, flush);
    packed.resize(packed.size() - static_cast<qsizetype>(stream.avail_out));
    deflateEnd(&stream);
    return packed;
}

/// The start, a megabyte of the pattern so many times, and the end, without ever having it whole.
struct Bomb {
    Bomb(const QByteArray &start, const QByteArray &pattern, int megabytes, const QByteArray &end)
    {
        const QByteArray block = pattern.repeated((1 << 20U) / pattern.size());
        deflate = deflated(start, Z_FULL_FLUSH) +
                  deflated(block, Z_FULL_FLUSH).repeated(megabytes) + deflated(end, Z_FINISH);
        checksum = crc32(0, reinterpret_cast<const Bytef *>(start.data()),
                         static_cast<uInt>(start.size()));
        const uLong blockSum = crc32(0, reinterpret_cast<const Bytef *>(block.data()),
                                     static_cast<uInt>(block.size()));
        for (int i = 0; i < megabytes; ++i) {
            checksum = crc32_combine(checksum, blockSum, block.size());
        }
        checksum = crc32(checksum, reinterpret_cast<const Bytef *>(end.data()),
                         static_cast<uInt>(end.size()));
        length = start.size() + block.size() * megabytes + end.size();
    }

    [[nodiscard]] QByteArray gzip() const
    {
        return QByteArray("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10) + deflate +
               littleEndian(static_cast<quint32>(checksum)) +
               littleEndian(static_cast<quint32>(length));
    }
    /// Without a checksum, which readers of documents do without.
    [[nodiscard]] QByteArray zlib() const { return "\x78\xDA" + deflate; }

    QByteArray deflate;
    uLong checksum = 0;
    qint64 length = 0;
};

QByteArray svg(const QByteArray &inside)
{
    return R"(<svg xmlns="http://www.w3.org/2000/svg" )"
           R"(xmlns:xlink="http://www.w3.org/1999/xlink" width="100" height="100">)" +
           inside + "</svg>";
}

QByteArray stream(const QByteArray &dictionary, const QByteArray &bytes)
{
    return "<<" + dictionary + "/Length " + QByteArray::number(bytes.size()) + ">>stream\n" +
           bytes + "\nendstream";
}

/// A document of one page with this content and these further objects, from number 5 on.
QByteArray document(const QByteArray &content, const std::vector<QByteArray> &further = {},
                    const QByteArray &box = "0 0 300 200")
{
    std::vector<QByteArray> objects{"<</Type/Catalog/Pages 2 0 R>>",
                                    "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                    "<</Type/Page/Parent 2 0 R/MediaBox[" + box +
                                        "]/Contents 4 0 R/Resources<</XObject<</I 5 0 R>>>>>>",
                                    content};
    objects.insert(objects.end(), further.begin(), further.end());
    return pdfOf(objects);
}

QByteArray jpegHeader(char frame, quint16 side)
{
    const QByteArray table = "\xFF\xDB" + bigEndian(quint16{67}) + '\0' + QByteArray(64, '\1');
    return "\xFF\xD8" + table + "\xFF" + frame + bigEndian(quint16{11}) + '\x08' + bigEndian(side) +
           bigEndian(side) + QByteArray("\x01\x01\x11\x00", 4);
}

/// So many scans over the whole of an image, each of hardly any bytes.
QByteArray jpegOfManyScans()
{
    // One code for the tables: a bit 0 for the symbol 0, the end of a block.
    const QByteArray counts = QByteArray(1, '\1') + QByteArray(15, '\0');
    const QByteArray tables = "\xFF\xC4" + bigEndian(quint16{20}) + QByteArray(1, '\x00') + counts +
                              QByteArray(1, '\0') + "\xFF\xC4" + bigEndian(quint16{20}) +
                              QByteArray(1, '\x10') + counts + QByteArray(1, '\0');
    const QByteArray first("\xFF\xDA\x00\x08\x01\x01\x00\x00\x00\x00\x00\x00", 12);
    const QByteArray next("\xFF\xDA\x00\x08\x01\x01\x00\x01\x3F\x00\x00\x00", 12);
    return jpegHeader('\xC2', 6000) + tables + first + next.repeated(60'000) + "\xFF\xD9";
}

QByteArray tiff(quint32 width, quint32 height, quint32 stripByteCount)
{
    const auto entry = [](quint16 tag, quint32 value) {
        return littleEndian(tag) + littleEndian(quint16{4}) + littleEndian(quint32{1}) +
               littleEndian(value);
    };
    const QByteArray entries = entry(256, width) + entry(257, height) + entry(258, 8) +
                               entry(259, 1) + entry(262, 1) + entry(273, 8) + entry(277, 1) +
                               entry(278, height) + entry(279, stripByteCount);
    return QByteArray("II*\0", 4) + littleEndian(quint32{8}) + littleEndian(quint16{9}) + entries +
           QByteArray(4, '\0');
}

/// An icon that says it is small, of an image that is not.
QByteArray ico(const QByteArray &image)
{
    return QByteArray("\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0", 14) +
           littleEndian(static_cast<quint32>(image.size())) + littleEndian(quint32{22}) + image;
}

QByteArray icns(const QByteArray &image)
{
    const auto length = static_cast<quint32>(image.size());
    return "icns" + bigEndian(length + 16) + "ic10" + bigEndian(length + 8) + image;
}

void addDrawings(std::vector<HostileFile> &files, const QByteArray &pipe)
{
    const QByteArray leadsOut =
        svg(R"(<image width="9" height="9" xlink:href=")" + pipe + R"("/>)" +
            R"(<image width="9" height="9" xlink:href="/dev/zero"/>)");
    for (const char *name : {"pipe.svg", "pipe.png", "pipe.jpg", "pipe.gif", "pipe.ico"}) {
        files.push_back({name, leadsOut});
    }
    files.push_back({"pipe.svgz", gzipBytes(leadsOut)});
    files.push_back({"packed_pipe.png", gzipBytes(leadsOut)});
    const QByteArray head = svg({}).chopped(6);
    files.push_back({"packed.svgz", Bomb(head, " ", 2900, "</svg>").gzip()});
    files.push_back({"packed_elements.svgz", Bomb(head, "<g></g>", 100, "</svg>").gzip()});
    QByteArray entities = "<!ENTITY e0 'aaaaaaaaaa'>";
    for (int i = 1; i < 12; ++i) {
        entities += "<!ENTITY e" + QByteArray::number(i) + " '" +
                    ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    }
    files.push_back(
        {"entities.svg", "<!DOCTYPE svg [" + entities + "]>" + svg("<text>&e11;</text>")});
    files.push_back({"dashes.svg",
                     svg(R"(<path d="M0 0H1000000" stroke="black" )"
                         R"(stroke-width="50" stroke-dasharray="0.00001"/>)"),
                     true});
    files.push_back({"deep.svg", svg(QByteArray("<g>").repeated(500'000))});
}

void addDocuments(std::vector<HostileFile> &files)
{
    const QByteArray packed = "/Filter/FlateDecode";
    const QByteArray drawn = "0 0 m 9 9 l 5 5 l 3 8 l h S\n";
    files.push_back({"content.pdf", document(stream(packed, Bomb("", drawn, 310, "").zlib()))});
    const QByteArray image = "/Type/XObject/Subtype/Image/Width 60000/Height 60000/ColorSpace"
                             "/DeviceRGB/BitsPerComponent 8" +
                             packed;
    files.push_back(
        {"image.pdf", document(stream("", "300 0 0 200 0 0 cm /I Do"),
                               {stream(image, Bomb("", QByteArray(1, '\0'), 3000, "").zlib())})});
    files.push_back({"box.pdf", document(stream("", "0 0 9 9 re f"), {}, "0 0 1e30 1e30")});
    files.push_back(
        {"packed_twice.pdf",
         document(stream("/Filter[/FlateDecode/FlateDecode]",
                         "\x78\xDA" + deflated(Bomb("", drawn, 3000, "").zlib(), Z_FINISH)))});
}

void addImages(std::vector<HostileFile> &files)
{
    files.push_back({"grey.png", greyPng(30'000, 30'000)});
    files.push_back({"wide.png", greyPng(400'000'000, 1)});
    files.push_back({"jpeg.jpg", jpegHeader('\xC0', large) + "\xFF\xDA"});
    files.push_back({"progressive.jpg", jpegHeader('\xC2', large) + "\xFF\xDA"});
    files.push_back({"scans.jpg", jpegOfManyScans(), true});
    const QByteArray gifFrame("\x2C\0\0\0\0\xFF\xFF\xFF\xFF\0\x08\xFF", 12);
    files.push_back({"gif.gif", QByteArray("GIF89a\xFF\xFF\xFF\xFF\0\0\0", 13) + gifFrame});
    const QByteArray vp8l = QByteArray("VP8L\x05\0\0\0\x2F\xFF\xFF\xFF\x0F\0", 14);
    files.push_back({"webp.webp", "RIFF" + littleEndian(quint32{18}) + "WEBP" + vp8l});
    files.push_back({"tiff.tiff", tiff(large, large, 8)});
    files.push_back({"strip.tiff", tiff(100, 100, 0xFFFF'FFF0U)});
    files.push_back({"bmp.bmp", bmpHeader(30'000, 30'000)});
    const QByteArray inside = colorPng(13'000, 13'000);
    files.push_back({"icon.ico", ico(inside)});
    files.push_back({"icon.icns", icns(inside)});
    files.push_back({"tga.tga", QByteArray(2, '\0') + '\2' + QByteArray(9, '\0') +
                                    littleEndian(quint16{65'535}) + littleEndian(quint16{65'535}) +
                                    QByteArray("\x20\x28", 2)});
    files.push_back({"ppm.ppm", "P6 60000 60000 255\n"});
    files.push_back({"xbm.xbm", "#define a_width 60000\n#define a_height 60000\n"
                                "static char a_bits[] = {\n0x00"});
    files.push_back({"xpm.xpm", "/* XPM */\nstatic char *a[] = {\n\"60000 60000 1 1\",\n\"a c "
                                "#000000\",\n\"a\"};"});
    files.push_back({"mng.mng", QByteArray("\x8AMNG\r\n\x1A\n\0\0\0\x1CMHDR", 16) +
                                    bigEndian(large) + bigEndian(large) + QByteArray(24, '\0')});
}

} // namespace

std::vector<HostileFile> hostileFiles(const std::string &pipe)
{
    std::vector<HostileFile> files;
    addDrawings(files, QByteArray::fromStdString(pipe));
    addDocuments(files);
    addImages(files);
    return files;
}

} // namespace tessaly
