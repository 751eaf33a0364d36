#pragma once

#include "app/controls/frame/WindowGeometry.hpp"

#include <QPushButton>

class QPainter;

namespace tessaly {

/// A button of the title bar: the round ones, which show what they do below the pointer or when
/// chosen by the keyboard, and the one that opens the program's menu.
class TitleBarButton : public QPushButton {
    Q_OBJECT

public:
    TitleBarButton(TitleBarPart part, const QString &name, QWidget *parent);

    [[nodiscard]] TitleBarPart part() const noexcept { return m_part; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void paintMenuLines(QPainter &painter) const;
    void paintDisc(QPainter &painter) const;
    void paintSign(QPainter &painter) const;

    TitleBarPart m_part;
    // A window gives its first button the focus by itself. The ring is for users of the keyboard.
    bool m_showsFocus = false;
};

} // namespace tessaly
