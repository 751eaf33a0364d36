#include "preview/TextView.hpp"

#include "app/controls/theme/Theme.hpp"
#include "preview/PaintedView.hpp"

#include <QFontDatabase>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int numbersMargin = 12;
/// Texts with longer lines are wrapped, since they would have to be scrolled far sideways.
constexpr qsizetype longLine = 500;
// QPlainTextEdit lays a line out as a whole, so a very long one, as in minified files, would block
// the window.
constexpr qsizetype maxLineLength = 1000;

} // namespace

TextView::TextView(QWidget *parent)
    : QPlainTextEdit(parent),
      m_numbers(new PaintedView([this](QPainter &painter) { paintNumbers(painter); }, this))
{
    setReadOnly(true);
    // The history would keep a copy of the text.
    setUndoRedoEnabled(false);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::ClickFocus); // so that the panel keeps the arrow keys
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    setFont(font);
    document()->setDocumentMargin(numbersMargin);
    setAccessibleName(tr("Text"));
    connect(this, &QPlainTextEdit::blockCountChanged, this, &TextView::placeNumbers);
    // Emitted when the text scrolls. The numbers are a widget of their own and do not scroll with
    // it.
    connect(this, &QPlainTextEdit::updateRequest, this,
            [this](const QRect &, int) { m_numbers->update(); });
}

void TextView::show(const QString &text)
{
    m_lineNumbers.clear();
    QString split;
    split.reserve(text.size());
    bool isLong = false;
    int number = 0;
    for (qsizetype begin = 0; begin <= text.size();) {
        const qsizetype found = text.indexOf(u'\n', begin);
        const qsizetype end = found < 0 ? text.size() : found;
        // Only the text as a whole can be wrapped, so one long line decides for all.
        isLong = isLong || end - begin > longLine;
        m_lineNumbers.push_back(++number);
        while (end - begin > maxLineLength) {
            // Not between the two halves of a surrogate pair.
            const bool isPair = text[begin + maxLineLength].isLowSurrogate();
            const qsizetype length = maxLineLength - (isPair ? 1 : 0);
            split += QStringView(text).mid(begin, length);
            split += u'\n';
            // A part of a line that was split has no number of its own.
            m_lineNumbers.push_back(0);
            begin += length;
        }
        split += QStringView(text).mid(begin, end - begin);
        if (end < text.size()) {
            split += u'\n';
        }
        begin = end + 1;
    }
    setLineWrapMode(isLong ? WidgetWidth : NoWrap);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setPlainText(split);
    placeNumbers();
}

void TextView::clear()
{
    m_lineNumbers.clear();
    setPlainText({});
}

int TextView::numbersWidth() const
{
    // At least three digits, so that the text does not move between short files.
    // Blocks and not lines: more than enough where lines were split, and the count is at hand.
    const auto digits = QString::number(std::max(blockCount(), 100)).size();
    return fontMetrics().horizontalAdvance(u'9') * static_cast<int>(digits) + 2 * numbersMargin;
}

void TextView::placeNumbers()
{
    const int width = numbersWidth();
    setViewportMargins(width, 0, 0, 0);
    m_numbers->setGeometry(0, 0, width, viewport()->height());
}

void TextView::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    placeNumbers();
}

void TextView::paintNumbers(QPainter &painter) const
{
    painter.fillRect(m_numbers->rect(), theme::preview::window);
    painter.setPen(theme::preview::lineNumber);
    painter.setFont(font());
    const int lineHeight = fontMetrics().height();
    // From the first visible one, since a text may have ten thousands of lines.
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
        if (place.top() > m_numbers->height()) {
            break;
        }
        const auto index = static_cast<std::size_t>(block.blockNumber());
        const int number = index < m_lineNumbers.size() ? m_lineNumbers[index] : 0;
        if (number > 0) {
            painter.drawText(QRectF(0, place.top(), m_numbers->width() - numbersMargin, lineHeight),
                             Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
        }
    }
}

} // namespace tessaly
