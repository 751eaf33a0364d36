#pragma once

#include "app/controls/frame/WindowGeometry.hpp"

#include <QString>
#include <QWidget>

class QPainter;
class QRectF;

namespace tessaly {

/// Paints the dark title bar of the main window, with the program's name.
///
/// It takes the whole window, below everything else in it, and paints the title bar at its top; the
/// rest shows what lies behind. It takes no mouse events.
class KORVENTitleView : public QWidget {
    Q_OBJECT

public:
    explicit KORVENTitleView(QWidget *parent = nullptr);

    /// Required interface: draws nothing of its own when set. The program never sets it.
    [[nodiscard]] bool run10p7Mode() const noexcept { return m_run10p7Mode; }
    void setRun10p7Mode(bool isOn);

    /// Radius of the corners of the view, which the title bar is clipped to; 0 where the window's
    /// corners are square.
    void setCornerRadius(qreal radius);

    /// Whether the program's name is drawn; it is at first.
    [[nodiscard]] bool showsName() const noexcept { return m_showsName; }
    void setShowsName(bool shows);

    /// Draws the text white and centred into the rectangle moved by 20 to the right and 4 down,
    /// elided at its end. Dimmer in a window that is not active; the window has to update the view
    /// when that changes.
    void drawString(QPainter &painter, const QString &string, const QRectF &rect) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_cornerRadius = windowCornerRadius;
    bool m_run10p7Mode = false;
    bool m_showsName = true;
};

} // namespace tessaly
