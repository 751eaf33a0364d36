#include "app/controls/IconView.hpp"

#include <QPainter>

#include <cmath>

namespace tessaly {

IconView::IconView(QWidget *parent) : ClickableView(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void IconView::setImage(const QIcon &image, const QString &name)
{
    forgetPress();
    if (!name.isEmpty() && name == m_imageName) {
        return;
    }
    m_image = image;
    m_imageName = name;
    update();
}

void IconView::setImageSize(QSize size)
{
    m_imageSize = size;
    updateGeometry();
    update();
}

void IconView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    // QIcon::paint() enlarges the image for one scale at a scale between two, pixel by pixel. So
    // take the one for the next whole scale, and draw it smaller.
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPixmap image = m_image.pixmap(m_imageSize, std::ceil(painter.deviceTransform().m11()));
    QRect place({0, 0}, image.deviceIndependentSize().toSize());
    place.moveCenter(rect().center());
    painter.drawPixmap(place, image);
}

} // namespace tessaly
