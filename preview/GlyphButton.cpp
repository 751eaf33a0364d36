#include "preview/GlyphButton.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace tessaly {

namespace {

/// Drawn around (0, 0), within 5 in every direction.
QPainterPath pathOf(GlyphButton::Glyph glyph)
{
    QPainterPath path;
    const auto polyline = [&path](std::initializer_list<QPointF> points) {
        path.moveTo(*points.begin());
        for (const QPointF &point : points) {
            path.lineTo(point);
        }
    };
    // Paths and not icons: themes differ in these signs, and may have none of them.
    switch (glyph) {
    case GlyphButton::Glyph::previous:
        polyline({{2, -5}, {-3, 0}, {2, 5}});
        break;
    case GlyphButton::Glyph::next:
        polyline({{-2, -5}, {3, 0}, {-2, 5}});
        break;
    case GlyphButton::Glyph::fullScreen:
        polyline({{1, -5}, {5, -5}, {5, -1}});
        polyline({{-1, 5}, {-5, 5}, {-5, 1}});
        polyline({{5, -5}, {1, -1}});
        polyline({{-5, 5}, {-1, 1}});
        break;
    case GlyphButton::Glyph::window:
        polyline({{1, -5}, {1, -1}, {5, -1}});
        polyline({{-1, 5}, {-1, 1}, {-5, 1}});
        polyline({{1, -1}, {5, -5}});
        polyline({{-1, 1}, {-5, 5}});
        break;
    case GlyphButton::Glyph::close:
        polyline({{-4, -4}, {4, 4}});
        polyline({{-4, 4}, {4, -4}});
        break;
    case GlyphButton::Glyph::play:
        polyline({{-3, -5}, {5, 0}, {-3, 5}, {-3, -5}});
        break;
    case GlyphButton::Glyph::pause:
        path.addRect(-4, -5, 2.5, 10);
        path.addRect(1.5, -5, 2.5, 10);
        break;
    }
    return path;
}

} // namespace

GlyphButton::GlyphButton(Glyph glyph, const QString &name, QWidget *parent)
    : QAbstractButton(parent), m_glyph(glyph)
{
    // Not by a click: the focus would stay on the button, and Return would press it again.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover); // repaints when the pointer enters or leaves
    setGlyph(glyph, name);
}

void GlyphButton::setGlyph(Glyph glyph, const QString &name)
{
    m_glyph = glyph;
    // A drawn sign has no text that a screen reader could read.
    setAccessibleName(name);
    setToolTip(name);
    update();
}

QSize GlyphButton::sizeHint() const
{
    return {30, 28};
}

void GlyphButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Half a pixel lets lines lie on pixels instead of between them. The rest is room for the ring
    // of the focus.
    const QRectF frame = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const bool isHot = isEnabled() && underMouse();
    painter.setBrush(isHot && m_glyph == Glyph::close ? theme::preview::close
                     : isDown()                       ? theme::preview::glyphPressed
                     : isHot                          ? theme::preview::glyphHover
                                                      : QColor(Qt::transparent));
    painter.setPen(hasFocus() ? QPen(theme::preview::accent, 2) : QPen(Qt::NoPen));
    painter.drawRoundedRect(frame, 5, 5);

    const QColor color = isEnabled() ? theme::preview::text : theme::preview::disabledGlyph;
    // Signs of the player are areas, all others lines.
    const bool isFilled = m_glyph == Glyph::play || m_glyph == Glyph::pause;
    painter.setBrush(isFilled ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.setPen(isFilled ? QPen(Qt::NoPen)
                            : QPen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(rect()).center());
    painter.drawPath(pathOf(m_glyph));
}

} // namespace tessaly
