#pragma once

#include <QObject>
#include <QRect>

class QWidget;

namespace tessaly {

/// Moves or resizes a window by the arrow keys: in steps of 10, with Ctrl of 1. Return or any mouse
/// button keeps the result, Escape restores the window as it was. Other keys do nothing meanwhile.
class KeyboardPlacement : public QObject {
    Q_OBJECT

public:
    enum class Kind { move, size };

    /// Belongs to the window.
    explicit KeyboardPlacement(QWidget *window);
    ~KeyboardPlacement() override;
    Q_DISABLE_COPY_MOVE(KeyboardPlacement)

    /// From now on the arrow keys are for the window.
    void begin(Kind kind);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void end();
    void handleKey(int key, Qt::KeyboardModifiers modifiers);
    void step(QPoint by);

    QWidget *m_window;
    QRect m_before;
    Kind m_kind = Kind::move;
    bool m_isActive = false;
};

} // namespace tessaly
