#pragma once

#include <QWidget>

namespace tessaly {

/// What a cell shows and a user may click on. A click begins and ends on the same content;
/// clicked() is sent after the mouse event, since its receiver may reuse this widget for another
/// row. The row below sees the mouse as well, and is selected. A double click is one click,
/// and the row below sees only the first of its presses.
class ClickableView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool clickable READ isClickable WRITE setClickable)

public:
    explicit ClickableView(QWidget *parent = nullptr);

    /// False at first.
    [[nodiscard]] bool isClickable() const noexcept { return m_isClickable; }
    void setClickable(bool isClickable);

Q_SIGNALS:
    void clicked();

protected:
    /// Where a click may begin.
    [[nodiscard]] virtual QRect clickableRect() const { return rect(); }
    /// To be called when the content changes: a press on the old content is no click on the new.
    void forgetPress() noexcept { m_isPressed = m_isClickPending = m_tookLastPress = false; }

    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    bool m_isClickable = false;
    bool m_isPressed = false;
    bool m_isClickPending = false; ///< clicked() is still to be sent
    bool m_tookLastPress = false;
};

} // namespace tessaly
