#include "app/controls/buttons/KORVENButton.hpp"

#include "app/controls/theme/IconDrawing.hpp"
#include "app/controls/theme/NinePatch.hpp"
#include "app/controls/theme/Theme.hpp"
#include "resources/Artwork.hpp"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Points, of the images and of the layout.
constexpr int imageCap = 6;
constexpr int minHeight = 28;
constexpr int minWidth = 32;
constexpr int besideTitle = 16;
constexpr int besideSign = 9; ///< of a button that shows an icon or a single sign
constexpr int aboveAndBelow = 6;
constexpr int betweenIconAndTitle = 6;
constexpr int ringCorner = 5;
constexpr double faded = 0.45;

/// The image for a screen with `scale` pixels a point. Of two images the smaller one between whole
/// scales, since stretching keeps its edges: its lines get thinner than a point, never thicker.
QImage faceImage(const QString &name, double scale, int &cap)
{
    const int imageScale = scale >= 2 ? 2 : 1;
    cap = imageCap * imageScale;
    QString path = artworkPath(name);
    if (imageScale == 2) {
        path.replace(u".png"_s, u"@2x.png"_s);
    }
    return QImage(path);
}

/// The face at a size in pixels, kept for the next time.
QPixmap face(const QString &name, QSize pixels, double scale, bool lit)
{
    // QPixmapCache is shared by the whole program, hence the prefix. The scale is part of the key,
    // since a window may move to another screen.
    const QString key = u"tessaly %1 %2x%3 %4 %5"_s.arg(name)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(scale)
                            .arg(lit);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    int cap = 0;
    const QImage image = faceImage(name, scale, cap);
    QImage stretched = stretchNinePatch(image, cap, pixels);
    if (stretched.isNull()) {
        return {};
    }
    if (lit) {
        QPainter painter(&stretched);
        // Only where the face has pixels: its round corners stay transparent.
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(stretched.rect(), theme::buttonHover);
    }
    stretched.setDevicePixelRatio(scale);
    pixmap = QPixmap::fromImage(stretched);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

KORVENButton::KORVENButton(QWidget *parent) : KORVENButton(QString(), parent) {}

KORVENButton::KORVENButton(const QString &title, QWidget *parent) : QPushButton(title, parent)
{
    setAttribute(Qt::WA_Hover); // repaints when the pointer enters or leaves
    // In the button's own palette, so that it stays when the colours of the application change.
    setColorWhite();
}

void KORVENButton::setColorWhite()
{
    QPalette colors = palette();
    colors.setColor(QPalette::ButtonText, theme::text);
    setPalette(colors);
}

void KORVENButton::setTitle(const QString &title)
{
    const QKeySequence keys = shortcut(); // setText() takes it away unless the text has an "&"
    setText(title);
    if (shortcut().isEmpty()) {
        setShortcut(keys);
    }
    if (!m_run10p7Mode) {
        setColorWhite();
    }
}

void KORVENButton::set10p7Mode()
{
    setRun10p7Mode(true);
    setPalette(QPalette()); // that of the application
    setTitle(text());
}

void KORVENButton::setRun10p7Mode(bool mode)
{
    m_run10p7Mode = mode;
    updateGeometry();
    update();
}

QString KORVENButton::imageName() const
{
    return isDown() || isChecked() ? u"_tq_butp.png"_s : u"_tq_but.png"_s;
}

QSize KORVENButton::sizeHint() const
{
    if (m_run10p7Mode) {
        return QPushButton::sizeHint();
    }
    const QFontMetrics metrics = fontMetrics();
    const QSize title = metrics.size(Qt::TextShowMnemonic, text());
    const bool sign = text().size() <= 1;
    int width = text().isEmpty() ? 0 : title.width();
    int height = std::max(metrics.height(), title.height());
    if (!icon().isNull()) {
        width += iconSize().width() + (text().isEmpty() ? 0 : betweenIconAndTitle);
        height = std::max(height, iconSize().height());
    }
    return {std::max(minWidth, width + 2 * (sign ? besideSign : besideTitle)),
            std::max(minHeight, height + 2 * aboveAndBelow)};
}

QSize KORVENButton::minimumSizeHint() const
{
    return m_run10p7Mode ? QPushButton::minimumSizeHint() : sizeHint();
}

void KORVENButton::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::MouseFocusReason:
        m_focusCameByKeyboard = false;
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
        break; // the focus returns to where it was, and so does the ring
    default:
        m_focusCameByKeyboard = true;
    }
    QPushButton::focusInEvent(event);
}

void KORVENButton::paintEvent(QPaintEvent *event)
{
    if (m_run10p7Mode) {
        QPushButton::paintEvent(event);
        return;
    }
    QPainter painter(this);
    if (!isEnabled()) {
        painter.setOpacity(faded);
    }
    // A flat button shows its face only while it is used.
    if (!isFlat() || isDown() || underMouse()) {
        drawFace(painter);
    }
    if (hasFocus() && m_focusCameByKeyboard) {
        drawFocusRing(painter);
    }
    drawLabel(painter);
}

void KORVENButton::drawFace(QPainter &painter) const
{
    // The painter may draw on another screen than the widget's, or on an image.
    const QTransform &toPixels = painter.deviceTransform();
    const double scale = toPixels.m11();
    // Whole pixels that belong to the button alone; the painter may cut off the others.
    const QRectF edges = toPixels.mapRect(QRectF(rect()));
    const QPointF first(std::ceil(edges.left()), std::ceil(edges.top()));
    const QPointF behind(std::floor(edges.right()), std::floor(edges.bottom()));
    const QSize pixels = QRectF(first, behind).size().toSize();
    const bool lit = isEnabled() && !isDown() && underMouse();
    const QPixmap pixmap = face(imageName(), pixels, scale, lit);
    if (!pixmap.isNull()) {
        painter.drawPixmap((first - edges.topLeft()) / scale, pixmap);
    }
}

void KORVENButton::drawFocusRing(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme::focusRing, 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), ringCorner - 1, ringCorner - 1);
    painter.restore();
}

void KORVENButton::drawLabel(QPainter &painter) const
{
    const QRect inside = rect().adjusted(imageCap, 0, -imageCap, 0);
    const int iconWidth = icon().isNull() ? 0 : iconSize().width();
    const int between = iconWidth > 0 && !text().isEmpty() ? betweenIconAndTitle : 0;
    const QString title = fontMetrics().elidedText(
        text(), Qt::ElideRight, inside.width() - iconWidth - between, Qt::TextShowMnemonic);
    const int titleWidth = fontMetrics().size(Qt::TextShowMnemonic, title).width();
    const int contents = iconWidth + between + (title.isEmpty() ? 0 : titleWidth);
    QRect whole(inside.left() + (inside.width() - contents) / 2, 0, contents, height());

    if (iconWidth > 0) {
        const QRect leading(whole.topLeft(), QSize(iconWidth, whole.height()));
        drawIcon(painter, icon(), iconSize(),
                 QStyle::visualRect(layoutDirection(), whole, leading));
    }
    painter.setPen(palette().color(QPalette::ButtonText));
    const QRect trailing = whole.adjusted(iconWidth + between, 0, 0, 0);
    painter.drawText(QStyle::visualRect(layoutDirection(), whole, trailing),
                     Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip, title);
}

} // namespace tessaly
