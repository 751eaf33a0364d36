#include "preview/FileTypeIcon.hpp"

#include "app/controls/theme/IconDrawing.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QIcon>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace tessaly {

namespace {

/// A sheet of paper with the ending of the file's name, for a screen with `scale` pixels a point.
QPixmap sheetPixmap(const QString &name, QSize size, double scale)
{
    QPixmap pixmap(size * scale);
    // With the ratio set, the painter counts in the icon's own units.
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / 100.0, size.height() / 100.0); // what follows is 100 by 100
    using namespace theme::preview;
    QLinearGradient shade(0, 6, 0, 94);
    shade.setColorAt(0, sheetTop);
    shade.setColorAt(1, sheetBottom);
    painter.setPen(QPen(sheetEdge, 1));
    painter.setBrush(shade);
    painter.drawPolygon(QPolygonF({{22, 6}, {60, 6}, {80, 26}, {80, 94}, {22, 94}}));
    painter.setBrush(sheetCorner);
    painter.drawPolygon(QPolygonF({{60, 6}, {60, 26}, {80, 26}}));

    constexpr qsizetype maxEndingLength = 5;
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString ending = name.mid(dot + 1).toUpper();
    // A dot at the start marks a hidden file. A long ending would not fit, and is rarely one.
    if (dot > 0 && !ending.isEmpty() && ending.size() <= maxEndingLength) {
        QFont font = painter.font();
        font.setPixelSize(15);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(sheetText);
        painter.drawText(QRectF(22, 60, 58, 24), Qt::AlignCenter, ending);
    }
    return pixmap;
}

} // namespace

void drawFileTypeIcon(QPainter &painter, const PreviewInfo &info, const QRect &place)
{
    // No theme is installed on a bare desktop, and few themes have every type.
    const QIcon icon = QIcon::fromTheme(info.iconName);
    if (icon.isNull()) {
        const double scale = painter.deviceTransform().m11();
        painter.drawPixmap(place.topLeft(), sheetPixmap(info.name, place.size(), scale));
    } else {
        drawIcon(painter, icon, place.size(), place);
    }
}

} // namespace tessaly
