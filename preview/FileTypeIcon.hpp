#pragma once

#include "preview/PreviewContent.hpp"

class QPainter;
class QRect;

namespace tessaly {

/// Draws the icon of a file's type as large as `place`, a square: the icon theme's, or a sheet of
/// paper with the file's ending when the theme has none.
///
/// Threads: the main thread.
void drawFileTypeIcon(QPainter &painter, const PreviewInfo &info, const QRect &place);

} // namespace tessaly
