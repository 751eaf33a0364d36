#include "app/controls/tables/IconView.hpp"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QSize size{28, 28};
constexpr QColor small{255, 0, 0};
constexpr QColor large{0, 0, 255};

QPixmap plain(int scale, QColor color)
{
    QPixmap pixmap(size * scale);
    pixmap.fill(color);
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

/// The view as a screen with this scale shows it.
QImage shown(const QIcon &icon, qreal scale)
{
    IconView view;
    view.setImage(icon);
    view.resize(size);
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::black);
    view.render(&image);
    return image;
}

TEST(IconView, takesTheImageOfTheNextWholeScale)
{
    QIcon icon;
    icon.addPixmap(plain(1, small));
    icon.addPixmap(plain(2, large));
    const struct {
        qreal scale;
        QColor color;
    } cases[]{{1, small}, {1.25, large}, {1.5, large}, {1.75, large}, {2, large}, {2.5, large}};
    for (const auto &each : cases) {
        const QImage image = shown(icon, each.scale);
        EXPECT_EQ(image.pixelColor(image.rect().center()), each.color) << each.scale;
        EXPECT_EQ(image.pixelColor(1, 1), each.color) << "fills its place, at " << each.scale;
    }
}

TEST(IconView, drawsALargerImageSmoothly)
{
    // Lines that are one pixel wide at the double scale get grey at one and a half.
    QImage lines(size * 2, QImage::Format_RGB32);
    lines.fill(Qt::white);
    QPainter painter(&lines);
    for (int x = 0; x < lines.width(); x += 2) {
        painter.fillRect(x, 0, 1, lines.height(), Qt::black);
    }
    painter.end();
    lines.setDevicePixelRatio(2);
    const QImage image = shown(QIcon(QPixmap::fromImage(lines)), 1.5);
    int greys = 0;
    for (int x = 0; x < image.width(); ++x) {
        const int lightness = image.pixelColor(x, image.height() / 2).lightness();
        greys += lightness > 20 && lightness < 235 ? 1 : 0;
    }
    EXPECT_GT(greys, image.width() / 2);
}

TEST(IconView, drawsASmallImageInTheMiddle)
{
    QPixmap dot(8, 8);
    dot.fill(small);
    const QImage image = shown(QIcon(dot), 1);
    EXPECT_EQ(image.pixelColor(14, 14), small);
    EXPECT_NE(image.pixelColor(4, 14), small);
    EXPECT_NE(image.pixelColor(23, 14), small);
}

} // namespace
} // namespace tessaly
