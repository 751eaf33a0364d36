#include "app/controls/frame/KORVENWindow.hpp"

#include "app/controls/frame/KORVENTitleView.hpp"
#include "app/controls/frame/TitleBarButton.hpp"
#include "app/controls/frame/WindowEdges.hpp"
#include "app/controls/frame/WindowMenu.hpp"
#include "app/controls/frame/WindowPlacement.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QAction>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr QSize firstSize{1080, 700};

} // namespace

KORVENWindow::KORVENWindow(Surface surface, QWidget *parent)
    // Without a frame of the desktop, moving, resizing, snapping and the window's menu are ours to
    // offer. Drags are handed back to it (startSystemMove(), startSystemResize()).
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint), m_surface(surface),
      m_layout(new QVBoxLayout(this)), m_titleView(new KORVENTitleView(this)),
      m_windowMenu(new WindowMenu(this))
{
    setWindowTitle(u"Tessaly"_s);
    if (surface == Surface::composited) {
        // Without a compositor, what is transparent would be black: such a window has square
        // corners.
        setAttribute(Qt::WA_TranslucentBackground);
    }
    m_layout->setSpacing(0);
    makeButtons();
    m_edges = new WindowEdges(this); // last, and so above the others
    makeShortcuts();
    placeParts();
    // The minimum first: it must not exceed a small screen, and it bounds the size below.
    fitMinimumSize();
    resize(constrainFrameRect({{}, firstSize}, screen()).size());
    updateShape();
}

void KORVENWindow::makeButtons()
{
    const auto addButton = [this](TitleBarPart part, const QString &name) {
        auto *button = new TitleBarButton(part, name, this);
        m_buttons.append(button);
        return button;
    };
    m_menuButton = addButton(TitleBarPart::applicationMenu, tr("Menu"));
    // A button without a menu would do nothing; see setApplicationMenu().
    m_menuButton->hide();
    connect(addButton(TitleBarPart::minimize, tr("Minimize")), &QPushButton::clicked, this,
            &QWidget::showMinimized);
    connect(addButton(TitleBarPart::zoom, tr("Zoom")), &QPushButton::clicked, this,
            &KORVENWindow::zoom);
    connect(addButton(TitleBarPart::close, tr("Close")), &QPushButton::clicked, this,
            &QWidget::close);
}

void KORVENWindow::makeShortcuts()
{
    // The usual key of a window manager's own menu. It arrives here only where the desktop does not
    // take it.
    const auto *windowMenuKey = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Space), this);
    connect(windowMenuKey, &QShortcut::activated, this, [this] {
        const QPoint corner = shownRect().topLeft();
        m_windowMenu->showAt(mapToGlobal(corner + QPoint(resizeMargin, titleBarHeight)), true);
    });
    const auto *applicationMenuKey = new QShortcut(QKeySequence(Qt::Key_F10), this);
    // F10 is the usual key of a menu bar, which this menu stands in for.
    connect(applicationMenuKey, &QShortcut::activated, m_menuButton, [this] {
        if (m_menuButton->isVisible()) {
            m_menuButton->showMenu();
        }
    });
}

void KORVENWindow::setContentWidget(QWidget *content)
{
    if (content == m_content) {
        return;
    }
    delete m_content;
    m_content = content;
    if (content != nullptr) {
        // A modal dialog may be open already: its WindowBlocked came before this content.
        content->setEnabled(!m_isBlocked);
        m_layout->addWidget(content);
        m_edges->raise(); // the rim stays on top of the new content
    }
}

void KORVENWindow::setApplicationMenu(QMenu *menu)
{
    removeAction(m_menuAction);
    m_menuAction = menu == nullptr ? nullptr : menu->menuAction();
    m_menuButton->setMenu(menu);
    m_menuButton->setVisible(menu != nullptr);
    if (menu != nullptr) {
        // QPushButton adds the action to itself, where its keys work with the focus alone.
        m_menuButton->removeAction(m_menuAction);
        addAction(m_menuAction);
        // The caller may delete the menu at any time, and the button would stay and open nothing.
        connect(menu, &QObject::destroyed, m_menuButton, [this, menu] {
            if (m_menuButton->menu() == menu) { // another one may have been set since
                setApplicationMenu(nullptr);
            }
        });
    }
}

QRect KORVENWindow::constrainFrameRect(const QRect &frame, const QScreen *screen) const
{
    // FullScreen suspends this on its way out, when the frame may be larger than what panels leave
    // of the screen.
    if (m_constrainingToScreenSuspended || screen == nullptr) {
        return frame;
    }
    return frameWithin(frame, screen->availableGeometry());
}

void KORVENWindow::fitMinimumSize()
{
    // Compared with the last one set here, since QWidget does not tell who has set its minimum.
    if (minimumSize() != m_fittedMinimum) {
        return; // another one has been set
    }
    const QScreen *const ours = screen();
    m_fittedMinimum =
        ours == nullptr ? minWindowSize : minWindowSize.boundedTo(ours->availableSize());
    setMinimumSize(m_fittedMinimum);
}

void KORVENWindow::followScreen()
{
    // The old screen may still change its available area, or be unplugged.
    disconnect(m_roomChanged);
    if (const QScreen *ours = screen()) {
        m_roomChanged =
            connect(ours, &QScreen::availableGeometryChanged, this, &KORVENWindow::fitMinimumSize);
    }
    fitMinimumSize();
}

void KORVENWindow::setOuterMargin(int margin)
{
    if (margin != m_outerMargin) {
        m_outerMargin = margin;
        placeParts();
        update();
    }
}

bool KORVENWindow::canBePlaced()
{
    // On Wayland a client neither knows nor sets where its toplevel windows are.
    return !QGuiApplication::platformName().startsWith(u"wayland"_s);
}

QRect KORVENWindow::shownRect() const
{
    return rect().marginsRemoved(
        QMargins(m_outerMargin, m_outerMargin, m_outerMargin, m_outerMargin));
}

bool KORVENWindow::isInTitleBar(QPoint point) const
{
    const QRect shown = shownRect();
    return titleBarRect(shown.size()).contains(point - shown.topLeft());
}

void KORVENWindow::zoom()
{
    if (fillsScreen()) {
        showNormal();
    } else {
        showMaximized();
    }
}

QByteArray KORVENWindow::placement() const
{
    // geometry() of a maximised window is the screen's; the frame that it is restored to has to be
    // kept, too.
    return WindowPlacement{fillsScreen() ? normalGeometry() : geometry(), isMaximized()}.bytes();
}

bool KORVENWindow::restorePlacement(const QByteArray &bytes)
{
    const std::optional<WindowPlacement> placement = WindowPlacement::fromBytes(bytes);
    if (!placement) {
        return false;
    }
    // The screens of now: the one that the window was on may have been unplugged since.
    QList<QRect> areas;
    if (const QScreen *primary = QGuiApplication::primaryScreen()) {
        for (const QScreen *screen : primary->virtualSiblings()) {
            areas.append(screen->availableGeometry());
        }
    }
    // First: the geometry of a maximised window is not the one that it is restored to.
    setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    setGeometry(frameOnScreens(placement->frame, areas));
    if (placement->isMaximized) {
        setWindowState(windowState() | Qt::WindowMaximized);
    }
    return true;
}

bool KORVENWindow::event(QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowUnblocked) {
        setBlocked(event->type() == QEvent::WindowBlocked);
    }
    return QWidget::event(event);
}

void KORVENWindow::setBlocked(bool isBlocked)
{
    // Qt keeps the user's input from a blocked window, but not the actions of assistive technology.
    m_isBlocked = isBlocked;
    if (m_content == nullptr) {
        return;
    }
    if (isBlocked) {
        m_focusBeforeBlocking = focusWidget(); // disabling takes the focus away
    }
    m_content->setEnabled(!isBlocked);
    if (!isBlocked && m_focusBeforeBlocking != nullptr && m_focusBeforeBlocking->isEnabled()) {
        m_focusBeforeBlocking->setFocus(Qt::OtherFocusReason);
    }
}

void KORVENWindow::mousePressEvent(QMouseEvent *event)
{
    const QPoint place = event->position().toPoint();
    if (event->button() == Qt::LeftButton && isInTitleBar(place) && !isFullScreen()) {
        m_drag.press(place);
    } else {
        event->ignore();
    }
}

void KORVENWindow::mouseMoveEvent(QMouseEvent *event)
{
    m_drag.move(*event);
}

void KORVENWindow::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    m_drag.end();
}

void KORVENWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_drag.end();
    if (event->button() == Qt::LeftButton && isInTitleBar(event->position().toPoint())) {
        zoom();
    }
}

void KORVENWindow::contextMenuEvent(QContextMenuEvent *event)
{
    // The menu key comes with a place in the focus widget, which says nothing about the title bar.
    // The keyboard has Alt+Space.
    if (event->reason() == QContextMenuEvent::Mouse && isInTitleBar(event->pos())) {
        m_windowMenu->showAt(event->globalPos(), false);
    } else {
        event->ignore();
    }
}

void KORVENWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // The handle exists from the first show event on, and is kept.
    connect(windowHandle(), &QWindow::screenChanged, this, &KORVENWindow::followScreen,
            Qt::UniqueConnection);
    followScreen();
}

void KORVENWindow::resizeEvent(QResizeEvent * /*event*/)
{
    placeParts();
}

void KORVENWindow::placeParts()
{
    const QRect shown = shownRect();
    m_layout->setContentsMargins(m_outerMargin, m_outerMargin + titleBarHeight, m_outerMargin,
                                 m_outerMargin);
    // The title view covers the whole window and draws at its top only. It has to know all of the
    // window to round its corners.
    m_titleView->setGeometry(shown);
    placeButtons();
    m_edges->setGeometry(rect());
}

void KORVENWindow::placeButtons()
{
    const QRect shown = shownRect();
    for (TitleBarButton *button : std::as_const(m_buttons)) {
        const QRect place = titleBarPartRect(button->part(), shown.width());
        button->setGeometry(
            // Mirrored for right-to-left texts, as Qt does with layouts. The buttons are in no
            // layout: they overlap the title view.
            QStyle::visualRect(layoutDirection(), shown, place.translated(shown.topLeft())));
    }
}

void KORVENWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange) {
        m_drag.end(); // no release comes here when the desktop maximises during a drag
        updateShape();
    }
    if (event->type() == QEvent::LayoutDirectionChange) {
        placeButtons();
    }
    if (event->type() == QEvent::ActivationChange) {
        // Qt sends this to the window alone, while the title bar shows it.
        m_titleView->update();
        for (TitleBarButton *button : std::as_const(m_buttons)) {
            button->update();
        }
    }
    QWidget::changeEvent(event);
}

bool KORVENWindow::roundsCorners() const
{
    return m_surface == Surface::composited && !fillsScreen();
}

void KORVENWindow::updateShape()
{
    m_titleView->setCornerRadius(roundsCorners() ? windowCornerRadius : 0.0);
    m_edges->setRoundsCorners(roundsCorners());
    // A window that fills its screen is not resized, and the rim would take the clicks at the edge
    // of the screen, where the pointer stops.
    m_edges->setVisible(!fillsScreen());
    update();
}

void KORVENWindow::paintEvent(QPaintEvent * /*event*/)
{
    // The corners are filled as well: WindowEdges erases them.
    QPainter painter(this);
    if (m_outerMargin > 0) {
        painter.fillRect(rect(), theme::backdrop);
    }
    painter.fillRect(shownRect(), QColor(theme::windowGround));
}

} // namespace tessaly
