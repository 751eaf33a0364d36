#include "app/controls/bars/BarGeometry.hpp"

namespace tessaly {

namespace {

constexpr float margins = 4.0F;
constexpr float start = 7.0F;
constexpr float beforeEnd = 3.0F;
constexpr float aboveBottom = 10.0F;
constexpr float minPercent = 0.005F;

} // namespace

BarGeometry barGeometry(QSizeF widgetSize, float barPercent, Qt::LayoutDirection direction)
{
    // In 32-bit floats throughout: the tests state the ends of the lines as these give them.
    const auto frameWidth = static_cast<float>(widgetSize.width());
    const float width = frameWidth - margins;
    const float y = static_cast<float>(widgetSize.height()) - aboveBottom;
    const auto lineTo = [&](float end) {
        return direction == Qt::RightToLeft ? QLineF(frameWidth - start, y, frameWidth - end, y)
                                            : QLineF(start, y, end, y);
    };
    BarGeometry bar{lineTo(width - beforeEnd), {}};
    // Not a number compares false, and so fills nothing.
    if (barPercent > minPercent) {
        bar.fill = lineTo(width * barPercent - beforeEnd);
    }
    return bar;
}

} // namespace tessaly
