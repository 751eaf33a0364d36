#include "app/controls/Separator.hpp"

#include "app/controls/Look.hpp"

namespace tessaly {

Separator::Separator(QWidget *parent) : QWidget(parent)
{
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, look::separator);
    setPalette(colors);
}

} // namespace tessaly
