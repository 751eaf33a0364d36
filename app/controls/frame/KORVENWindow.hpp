#pragma once

#include "app/controls/frame/WindowDrag.hpp"
#include "app/controls/frame/WindowGeometry.hpp"

#include <QByteArray>
#include <QList>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>

class QAction;
class QMenu;
class QScreen;
class QVBoxLayout;

namespace tessaly {

class KORVENTitleView;
class TitleBarButton;
class WindowEdges;
class WindowMenu;

/// The main window. It has no frame from the desktop but a title bar of its own, with the button of
/// the program's menu at its left and those to minimise, zoom and close at its right, and a content
/// widget below.
///
/// The title bar moves the window when dragged, but not in full screen, zooms it when
/// double-clicked, and opens the window's menu when right-clicked; Alt+Space opens that too, F10
/// the program's menu. The outermost pixels of the window (`resizeMargin`) resize it.
///
/// While a modal dialog blocks the window, its content is disabled, so that assistive technology
/// cannot use it either. The focus is where it was afterwards.
class KORVENWindow : public QWidget {
    Q_OBJECT

public:
    /// Whether the desktop shows what lies behind the transparent parts of a window. Only then can
    /// its corners be round.
    enum class Surface { composited, opaque };

    explicit KORVENWindow(Surface surface, QWidget *parent = nullptr);

    /// The window owns its content, and deletes the one before. None when null.
    void setContentWidget(QWidget *content);
    [[nodiscard]] QWidget *contentWidget() const noexcept { return m_content; }

    /// The menu that the button at the left opens; without one there is no such button. The caller
    /// keeps the menu alive or deletes it at any time.
    void setApplicationMenu(QMenu *menu);

    [[nodiscard]] KORVENTitleView *titleView() const noexcept { return m_titleView; }

    /// Whether frames are left as they are proposed, however large; false at first.
    [[nodiscard]] bool constrainingToScreenSuspended() const noexcept
    {
        return m_constrainingToScreenSuspended;
    }
    void setConstrainingToScreenSuspended(bool isSuspended) noexcept
    {
        m_constrainingToScreenSuspended = isSuspended;
    }

    /// The frame that the window gets when this one is proposed: one that lies within what the
    /// screen has available, unless that is suspended. Without a screen the proposed one.
    [[nodiscard]] QRect constrainFrameRect(const QRect &frame, const QScreen *screen) const;

    /// The width of a dark margin around all that the window shows, its title bar included; 0 at
    /// first. For a window that covers the screen while it shows less.
    [[nodiscard]] int outerMargin() const noexcept { return m_outerMargin; }
    void setOuterMargin(int margin);

    /// Whether windows can be put anywhere on this desktop by their programs.
    [[nodiscard]] static bool canBePlaced();

    /// Maximises the window, or restores it when it is maximised or full-screen.
    void zoom();

    /// Where the window is, for restorePlacement() to put it there again when the program is next
    /// started.
    [[nodiscard]] QByteArray placement() const;
    /// Puts the window where it was, as far as that is still on a screen. False, and nothing
    /// happens, for bytes that no placement() returned.
    bool restorePlacement(const QByteArray &bytes);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// Whether the window fills its screen: it has neither edges nor corners then.
    [[nodiscard]] bool fillsScreen() const { return isMaximized() || isFullScreen(); }
    [[nodiscard]] bool roundsCorners() const;
    void makeButtons();
    void makeShortcuts();
    /// The smallest size is never larger than what the screen has available.
    void fitMinimumSize();
    void followScreen();
    void placeButtons();
    void updateShape();
    void setBlocked(bool isBlocked);
    void placeParts();
    /// All of the window but its margin.
    [[nodiscard]] QRect shownRect() const;
    [[nodiscard]] bool isInTitleBar(QPoint point) const;

    Surface m_surface;
    QVBoxLayout *m_layout;
    KORVENTitleView *m_titleView;
    QPointer<QWidget> m_content;
    bool m_isBlocked = false;                ///< by a modal dialog
    QPointer<QWidget> m_focusBeforeBlocking; ///< what had the focus when it opened
    TitleBarButton *m_menuButton = nullptr;
    QPointer<QAction> m_menuAction;
    QList<TitleBarButton *> m_buttons;
    WindowEdges *m_edges = nullptr;
    WindowMenu *m_windowMenu;
    WindowDrag m_drag{*this};
    bool m_constrainingToScreenSuspended = false;
    int m_outerMargin = 0;
    QSize m_fittedMinimum{0, 0};
    QMetaObject::Connection m_roomChanged; ///< of the screen that the window is on
};

} // namespace tessaly
