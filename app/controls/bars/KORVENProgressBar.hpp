#pragma once

#include <QColor>
#include <QWidget>

class QPainter;

namespace tessaly {

/// The bar of a row: how large a part of a whole something is.
///
/// A bar whose colour was never set shows its track only. The track is the same for all colours.
/// To assistive technology it is a progress bar whose value is the percentage.
///
/// Threads: the main thread.
class KORVENProgressBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(float barPercent READ barPercent WRITE setBarPercent)
    Q_PROPERTY(QColor fColor READ fColor WRITE setFColor)
    Q_PROPERTY(QColor bColor READ bColor WRITE setBColor)

public:
    explicit KORVENProgressBar(QWidget *parent = nullptr);

    // Each sets both colours; the last call counts.
    void setColorsBlue();
    void setColorsGreen();
    /// Required interface.
    void setColorsOrange();
    void setColorsYellow();
    void setColorsRed();

    /// The filled part, 0 to 1; one half at first.
    [[nodiscard]] float barPercent() const noexcept { return m_barPercent; }
    void setBarPercent(float percent);

    /// The colour of the filled part; not valid until set.
    [[nodiscard]] QColor fColor() const { return m_fColor; }
    void setFColor(const QColor &color);
    /// Required interface: is kept and never drawn.
    [[nodiscard]] QColor bColor() const { return m_bColor; }
    void setBColor(const QColor &color) { m_bColor = color; }

    /// Draws the bar; the painter's origin is the widget's top left corner.
    void drawInContext(QPainter &context) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void setColors(const QColor &fill);

    float m_barPercent = 0.5F;
    QColor m_fColor;
    QColor m_bColor;
};

} // namespace tessaly
