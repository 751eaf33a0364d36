#include "preview/ImageView.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPaintEvent>
#include <QPainter>

namespace tessaly {

namespace {

constexpr int margin = 16;

/// What is seen through transparent parts.
void drawCheckers(QPainter &painter, const QRect &place)
{
    constexpr int side = 8;
    QPixmap tile(side * 2, side * 2);
    tile.fill(theme::preview::checker);
    QPainter tilePainter(&tile);
    tilePainter.fillRect(0, 0, side, side, theme::preview::paper);
    tilePainter.fillRect(side, side, side, side, theme::preview::paper);
    tilePainter.end();
    painter.drawTiledPixmap(place, tile);
}

} // namespace

ImageView::ImageView(QWidget *parent) : QWidget(parent)
{
    // One frame at a time: a decoder that is slower than the animation slows it down, and no frames
    // queue up.
    m_frameTimer.setSingleShot(true);
    // A coarse timer may be 5 % late or early, which shows in an animation.
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_frameTimer, &QTimer::timeout, this, &ImageView::frameWanted);
}

ImageView::~ImageView() = default;

void ImageView::show(const PreviewImage &image)
{
    clear();
    m_image = image;
    update();
    if (isMoving()) {
        Q_EMIT frameWanted();
    }
}

void ImageView::clear()
{
    m_frameTimer.stop();
    m_image = {};
    m_scaled = {};
    update();
}

void ImageView::setFrame(const QImage &image, int delayMs)
{
    // A frame that was asked for may arrive after clear(), or for the image before.
    if (isMoving()) {
        m_image.image = image;
        m_frameTimer.start(delayMs);
        update();
    }
}

QRect ImageView::place() const
{
    const QRect room = rect().adjusted(margin, margin, -margin, -margin);
    QSizeF size = m_image.image.size();
    // One pixel of the image is one pixel of the screen, also at a fractional scale. The decoded
    // image may be smaller than the file's: fullSize is the one to show.
    const QSizeF natural = QSizeF(m_image.fullSize) / devicePixelRatioF();
    if (m_image.mayGrow || natural.width() > room.width() || natural.height() > room.height()) {
        size = size.scaled(room.size(), Qt::KeepAspectRatio);
    } else {
        size = natural;
    }
    // A very long and thin image would round to nothing.
    QRect place(QPoint(), size.toSize().expandedTo(QSize(1, 1)));
    place.moveCenter(room.center());
    return place;
}

void ImageView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    // All of it, since the image rarely fills the view.
    painter.fillRect(rect(), theme::preview::page);
    if (m_image.image.isNull()) {
        return;
    }
    const QRect target = place();
    if (m_image.image.hasAlphaChannel()) {
        drawCheckers(painter, target);
    }
    if (isMoving()) { // scaled at each painting: a scaled copy would be shown only once
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(target, m_image.image);
        return;
    }
    // Scaled once and kept: smooth scaling of a large image takes longer than a repaint may.
    const QSize pixels = (QSizeF(target.size()) * devicePixelRatioF()).toSize();
    if (m_scaled.size() != pixels) {
        m_scaled = QPixmap::fromImage(
            m_image.image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    painter.drawPixmap(target, m_scaled);
}

} // namespace tessaly
