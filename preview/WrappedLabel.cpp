#include "preview/WrappedLabel.hpp"

#include "preview/PlainToolTip.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

namespace tessaly {

namespace {

QStringList wrapped(const QString &text, const QFont &font, int width)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

} // namespace

WrappedLabel::WrappedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true); // its layout asks for the height that a width takes
}

QStringList WrappedLabel::linesIn(int width) const
{
    QStringList lines = wrapped(text(), font(), std::max(width, 1));
    // Wrapping takes room at the ends of the lines, so how much text fits is found by trying.
    const int step = std::max(width / 8, 1);
    for (int room = width * maxLineCount; lines.size() > maxLineCount && room > 0; room -= step) {
        lines = wrapped(fontMetrics().elidedText(text(), Qt::ElideMiddle, room), font(), width);
    }
    return lines;
}

int WrappedLabel::heightForWidth(int width) const
{
    return static_cast<int>(linesIn(width).size()) * fontMetrics().lineSpacing();
}

QSize WrappedLabel::sizeHint() const
{
    constexpr int usualWidth = 320;
    return {usualWidth, heightForWidth(usualWidth)};
}

QSize WrappedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, fontMetrics().lineSpacing()};
}

bool WrappedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip) {
        return QLabel::event(event);
    }
    const bool isCut = wrapped(text(), font(), std::max(width(), 1)).size() > maxLineCount;
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       isCut ? plainToolTip(text()) : QString(), this);
    return true;
}

void WrappedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QRect line(0, 0, width(), fontMetrics().lineSpacing());
    for (const QString &shown : linesIn(width())) {
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, shown);
        line.translate(0, line.height());
    }
}

} // namespace tessaly
