#pragma once

#include <QColor>
#include <QFont>

class QWidget;

namespace tessaly {

// How the preview panel looks, in the colours of theme::preview.

/// Gives the panel's window its colours.
void applyPreviewTheme(QWidget &window);

void setTextColor(QWidget &label, const QColor &color);
/// With the font; the size is in pixels.
void setTextStyle(QWidget &label, int pixelSize, QFont::Weight weight, const QColor &color);

} // namespace tessaly
