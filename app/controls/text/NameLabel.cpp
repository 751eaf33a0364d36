#include "app/controls/text/NameLabel.hpp"

#include "app/controls/text/WrappedText.hpp"
#include "engine/tree/EscapedName.hpp"
#include "engine/tree/PrintableText.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace tessaly {

QString drawableText(const QString &text)
{
    const std::u16string_view units(
        static_cast<const char16_t *>(static_cast<const void *>(text.utf16())),
        static_cast<std::size_t>(text.size()));
    return QString::fromStdString(tree::printableText(tree::nameFromEscaped(units)));
}

NameLabel::NameLabel(QWidget *parent) : ClickableView(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void NameLabel::setText(const QString &text)
{
    forgetPress();
    // Cells are refilled at each reload, mostly with the text that they show.
    if (text == m_text) {
        return;
    }
    m_text = text;
    // The text itself stays byte for byte, since actions need the name. What is drawn must not fake
    // another name by control characters or changes of direction.
    m_shownText = drawableText(text);
    setAccessibleName(m_shownText);
    updateGeometry();
    update();
}

void NameLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

void NameLabel::setElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    update();
}

QSize NameLabel::sizeHint() const
{
    return fontMetrics().size(Qt::TextSingleLine, m_shownText).grownBy(contentsMargins());
}

QSize NameLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, fontMetrics().height()};
}

bool NameLabel::isShortened() const
{
    return fontMetrics().size(Qt::TextSingleLine, m_shownText).width() > contentsRect().width();
}

bool NameLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip &&
        (!toolTip().isEmpty() || (m_tellsWhenShortened && isShortened()))) {
        QToolTip::showText(static_cast<const QHelpEvent &>(*event).globalPos(),
                           wrappedToolTip(m_shownText, *screen()), this);
        return true;
    }
    return ClickableView::event(event);
}

void NameLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    // By its own letters and not the window's direction: ".Trash" keeps its dot in front.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.setPen(palette().color(foregroundRole()));
    const QRect place = contentsRect();
    painter.drawText(place,
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(), m_alignment)) |
                         Qt::TextSingleLine,
                     fontMetrics().elidedText(m_shownText, m_elideMode, place.width()));
}

QRect NameLabel::clickableRect() const
{
    const int textWidth = std::min(sizeHint().width(), width());
    return QStyle::alignedRect(layoutDirection(), m_alignment, {textWidth, height()}, rect());
}

} // namespace tessaly
