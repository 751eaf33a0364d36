#include "app/controls/alerts/WindowSheet.hpp"

#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QStyle>
#include <QVariant>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int cornerRadius = 8;
constexpr int shadowReach = 26;
constexpr int shadowDrop = 12;   ///< the shadow lies lower than the panel
constexpr int shadowOpacity = 3; ///< of 255, of each of the layers that it is made of

/// Whether a key works as a shortcut while a sheet is open: those of the menus, and the marked
/// letters of the sheet itself.
bool isKeyOfTheWindow(const QKeyEvent &key)
{
    const bool isCharacter = key.key() < Qt::Key_Escape; // Escape is the first special key
    return key.key() == Qt::Key_F10 || (isCharacter && key.modifiers() == Qt::AltModifier);
}

/// What a sheet on this window covers.
QWidget &hostIn(QWidget &window)
{
    const auto *own = qobject_cast<KORVENWindow *>(window.window());
    return own != nullptr && own->contentWidget() != nullptr ? *own->contentWidget() : window;
}

/// Disables all children of `host` that lie below an open sheet, and enables those again that it
/// disabled before and that lie below none any more. Sheets that are not open are left enabled.
void enableTopmostOnly(QWidget &host)
{
    constexpr const char *isBelowSheet = "isBelowSheet";
    bool sheetIsAbove = false;
    // Children are in stacking order, the topmost one last. A copy, since a widget may add or
    // remove children when it is disabled.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QObjectList children = host.children();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        auto *widget = qobject_cast<QWidget *>(*child);
        if (widget == nullptr || widget->isWindow()) {
            continue;
        }
        const bool isSheet = qobject_cast<WindowSheet *>(widget) != nullptr;
        const bool isBelow = sheetIsAbove && !(isSheet && widget->isHidden());
        const bool wasBelow = widget->property(isBelowSheet).toBool();
        // Whatever the host is: a modal dialog may have disabled that as a whole.
        if (isBelow && !wasBelow && widget->isEnabledTo(&host)) {
            widget->setProperty(isBelowSheet, true);
            widget->setEnabled(false);
        } else if (!isBelow && wasBelow) {
            widget->setProperty(isBelowSheet, QVariant());
            widget->setEnabled(true);
        }
        sheetIsAbove = sheetIsAbove || (isSheet && !widget->isHidden());
    }
}

/// A panel's outline: its upper edge is the title bar's lower one.
QPainterPath outline(const QRectF &frame, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(frame.adjusted(0, -2 * radius, 0, 0), radius, radius);
    return path;
}

} // namespace

WindowSheet::WindowSheet(QWidget &window, std::unique_ptr<QWidget> panel)
    // Tab stays within a subwindow.
    : QWidget(&hostIn(window), Qt::SubWindow), m_host(parentWidget()), m_panel(panel.get())
{
    auto *frame = new QScrollArea(this);
    m_frame = frame;
    frame->setFrameShape(QFrame::NoFrame);
    frame->setFocusPolicy(Qt::NoFocus);
    // In a scroll area, so that a sheet can be used in the smallest window.
    frame->setWidgetResizable(true);
    frame->setWidget(panel.release());
    frame->viewport()->setAutoFillBackground(false);
    m_panel->setAutoFillBackground(false);
    setAutoFillBackground(false);
    setAttribute(Qt::WA_NoMousePropagation); // what lies below gets neither clicks nor wheel
    hide();
    m_host->installEventFilter(this);
}

WindowSheet::~WindowSheet()
{
    if (m_host != nullptr) {
        hide();
        enableTopmostOnly(*m_host);
    }
}

WindowSheet *WindowSheet::openOn(const QWidget &window)
{
    const QList<WindowSheet *> sheets = window.findChildren<WindowSheet *>();
    const auto open = std::find_if(sheets.begin(), sheets.end(),
                                   [](const WindowSheet *sheet) { return !sheet->isHidden(); });
    return open != sheets.end() ? *open : nullptr;
}

void WindowSheet::begin(QWidget &firstFocus)
{
    if (!isHidden()) {
        return;
    }
    // Before anything is shown or disabled, both of which move the focus.
    m_focusBefore = window()->focusWidget();
    m_firstFocus = &firstFocus;
    layOut();
    raise();
    show();
    // Before enableTopmostOnly() disables the widget with the focus: Qt would move it to any other.
    firstFocus.setFocus(Qt::OtherFocusReason);
    enableTopmostOnly(*m_host);
}

void WindowSheet::end()
{
    if (isHidden()) {
        return;
    }
    hide();
    enableTopmostOnly(*m_host);
    // It may have been disabled or hidden meanwhile, by a change that the sheet has made.
    if (m_focusBefore && m_focusBefore->isEnabled() && m_focusBefore->isVisibleTo(window())) {
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
    setGeometry(m_host->rect());
    m_frame->setGeometry(panelPlace());
}

bool WindowSheet::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Accepting makes it an ordinary key, and no shortcut of what lies below.
        const auto &key = static_cast<const QKeyEvent &>(*event);
        event->setAccepted(!isKeyOfTheWindow(key));
        return true;
    }
    return QWidget::event(event);
}

bool WindowSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_host && event->type() == QEvent::Resize) {
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

void WindowSheet::changeEvent(QEvent *event)
{
    // One that opened while a modal dialog blocked the window could not take the focus.
    if (event->type() == QEvent::EnabledChange && isEnabled() && !isHidden() &&
        m_firstFocus != nullptr) {
        m_firstFocus->setFocus(Qt::OtherFocusReason);
    }
    QWidget::changeEvent(event);
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
    QColor shadow = theme::shadow;
    shadow.setAlpha(shadowOpacity);
    painter.setBrush(shadow);
    // Many thin layers add up to a soft edge. QGraphicsDropShadowEffect would render the whole
    // sheet into a pixmap first.
    for (int reach = shadowReach; reach > 0; --reach) {
        const QRectF layer = panel.adjusted(-reach, 0, reach, reach).translated(0, shadowDrop);
        painter.drawPath(outline(layer, cornerRadius + reach));
    }
    painter.setPen(theme::sheetEdge);
    painter.setBrush(theme::sheet);
    painter.drawPath(outline(panel.adjusted(-0.5, 0, 0.5, cornerRadius - 0.5), cornerRadius));
}

} // namespace tessaly
