#include "app/window/WindowSheet.hpp"

#include "app/controls/KORVENWindow.hpp"
#include "app/controls/Look.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QStyle>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int cornerRadius = 8;
constexpr int shadowReach = 26;
constexpr int shadowDrop = 12;   ///< the shadow lies lower than the panel
constexpr int shadowOpacity = 3; ///< of 255, of each of the layers that it is made of
constexpr QColor edge{0x2e, 0x2e, 0x2e};

/// Whether a key is the window's also while a sheet is there: those of its menus, and the marked
/// letters of the sheet itself.
bool isKeyOfTheWindow(const QKeyEvent &key)
{
    const bool isCharacter = key.key() < Qt::Key_Escape; // which is the first that is none
    return key.key() == Qt::Key_F10 || (isCharacter && key.modifiers() == Qt::AltModifier);
}

/// A panel's outline: its upper edge is the title bar's lower one.
QPainterPath outline(const QRectF &frame, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(frame.adjusted(0, -2 * radius, 0, 0), radius, radius);
    return path;
}

} // namespace

WindowSheet::WindowSheet(KORVENWindow &window, std::unique_ptr<QWidget> panel)
    // Tab stays within a subwindow.
    : QWidget(window.contentWidget(), Qt::SubWindow), m_panel(panel.get())
{
    auto *frame = new QScrollArea(this);
    m_frame = frame;
    frame->setFrameShape(QFrame::NoFrame);
    frame->setFocusPolicy(Qt::NoFocus);
    frame->setWidgetResizable(true);
    frame->setWidget(panel.release());
    frame->viewport()->setAutoFillBackground(false);
    m_panel->setAutoFillBackground(false);
    setAutoFillBackground(false);
    hide();
    parentWidget()->installEventFilter(this);
}

void WindowSheet::begin(QWidget &firstFocus)
{
    if (isVisible()) {
        return;
    }
    m_focusBefore = window()->focusWidget();
    layOut();
    raise();
    show();
    firstFocus.setFocus(Qt::OtherFocusReason);
}

void WindowSheet::end()
{
    if (!isVisible()) {
        return;
    }
    hide();
    if (m_focusBefore) {
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    }
}

QRect WindowSheet::panelPlace() const
{
    const QSize room = size() - QSize(0, cornerRadius);
    QSize wanted = m_panel->sizeHint().expandedTo(m_panel->minimumSize());
    if (wanted.height() > room.height()) {
        wanted.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    }
    const QSize given = wanted.boundedTo(room);
    return {QPoint((width() - given.width()) / 2, 0), given};
}

void WindowSheet::layOut()
{
    setGeometry(parentWidget()->rect());
    m_frame->setGeometry(panelPlace());
}

bool WindowSheet::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Keys that are accepted here are no shortcuts of what lies below.
        const auto &key = static_cast<const QKeyEvent &>(*event);
        event->setAccepted(!isKeyOfTheWindow(key));
        return true;
    }
    return QWidget::event(event);
}

bool WindowSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        layOut();
    }
    return QWidget::eventFilter(watched, event);
}

void WindowSheet::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT escaped();
    } else {
        event->ignore();
    }
}

void WindowSheet::resizeEvent(QResizeEvent * /*event*/)
{
    layOut();
}

void WindowSheet::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel(m_frame->geometry());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, shadowOpacity));
    for (int reach = shadowReach; reach > 0; --reach) {
        const QRectF layer = panel.adjusted(-reach, 0, reach, reach).translated(0, shadowDrop);
        painter.drawPath(outline(layer, cornerRadius + reach));
    }
    painter.setPen(edge);
    painter.setBrush(look::sheet);
    painter.drawPath(outline(panel.adjusted(-0.5, 0, 0.5, cornerRadius - 0.5), cornerRadius));
}

void WindowSheet::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void WindowSheet::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
}

void WindowSheet::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
}

void WindowSheet::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

} // namespace tessaly
