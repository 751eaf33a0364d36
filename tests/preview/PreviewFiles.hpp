#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>

#include <functional>
#include <string>
#include <vector>

namespace tessaly {

// Files to preview, made for a test. Paths are bytes.

void writeFile(const std::string &path, const QByteArray &bytes);

/// An image of one colour, in a format that Qt writes ("png", "jpg", "bmp").
[[nodiscard]] QByteArray imageBytes(const char *format, QSize size, QColor color);

/// A PNG file of grey pixels, one bit each and all 0, however many they are.
[[nodiscard]] QByteArray greyPng(quint32 width, quint32 height);
/// The same in true colour, black.
[[nodiscard]] QByteArray colorPng(quint32 width, quint32 height);

/// The start of a BMP file of this size, 24 bits for a pixel.
[[nodiscard]] QByteArray bmpHeader(qint32 width, qint32 height);

/// A GIF file of one pixel with two pictures, one red and one blue.
[[nodiscard]] QByteArray movingGif();

/// These bytes compressed by gzip.
[[nodiscard]] QByteArray gzipBytes(const QByteArray &bytes);

/// A document of so many pages of 300 by 200 points, with a word on each.
[[nodiscard]] QByteArray pdfBytes(int pageCount);

/// A document of these objects, the first of which is its catalogue.
[[nodiscard]] QByteArray pdfOf(const std::vector<QByteArray> &objects);

/// A second of a sound.
[[nodiscard]] QByteArray wavBytes();

/// A video of so many pictures of one colour, 10 a second.
[[nodiscard]] QByteArray aviBytes(QSize size, QColor color, int pictureCount);

/// Lets events happen until this is true.
void waitUntil(const std::function<bool()> &isTrue);

} // namespace tessaly
