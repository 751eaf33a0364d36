#include "app/controls/text/WrappedText.hpp"

#include <QFontMetrics>
#include <QScreen>
#include <QStringList>
#include <QTextDocument>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

/// The lines of a text without line breaks of its own.
QStringList linesOf(const QString &paragraph, const QFont &font, int width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(paragraph, font);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << paragraph.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return lines;
}

} // namespace

QString wrappedText(const QString &text, const QFont &font, int width, int maxLineCount)
{
    QStringList lines;
    for (const QString &paragraph : text.split(u'\n')) {
        lines << linesOf(paragraph, font, std::max(width, 1));
    }
    if (lines.size() > maxLineCount) {
        const qsizetype kept = maxLineCount - 1;
        const qsizetype left = kept / 2; // the lines at the end
        const QString cut = lines[kept - left] + lines[kept - left + 1] + u'…';
        const QString middle = QFontMetrics(font).elidedText(cut, Qt::ElideRight, width);
        lines = lines.first(kept - left) + QStringList(middle) + lines.last(left);
    }
    return lines.join(u'\n');
}

QString wrappedToolTip(const QString &text, const QScreen &screen)
{
    constexpr int maxLineCount = 20;
    const QString lines =
        wrappedText(text, QToolTip::font(), screen.availableGeometry().width() / 2, maxLineCount);
    // Qt leaves a plain text in one line, and takes a name that looks like markup for such.
    return Qt::mightBeRichText(lines)
               ? u"<div style='white-space: pre'>%1</div>"_s.arg(lines.toHtmlEscaped())
               : lines;
}

} // namespace tessaly
