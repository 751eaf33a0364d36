#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

namespace tessaly {

/// A sheet: a panel that hangs from the title bar of a window, in the middle. While it is open,
/// nothing below it can be used: clicks and keys do not reach the window's content, which is
/// disabled, so that assistive technology cannot use it either. The title bar keeps working.
///
/// Sheets may lie above each other; only the topmost one takes input.
///
/// A window whose content is smaller than the panel shows it with scroll bars.
///
/// Threads: the main thread.
class WindowSheet : public QWidget {
    Q_OBJECT

public:
    /// On the content of the window that `window` belongs to, which owns the sheet; a window
    /// without content of its own is covered as a whole. Not visible yet.
    WindowSheet(QWidget &window, std::unique_ptr<QWidget> panel);
    ~WindowSheet() override;
    Q_DISABLE_COPY_MOVE(WindowSheet)

    /// A sheet that is open on this window, or nullptr.
    [[nodiscard]] static WindowSheet *openOn(const QWidget &window);

    /// Shows the sheet and gives one of its controls the focus. Does nothing when it is open.
    void begin(QWidget &firstFocus);
    /// Hides it, and gives the focus back to the widget that had it. Does nothing when it is not
    /// open.
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
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void layOut();
    [[nodiscard]] QRect panelPlace() const;

    QPointer<QWidget> m_host; ///< what the sheet covers; null while that is being destroyed
    QWidget *m_panel;
    QWidget *m_frame; ///< holds the panel, or as much of it as there is room for
    QPointer<QWidget> m_focusBefore;
    QPointer<QWidget> m_firstFocus; ///< of the panel
};

} // namespace tessaly
