#pragma once

#include <QImage>

namespace tessaly {

/// The image at another size: its corners pixel by pixel, its edges stretched along themselves and
/// what lies between stretched both ways. Nothing is smoothed, so sharp lines stay sharp.
///
/// `cap`:  pixels from an edge to where the stretched part begins; less where the image or `size`
///         has no room for it.
/// `size`: pixels. An empty size, or an image without pixels, gives an image without pixels.
[[nodiscard]] QImage stretchNinePatch(const QImage &image, int cap, QSize size);

} // namespace tessaly
