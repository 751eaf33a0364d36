#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

namespace tessaly {

class KORVENWindow;

/// A sheet: a panel that hangs from the title bar of a window, in the middle. While it is there the
/// window's content takes no input: neither clicks nor keys reach it. The title bar goes on
/// working.
///
/// A window whose content is smaller than the panel shows it with scroll bars.
///
/// Threads: the main thread.
class WindowSheet : public QWidget {
    Q_OBJECT

public:
    /// On a window that has its content already, which owns the sheet from now on. Not visible yet.
    WindowSheet(KORVENWindow &window, std::unique_ptr<QWidget> panel);

    /// Shows the sheet and gives the keyboard to one of its controls. Does nothing when it is there
    /// already.
    void begin(QWidget &firstFocus);
    /// Takes it away, and gives the keyboard back to whoever had it. Does nothing when it is not
    /// there.
    void end();

    [[nodiscard]] QWidget &panel() const noexcept { return *m_panel; }

Q_SIGNALS:
    /// Escape was pressed.
    void escaped();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void layOut();
    [[nodiscard]] QRect panelPlace() const;

    QWidget *m_panel;
    QWidget *m_frame; ///< holds the panel, or as much of it as there is room for
    QPointer<QWidget> m_focusBefore;
};

} // namespace tessaly
