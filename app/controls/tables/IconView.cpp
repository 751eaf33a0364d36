#include "app/controls/tables/IconView.hpp"

#include "app/controls/theme/IconDrawing.hpp"

#include <QPainter>

namespace tessaly {

IconView::IconView(QWidget *parent) : ClickableView(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void IconView::setImage(const QIcon &image, const QString &name)
{
    // The cell shows another row from now on: a press on the old one must not become a click on
    // this.
    forgetPress();
    // Cells are refilled at each reload, mostly with the icon that they have. Icons cannot be
    // compared by what they show, so their names are.
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
    drawIcon(painter, m_image, m_imageSize, rect());
}

} // namespace tessaly
