#include "app/controls/text/WrappingLabel.hpp"

#include "app/controls/text/WrappedText.hpp"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int maxLineCount = 8;
constexpr int usualCharacterCount = 60; ///< of a line that may be as wide as it likes

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // has layouts ask for heightForWidth()
}

int WrappingLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const QString lines =
        wrappedText(text(), font(), width - margins.left() - margins.right(), maxLineCount);
    return fontMetrics().size(0, lines).height() + margins.top() + margins.bottom();
}

QSize WrappingLabel::sizeHint() const
{
    const int usualWidth = fontMetrics().averageCharWidth() * usualCharacterCount;
    const int width = std::min(fontMetrics().size(0, text()).width(), usualWidth);
    return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, fontMetrics().height()};
}

void WrappingLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect place = contentsRect();
    painter.drawText(place,
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
                     wrappedText(text(), font(), place.width(), maxLineCount));
}

} // namespace tessaly
