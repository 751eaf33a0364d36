#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QRectF>
#include <QSizeF>

#include <mutex>
#include <string>
#include <vector>

class QAction;
class QKeyEvent;
class QSequentialAnimationGroup;

namespace tessaly {

class KORVENWindow;
class SettingsStore;

/// Takes the main window into full screen and out of it, by animations of its own, and leaves a
/// margin around what the window shows there.
///
/// The window grows in the middle of the first screen to the size that it shows in full screen.
/// Then it covers the screen, and everything that the desktop has there, with a margin around the
/// same contents in the same place. Leaving does the same in reverse. Where programs cannot place
/// their windows, the desktop does both by itself; the margin is the same. Escape leaves full
/// screen, unless a widget of the window or a shortcut uses that key. When the desktop takes the
/// window there or back, or the window's own zoom does, this follows.
///
/// While the window is in full screen, the settings hold where it was before, so that it comes back
/// there when the program ends in full screen: in a window, since a program that covers all of the
/// desktop should not do so unasked.
///
/// Lengths: device independent pixels; y goes down.
/// Times:   seconds.
/// Threads: the main thread, but for frameForNonFullScreenMode().
class FullScreen : public QObject {
    Q_OBJECT

public:
    enum class State { windowed, entering, full, exiting };

    /// Who moves and resizes the window. byDesktop where programs cannot.
    enum class Motion { byProgram, byDesktop };

    /// What the desktop is asked to do around a window in full screen. Showing a window in full
    /// screen does all of it.
    enum PresentationOption : unsigned {
        hideDock = 2,
        autoHideMenuBar = 4,
        fullScreen = 1024,
        autoHideToolbar = 2048,
    };

    /// How long the longer half of each animation takes when the user asks.
    static constexpr double usualDuration = 0.24;

    /// Requires: both outlive this, and the window is not in full screen yet.
    FullScreen(KORVENWindow &window, SettingsStore &settings, Motion motion);
    ~FullScreen() override = default;
    Q_DISABLE_COPY_MOVE(FullScreen)

    [[nodiscard]] State state() const noexcept { return m_state; }

    /// The menu item whose title names what a click will do; none at first. Its owner connects it
    /// to toggleFullScreen().
    void setFullscreenMenuItem(QAction *item);

    /// Enters full screen, or leaves it; nothing while the window is on its way.
    void toggleFullScreen();

    /// Puts the window where it was before full screen, when the program ended there. For the start
    /// of the program, after the window has been placed otherwise.
    void restoreState();

    /// The size of the window's contents on a screen of the proposed size.
    [[nodiscard]] static QSizeF willUseFullScreenContentSize(QSizeF proposedSize);
    /// Required interface: showing a window in full screen does all of this by itself.
    [[nodiscard]] static unsigned willUseFullScreenPresentationOptions() noexcept;

    /// Full screen is about to begin, and to end.
    void willEnterFull();
    void willExitFull();

    /// Required interface: the windows that take part in the animations, which is that one alone.
    [[nodiscard]] static QList<KORVENWindow *>
    customWindowsToEnterFullScreenForWindow(KORVENWindow *window);
    [[nodiscard]] static QList<KORVENWindow *>
    customWindowsToExitFullScreenForWindow(KORVENWindow *window);
    /// Required interface: nothing has to be undone.
    void windowDidFailToEnterFullScreen() {}
    void windowDidFailToExitFullScreen() {}

    /// Takes `duration` to the centre, and a quarter of it from there.
    void startCustomAnimationToEnterFullScreenWithDuration(double duration);
    /// Takes a quarter of `duration` to the centre, and `duration` from there.
    void startCustomAnimationToExitFullScreenWithDuration(double duration);

    /// The window's frame when full screen was last entered; null before. Any thread, read and
    /// written as a whole.
    [[nodiscard]] QRectF frameForNonFullScreenMode() const;
    void setFrameForNonFullScreenMode(const QRectF &frame);

    /// Required interface: the names of the state that is kept until the next start.
    [[nodiscard]] static std::vector<std::string>
    restorableStateKeyPaths(std::vector<std::string> superclassPaths = {});

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool handleKey(const QKeyEvent &key);
    void rememberPlacement(const QRect &frame);
    void invalidateRestorableState() const;
    void animate(const QRectF &start, const QRectF &centre, double secondsToCentre,
                 const QRectF &end, double secondsToEnd);
    void stopAnimation();
    void animationEnded();
    void coverScreen();
    void returnToWindow();
    void setFrame(const QRect &frame);
    void followWindow();
    void updateMargin();

    KORVENWindow *m_window;
    SettingsStore &m_settings;
    const Motion m_motion;
    QPointer<QAction> m_fullscreenMenuItem;
    QSequentialAnimationGroup *m_animation = nullptr; ///< while one runs
    State m_state = State::windowed;

    // What the window was when full screen was last entered.
    QByteArray m_placementBefore;
    QRect m_normalFrame; ///< its frame when it is not maximised
    bool m_wasMaximized = false;

    mutable std::mutex m_frameMutex;
    QRectF m_frameForNonFullScreenMode; ///< guarded by m_frameMutex
};

} // namespace tessaly
