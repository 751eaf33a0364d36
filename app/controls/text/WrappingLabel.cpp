#include "app/controls/text/WrappingLabel.hpp"

#include "app/controls/text/WrappedText.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int usualCharacterCount = 60; ///< of a line that may be as wide as it likes

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // has layouts ask for heightForWidth()
}

void WrappingLabel::setMaxLineCount(int count)
{
    m_maxLineCount = count;
    updateGeometry();
    update();
}

QString WrappingLabel::linesIn(int width) const
{
    const QMargins margins = contentsMargins();
    // Our own lines, since QLabel breaks between words only and has no maximum of lines.
    return wrappedText(text(), font(), width - margins.left() - margins.right(), m_maxLineCount);
}

int WrappingLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    return fontMetrics().size(0, linesIn(width)).height() + margins.top() + margins.bottom();
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

bool WrappingLabel::event(QEvent *event)
{
    // Lines that hold the same characters as the text are all of it.
    if (event->type() == QEvent::ToolTip &&
        linesIn(width()).remove(u'\n') != text().remove(u'\n')) {
        QToolTip::showText(static_cast<const QHelpEvent &>(*event).globalPos(),
                           wrappedToolTip(text(), *screen()), this);
        return true;
    }
    return QLabel::event(event);
}

void WrappingLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(),
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
                     linesIn(width()));
}

} // namespace tessaly
