#include "app/controls/frame/TitleBarButton.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QColor>
#include <QFocusEvent>
#include <QLineF>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QRectF>

namespace tessaly {

namespace {

constexpr qreal discRadius = 5.75;
constexpr int lighterPercent = 125;
constexpr int darkerPercent = 130;

} // namespace

TitleBarButton::TitleBarButton(TitleBarPart part, const QString &name, QWidget *parent)
    : QPushButton(parent), m_part(part)
{
    setAccessibleName(name);
    setToolTip(name);
    // A click must not take the focus from the content; the keyboard has to reach the buttons.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
}

QSize TitleBarButton::sizeHint() const
{
    return titleBarPartRect(m_part, 0).size();
}

void TitleBarButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    painter.translate(QRectF(rect()).center()); // where all parts have their origin
    if (m_part == TitleBarPart::applicationMenu) {
        paintMenuLines(painter);
    } else {
        paintDisc(painter);
        if (underMouse() || isDown() || (hasFocus() && m_showsFocus)) {
            paintSign(painter);
        }
    }
    painter.restore();

    if (hasFocus() && m_showsFocus) {
        constexpr qreal focusWidth = 1.5;
        const qreal radius = m_part == TitleBarPart::applicationMenu ? 4.0 : height() / 2.0;
        painter.setPen(QPen(theme::focusRing, focusWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }
}

void TitleBarButton::paintMenuLines(QPainter &painter) const
{
    constexpr qreal halfLength = 6.5;
    constexpr qreal distance = 5.0;
    if (underMouse() || isDown()) {
        constexpr qreal radius = 4.0;
        QRectF face(rect());
        face.moveCenter({0, 0});
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? theme::title_bar::menuPressed : theme::title_bar::menuHover);
        painter.drawRoundedRect(face, radius, radius);
    }
    constexpr qreal lineWidth = 1.5;
    painter.setPen(
        QPen(isActiveWindow() ? theme::title_bar::menuLines : theme::title_bar::inactiveMenuLines,
             lineWidth, Qt::SolidLine, Qt::FlatCap));
    for (const qreal y : {-distance, 0.0, distance}) {
        painter.drawLine(QLineF(-halfLength, y, halfLength, y));
    }
}

void TitleBarButton::paintDisc(QPainter &painter) const
{
    QColor colour =
        m_part == TitleBarPart::close ? theme::title_bar::closeDisc : theme::title_bar::disc;
    if (isDown()) {
        colour = colour.darker(darkerPercent);
    } else if (underMouse()) {
        colour = colour.lighter(lighterPercent);
    } else if (!isActiveWindow()) {
        colour = theme::title_bar::inactiveDisc;
    }
    painter.setPen(theme::title_bar::discEdge);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(0, 0), discRadius, discRadius);
}

void TitleBarButton::paintSign(QPainter &painter) const
{
    constexpr qreal reach = 2.75;
    constexpr qreal lineWidth = 1.4;
    const QColor colour =
        m_part == TitleBarPart::close ? theme::title_bar::closeSign : theme::title_bar::sign;
    painter.setPen(QPen(colour, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    switch (m_part) {
    case TitleBarPart::minimize:
        painter.drawLine(QLineF(-reach, 0, reach, 0));
        break;
    case TitleBarPart::zoom:
        // The sign shows what a click will do.
        if (window()->isMaximized()) {
            constexpr qreal half = 2.0;
            painter.drawRect(QRectF(-half, -half, 2 * half, 2 * half));
        } else {
            painter.drawLine(QLineF(-reach, 0, reach, 0));
            painter.drawLine(QLineF(0, -reach, 0, reach));
        }
        break;
    case TitleBarPart::close:
        // Shorter both ways, since diagonals look longer than the signs of the other buttons.
        painter.drawLine(QLineF(-reach + 0.5, -reach + 0.5, reach - 0.5, reach - 0.5));
        painter.drawLine(QLineF(-reach + 0.5, reach - 0.5, reach - 0.5, -reach + 0.5));
        break;
    case TitleBarPart::applicationMenu:
        break;
    }
}

void TitleBarButton::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_showsFocus = true;
        break;
    case Qt::MouseFocusReason:
        m_showsFocus = false;
        break;
    default: // back from a menu or another window: as it was
        break;
    }
    QPushButton::focusInEvent(event);
}

} // namespace tessaly
