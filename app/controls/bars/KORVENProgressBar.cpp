#include "app/controls/bars/KORVENProgressBar.hpp"

#include "app/controls/bars/BarGeometry.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QAccessibleValueChangeEvent>
#include <QAccessibleWidget>
#include <QLocale>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

/// The share in whole percent. NaN counts as 0; other values are clamped to 0 to 1.
int percentage(float barPercent)
{
    return std::isnan(barPercent)
               ? 0
               : static_cast<int>(std::lround(std::clamp(barPercent, 0.0F, 1.0F) * 100.0F));
}

/// A value that assistive technology can read and not change.
class AccessibleBar final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleBar(KORVENProgressBar *bar)
        : QAccessibleWidget(bar, QAccessible::ProgressBar), m_bar(*bar)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value) {
            return QLocale().toString(percentage(m_bar.barPercent())) + QLocale().percent();
        }
        return QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QVariant currentValue() const override { return percentage(m_bar.barPercent()); }
    void setCurrentValue(const QVariant & /*value*/) override {}
    [[nodiscard]] QVariant maximumValue() const override { return 100; }
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }

private:
    KORVENProgressBar &m_bar;
};

QAccessibleInterface *makeAccessibleBar(const QString & /*className*/, QObject *object)
{
    auto *bar = qobject_cast<KORVENProgressBar *>(object);
    return bar != nullptr ? new AccessibleBar(bar) : nullptr;
}

} // namespace

KORVENProgressBar::KORVENProgressBar(QWidget *parent) : QWidget(parent)
{
    QAccessible::installFactory(makeAccessibleBar); // once only, however often it is called
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void KORVENProgressBar::setColorsBlue()
{
    setColors(theme::bar::blue);
}

void KORVENProgressBar::setColorsGreen()
{
    setColors(theme::bar::green);
}

void KORVENProgressBar::setColorsOrange()
{
    setColors(theme::bar::orange);
}

void KORVENProgressBar::setColorsYellow()
{
    setColors(theme::bar::yellow);
}

void KORVENProgressBar::setColorsRed()
{
    setColors(theme::bar::red);
}

void KORVENProgressBar::setColors(const QColor &fill)
{
    setFColor(fill);
    setBColor(theme::bar::ground);
}

void KORVENProgressBar::setBarPercent(float percent)
{
    m_barPercent = percent;
    update();
    // Bars change with every refill of a row; without a client the event would be made for nothing.
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, percentage(percent));
        QAccessible::updateAccessibility(&event);
    }
}

void KORVENProgressBar::setFColor(const QColor &color)
{
    m_fColor = color;
    update();
}

void KORVENProgressBar::drawInContext(QPainter &context) const
{
    const BarGeometry bar = barGeometry(size(), m_barPercent, layoutDirection());
    context.setRenderHint(QPainter::Antialiasing);
    context.setPen(
        QPen(QColor(theme::bar::track), BarGeometry::lineWidth, Qt::SolidLine, Qt::SquareCap));
    context.drawLine(bar.track);
    if (bar.fill && m_fColor.isValid()) {
        context.setPen(QPen(m_fColor, BarGeometry::lineWidth, Qt::SolidLine, Qt::SquareCap));
        QLineF fill = *bar.fill;
        // A share may be any float, and QPainter cannot draw to infinity.
        fill.setP2({std::clamp(fill.x2(), -2.0 * BarGeometry::lineWidth,
                               width() + 2.0 * BarGeometry::lineWidth),
                    fill.y2()});
        context.drawLine(fill);
    }
}

QSize KORVENProgressBar::sizeHint() const
{
    return {200, 20};
}

QSize KORVENProgressBar::minimumSizeHint() const
{
    return {40, 20};
}

void KORVENProgressBar::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    drawInContext(painter);
}

} // namespace tessaly
