#pragma once

#include <QWidget>

namespace tessaly {

/// What a cell shows and a user may click on. A click begins and ends on the same content;
/// clicked() is sent when the mouse event is over, since whoever receives it may move this widget
/// elsewhere. The row below sees the mouse as well, and is selected. A double click is one click,
/// and the row below sees only the first of its presses.
class ClickableView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool clickable READ isClickable WRITE setClickable)

public:
    explicit ClickableView(QWidget *parent = nullptr);

    /// Not so at first.
    [[nodiscard]] bool isClickable() const noexcept { return m_isClickable; }
    void setClickable(bool isClickable);

Q_SIGNALS:
    void clicked();

protected:
    /// Where a click may begin.
    [[nodiscard]] virtual QRect clickableRect() const { return rect(); }
    /// To be called when the content changes: a press or click that is under way is none on it.
    void forgetPress() noexcept { m_isPressed = m_isClickUnderWay = m_tookLastPress = false; }

    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    bool m_isClickable = false;
    bool m_isPressed = false;
    bool m_isClickUnderWay = false; ///< done, and not told of yet
    bool m_tookLastPress = false;
};

} // namespace tessaly
