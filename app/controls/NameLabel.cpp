#include "app/controls/NameLabel.hpp"

#include "engine/ArchivedName.hpp"
#include "engine/PrintableText.hpp"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace tessaly {

QString drawableText(const QString &text)
{
    const std::u16string_view units(
        static_cast<const char16_t *>(static_cast<const void *>(text.utf16())),
        static_cast<std::size_t>(text.size()));
    return QString::fromStdString(printableText(nameFromArchived(units)));
}

NameLabel::NameLabel(QWidget *parent) : ClickableView(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void NameLabel::setText(const QString &text)
{
    forgetPress();
    if (text == m_text) {
        return;
    }
    m_text = text;
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

QSize NameLabel::sizeHint() const
{
    return fontMetrics().size(Qt::TextSingleLine, m_shownText).grownBy(contentsMargins());
}

QSize NameLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, fontMetrics().height()};
}

void NameLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    // A name runs as its own letters do, wherever it stands: ".Trash" keeps its dot in front.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.setPen(palette().color(foregroundRole()));
    const QRect place = contentsRect();
    painter.drawText(place,
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(), m_alignment)) |
                         Qt::TextSingleLine,
                     fontMetrics().elidedText(m_shownText, Qt::ElideMiddle, place.width()));
}

QRect NameLabel::clickableRect() const
{
    const int textWidth = std::min(sizeHint().width(), width());
    return QStyle::alignedRect(layoutDirection(), m_alignment, {textWidth, height()}, rect());
}

} // namespace tessaly
