#include "app/window/PageView.hpp"

namespace tessaly {

PageView::PageView(QWidget *parent) : QStackedWidget(parent)
{
    // The hints depend on the current page, so the layouts around this have to ask again.
    connect(this, &QStackedWidget::currentChanged, this, [this] { updateGeometry(); });
}

QSize PageView::sizeHint() const
{
    return minimumSizeHint();
}

QSize PageView::minimumSizeHint() const
{
    return currentWidget() == nullptr ? QSize() : currentWidget()->minimumSizeHint();
}

} // namespace tessaly
