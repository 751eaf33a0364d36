#include "app/controls/theme/Separator.hpp"

#include "app/controls/theme/Theme.hpp"

namespace tessaly {

Separator::Separator(QWidget *parent) : QWidget(parent)
{
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, theme::separator);
    setPalette(colors);
}

} // namespace tessaly
