#include "app/window/FullScreen.hpp"

#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/frame/WindowPlacement.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "app/window/FullScreenGeometry.hpp"
#include "platform/SettingsStore.hpp"

#include <QAction>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QVariantAnimation>

#include <span>
#include <utility>

namespace tessaly {

namespace {

int millisecondsOf(double seconds)
{
    return qRound(seconds * 1000.0);
}

} // namespace

FullScreen::FullScreen(KORVENWindow &window, SettingsStore &settings, Motion motion)
    : m_window(&window), m_settings(settings), m_motion(motion)
{
    window.installEventFilter(this);
}

void FullScreen::setFullscreenMenuItem(QAction *item)
{
    m_fullscreenMenuItem = item;
    // The menu comes with the content of the window, which is shown before: it may be in full
    // screen already.
    if (m_state == State::entering || m_state == State::full) {
        willEnterFull();
    } else {
        willExitFull();
    }
}

void FullScreen::toggleFullScreen()
{
    // Nothing happens while the window is on its way: it does not turn back, and a second animation
    // would start from a frame in between.
    if (m_state == State::windowed) {
        willEnterFull();
        startCustomAnimationToEnterFullScreenWithDuration(usualDuration);
    } else if (m_state == State::full) {
        willExitFull();
        startCustomAnimationToExitFullScreenWithDuration(usualDuration);
    }
}

QSizeF FullScreen::willUseFullScreenContentSize(QSizeF proposedSize)
{
    return FullScreenGeometry::contentSize(proposedSize);
}

unsigned FullScreen::willUseFullScreenPresentationOptions() noexcept
{
    return fullScreen | autoHideToolbar | hideDock | autoHideMenuBar;
}

void FullScreen::willEnterFull()
{
    if (m_fullscreenMenuItem != nullptr) {
        m_fullscreenMenuItem->setText(tr("Exit Full Screen"));
    }
}

void FullScreen::willExitFull()
{
    if (m_fullscreenMenuItem != nullptr) {
        m_fullscreenMenuItem->setText(tr("Enter Full Screen"));
    }
}

QList<KORVENWindow *> FullScreen::customWindowsToEnterFullScreenForWindow(KORVENWindow *window)
{
    return {window};
}

QList<KORVENWindow *> FullScreen::customWindowsToExitFullScreenForWindow(KORVENWindow *window)
{
    return {window};
}

void FullScreen::startCustomAnimationToEnterFullScreenWithDuration(double duration)
{
    const QRect frame = m_window->geometry();
    // Before anything moves, and flushed at once: a program that is killed on its way must not come
    // back with a frame of the animation.
    rememberPlacement(frame);
    m_state = State::entering;
    const QList<QScreen *> screens = QGuiApplication::screens();
    // On Wayland setGeometry() would resize the window and not move it, so an animation would only
    // stretch it in place.
    if (m_motion == Motion::byDesktop || screens.isEmpty()) {
        coverScreen();
        return;
    }
    if (m_wasMaximized) {
        // A maximised window cannot be resized; so it becomes a free one that looks the same. The
        // window manager is about to restore another frame, and Qt asks it for ours only when that
        // differs from the last one: hence two frames.
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMaximized);
        setFrame(frame.adjusted(0, 0, 0, -1));
        setFrame(frame);
    }
    // Always the first screen, wherever the window is, and all of it: in full screen the desktop's
    // panels are covered.
    const QRectF target = FullScreenGeometry::targetFrame(screens.first()->geometry());
    animate(frame, FullScreenGeometry::centreFrame(frame.size(), target.size()), duration, target,
            duration * 0.25);
}

void FullScreen::startCustomAnimationToExitFullScreenWithDuration(double duration)
{
    const int margin = m_window->outerMargin();
    const QRect current =
        m_window->geometry().marginsRemoved(QMargins(margin, margin, margin, margin));
    m_state = State::exiting;
    // On the way out the frame has to be free: the window starts as large as the screen, and may
    // return to a frame that is partly off it.
    m_window->setConstrainingToScreenSuspended(true);
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowFullScreen);
    if (m_motion == Motion::byDesktop) {
        returnToWindow();
        return;
    }
    // Leaving the state has the window manager restore the frame of before full screen. The
    // animation starts from what the user has just seen instead.
    setFrame(current);
    updateMargin();
    const QRectF saved = frameForNonFullScreenMode();
    animate(current, FullScreenGeometry::centreFrame(saved.size(), current.size()), duration * 0.25,
            saved, duration);
}

QRectF FullScreen::frameForNonFullScreenMode() const
{
    // A QRectF is four doubles: without the lock a reader on another thread could see half of a new
    // one.
    const std::scoped_lock lock(m_frameMutex);
    return m_frameForNonFullScreenMode;
}

void FullScreen::setFrameForNonFullScreenMode(const QRectF &frame)
{
    const std::scoped_lock lock(m_frameMutex);
    m_frameForNonFullScreenMode = frame;
}

std::vector<std::string>
FullScreen::restorableStateKeyPaths(std::vector<std::string> superclassPaths)
{
    superclassPaths.emplace_back(settings_key::frameForNonFullScreenMode);
    return superclassPaths;
}

void FullScreen::rememberPlacement(const QRect &frame)
{
    m_wasMaximized = m_window->isMaximized();
    // A maximised window has two frames: the one that the animation starts from, and the one that
    // it is restored to afterwards.
    m_normalFrame = m_wasMaximized ? m_window->normalGeometry() : frame;
    m_placementBefore = m_window->placement();
    setFrameForNonFullScreenMode(frame);
    invalidateRestorableState();
}

void FullScreen::invalidateRestorableState() const
{
    m_settings.setData(
        settings_key::frameForNonFullScreenMode,
        std::as_bytes(std::span(m_placementBefore.constData(),
                                static_cast<std::size_t>(m_placementBefore.size()))));
    m_settings.flush(); // so that it is there after a kill
}

void FullScreen::restoreState()
{
    const auto stored = m_settings.data(settings_key::frameForNonFullScreenMode);
    if (!stored) {
        return;
    }
    const QByteArray bytes(reinterpret_cast<const char *>(stored->data()),
                           static_cast<qsizetype>(stored->size()));
    if (const auto placement = WindowPlacement::fromBytes(bytes)) {
        m_window->restorePlacement(bytes);
        setFrameForNonFullScreenMode(placement->frame);
    }
    // Bytes that are no placement are removed as well, or they would be tried at every start.
    m_settings.remove(settings_key::frameForNonFullScreenMode);
}

void FullScreen::animate(const QRectF &start, const QRectF &centre, double secondsToCentre,
                         const QRectF &end, double secondsToEnd)
{
    stopAnimation();
    m_animation = new QSequentialAnimationGroup(this);
    const auto addPart = [this](const QRectF &from, const QRectF &to, double seconds) {
        auto *part = new QVariantAnimation(m_animation);
        part->setStartValue(from);
        part->setEndValue(to);
        part->setDuration(millisecondsOf(seconds));
        connect(part, &QVariantAnimation::valueChanged, this,
                [this](const QVariant &frame) { setFrame(frame.toRectF().toRect()); });
    };
    addPart(start, centre, secondsToCentre);
    addPart(centre, end, secondsToEnd);
    connect(m_animation, &QAbstractAnimation::finished, this, &FullScreen::animationEnded);
    m_animation->start();
}

void FullScreen::stopAnimation()
{
    if (QSequentialAnimationGroup *running = std::exchange(m_animation, nullptr)) {
        running->disconnect(this);
        running->stop();
        running->deleteLater(); // it may be what calls
    }
}

void FullScreen::animationEnded()
{
    stopAnimation();
    if (m_state == State::entering) {
        coverScreen();
    } else {
        returnToWindow();
    }
}

void FullScreen::coverScreen()
{
    m_state = State::full;
    m_window->setWindowState(m_window->windowState() | Qt::WindowFullScreen);
    updateMargin();
}

/// The last step out of full screen: the window is what it was.
void FullScreen::returnToWindow()
{
    // The frame before the state: a window that is maximised is later restored to the frame that it
    // had then.
    if (m_motion == Motion::byProgram) {
        setFrame(m_wasMaximized ? m_normalFrame : frameForNonFullScreenMode().toRect());
        if (m_wasMaximized) {
            m_window->setWindowState(m_window->windowState() | Qt::WindowMaximized);
        }
    }
    m_window->setConstrainingToScreenSuspended(false);
    m_state = State::windowed;
    updateMargin();
    m_settings.remove(settings_key::frameForNonFullScreenMode);
    m_settings.flush(); // a kill from here on leaves the window where it is then
}

void FullScreen::setFrame(const QRect &frame)
{
    const QScreen *screen = QGuiApplication::screenAt(frame.center());
    m_window->setGeometry(
        m_window->constrainFrameRect(frame, screen != nullptr ? screen : m_window->screen()));
}

bool FullScreen::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(static_cast<const QKeyEvent &>(*event));
    case QEvent::WindowStateChange:
        followWindow();
        break;
    case QEvent::Resize:
        updateMargin();
        break;
    case QEvent::Hide:
        if (!event->spontaneous()) {
            stopAnimation(); // its end would show a hidden window
        }
        break;
    case QEvent::Show:
        // The window was hidden on its way, which stopped the animation. It comes back in the frame
        // of before, not in one in between.
        if (m_animation == nullptr && (m_state == State::entering || m_state == State::exiting)) {
            willExitFull();
            returnToWindow();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

/// A key that nothing else in the window has used. Escape is not a shortcut here: it would
/// be ambiguous with the one that cancels a scan, and Qt then runs neither.
bool FullScreen::handleKey(const QKeyEvent &key)
{
    const bool leaves = m_state == State::full && key.key() == Qt::Key_Escape &&
                        key.modifiers() == Qt::NoModifier && !key.isAutoRepeat();
    if (leaves) {
        toggleFullScreen();
    }
    return leaves;
}

/// The window manager, or the window's zoom, may have changed the state.
void FullScreen::followWindow()
{
    const bool isFullScreen = m_window->isFullScreen();
    if (isFullScreen && m_state == State::windowed) {
        // geometry() is that of the screen by now.
        rememberPlacement(m_window->normalGeometry());
        willEnterFull();
        m_state = State::full;
    } else if (!isFullScreen && m_state == State::full) {
        willExitFull();
        startCustomAnimationToExitFullScreenWithDuration(usualDuration);
    }
    updateMargin();
}

void FullScreen::updateMargin()
{
    // Not before the desktop has made the window as large as the screen.
    const QSizeF shown = willUseFullScreenContentSize(m_window->screen()->size());
    const bool coversScreen =
        m_window->width() > shown.width() && m_window->height() > shown.height();
    m_window->setOuterMargin(
        m_state == State::full && coversScreen ? static_cast<int>(FullScreenGeometry::margin) : 0);
}

} // namespace tessaly
