#include "app/controls/frame/KORVENTitleView.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>
#include <QTextOption>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

/// How the title is written.
struct TextAttributes {
    TextAttributes()
    {
        // The first one is rarely installed on Linux; the next ones are close to it.
        font.setFamilies({u"Lucida Grande"_s, u"Inter"_s, u"Noto Sans"_s, u"DejaVu Sans"_s});
        font.setStyleHint(QFont::SansSerif);
        // A point here is a unit of the window's coordinates, not of the screen's resolution: the
        // bar does not grow with the latter.
        font.setPixelSize(12);
        option.setWrapMode(QTextOption::NoWrap);
    }

    QFont font;
    QTextOption option{Qt::AlignCenter};
    Qt::TextElideMode elideMode = Qt::ElideRight;
    QColor colour = theme::text;
};

/// Built when first needed, and kept.
const TextAttributes &textAttributes()
{
    // The empty window is painted without its name, so that this and the fonts are not needed for
    // it.
    static const TextAttributes attributes;
    return attributes;
}

void fillGradient(QPainter &painter, const QRectF &rect, const QColor &top, const QColor &bottom)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(rect, gradient);
}

} // namespace

KORVENTitleView::KORVENTitleView(QWidget *parent) : QWidget(parent)
{
    // It covers the whole window, which handles drags and clicks on the title bar itself.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void KORVENTitleView::setRun10p7Mode(bool isOn)
{
    m_run10p7Mode = isOn;
    update();
}

void KORVENTitleView::setCornerRadius(qreal radius)
{
    m_cornerRadius = radius;
    update();
}

void KORVENTitleView::setShowsName(bool shows)
{
    m_showsName = shows;
    update();
}

void KORVENTitleView::paintEvent(QPaintEvent *event)
{
    if (m_run10p7Mode) {
        QWidget::paintEvent(event);
        return;
    }
    const QRectF titleBar = titleBarRect(size());
    QPainterPath corners;
    corners.addRoundedRect(rect(), m_cornerRadius, m_cornerRadius);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(titleBar);
    painter.setClipPath(corners, Qt::IntersectClip);
    fillGradient(painter, upperTitleHalf(titleBar), theme::title_bar::dark,
                 theme::title_bar::light);
    fillGradient(painter, lowerTitleHalf(titleBar), theme::title_bar::light,
                 theme::title_bar::dark);
    // A line below the view, outside of the clip: it leaves no mark.
    painter.fillRect(QRectF(0, height() + 3.0, width(), 1.0), theme::title_bar::line);
    if (m_showsName) {
        drawString(painter, u"Tessaly"_s, titleBar);
    }
}

void KORVENTitleView::drawString(QPainter &painter, const QString &string, const QRectF &rect) const
{
    constexpr float inactiveAlpha = 0.6F;
    const TextAttributes &attributes = textAttributes();
    QColor colour = attributes.colour;
    if (!isActiveWindow()) {
        colour.setAlphaF(inactiveAlpha);
    }
    painter.setFont(attributes.font);
    painter.setPen(colour);
    // Measured on the device that is painted on, where advances may be rounded otherwise.
    const QFontMetricsF metrics(attributes.font, painter.device());
    const QString shown = metrics.elidedText(string, attributes.elideMode, rect.width());
    painter.drawText(titleTextRect(rect), shown, attributes.option);
}

} // namespace tessaly
