#pragma once

#include <QPushButton>
#include <QString>

class QPainter;

namespace tessaly {

/// A push button with a face of its own, from two images, and a white title.
///
/// In run10p7Mode() it looks like any push button of the style instead.
///
/// The images' edges are kept and their middle is stretched, in whole pixels of the screen, so that
/// the face is sharp at every size and scale. Pointing at the button lights it up, the keyboard's
/// focus puts a ring around it, and a disabled one fades.
///
/// Threads: the main thread.
class KORVENButton : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(bool run10p7Mode READ run10p7Mode WRITE setRun10p7Mode)

public:
    explicit KORVENButton(QWidget *parent = nullptr);
    explicit KORVENButton(const QString &title, QWidget *parent = nullptr);

    /// Paints the title white from now on.
    void setColorWhite();
    /// "&" marks the letter that presses the button; "&&" is a "&". White but in run10p7Mode().
    void setTitle(const QString &title);

    /// Turns to the look of the style's push buttons, title included. There is no way back.
    void set10p7Mode();
    [[nodiscard]] bool run10p7Mode() const noexcept { return m_run10p7Mode; }
    /// Required interface: the flag alone; set10p7Mode() changes the title too.
    void setRun10p7Mode(bool mode);

    /// Required interface: whether the face is ours.
    [[nodiscard]] bool wantsUpdateLayer() const noexcept { return !m_run10p7Mode; }
    /// The image of the face as it is now: "_tq_butp.png" while pressed, else "_tq_but.png".
    [[nodiscard]] QString imageName() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void drawFace(QPainter &painter) const;
    void drawFocusRing(QPainter &painter) const;
    void drawLabel(QPainter &painter) const;

    bool m_run10p7Mode = false;
    bool m_focusCameByKeyboard = false;
};

} // namespace tessaly
