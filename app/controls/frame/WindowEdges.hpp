#pragma once

#include <QWidget>

namespace tessaly {

/// The rim of a window, on top of all that is in it: a drag of it resizes the window. Draws the
/// thin line around the window and, if told to, rounds its corners.
///
/// Covers the whole window; a mask leaves the inside to what lies below.
class WindowEdges : public QWidget {
    Q_OBJECT

public:
    explicit WindowEdges(QWidget *parent);

    /// Whether the corners are cut off. Requires: the window is translucent.
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
