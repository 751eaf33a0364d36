#pragma once

#include <QWidget>

namespace tessaly {

/// The rim of a window, on top of all that is in it: seizing it resizes the window, and it draws
/// the thin line around the window and, where asked, rounds its corners.
///
/// It takes the whole window but for what lies inside of the rim.
class WindowEdges : public QWidget {
    Q_OBJECT

public:
    explicit WindowEdges(QWidget *parent);

    /// Whether the corners are cut off. Takes a window that is translucent.
    [[nodiscard]] bool roundsCorners() const noexcept { return m_roundsCorners; }
    void setRoundsCorners(bool isOn);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_roundsCorners = false;
};

} // namespace tessaly
