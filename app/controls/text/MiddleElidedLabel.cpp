#include "app/controls/text/MiddleElidedLabel.hpp"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

/// A pixel beside the text, where the text cursor may stand.
constexpr int roomForCursor = 2;
constexpr int indentation = 2;

} // namespace

MiddleElidedLabel::MiddleElidedLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent), m_fullText(text)
{
    setTextFormat(Qt::PlainText);
    setIndent(indentation); // else it depends on the font
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAccessibleName(text);
}

QSize MiddleElidedLabel::sizeHint() const
{
    const int frame = width() - contentsRect().width();
    return {fontMetrics().horizontalAdvance(m_fullText) + frame + indentation + roomForCursor,
            QLabel::sizeHint().height()};
}

QSize MiddleElidedLabel::minimumSizeHint() const
{
    constexpr int fewLetters = 6;
    return {fontMetrics().averageCharWidth() * fewLetters, QLabel::minimumSizeHint().height()};
}

void MiddleElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elide();
}

void MiddleElidedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        elide();
    }
}

void MiddleElidedLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) && hasSelectedText()) {
        copy();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void MiddleElidedLabel::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(tr("Copy")), &QAction::triggered, this, [this] { copy(); });
    menu->popup(event->globalPos());
}

void MiddleElidedLabel::elide()
{
    const QString shown = fontMetrics().elidedText(
        m_fullText, Qt::ElideMiddle, contentsRect().width() - indentation - roomForCursor);
    if (shown != text()) { // setText() drops the selection
        setText(shown);
    }
    // As escaped rich text: Qt would take a plain name that looks like markup for markup.
    setToolTip(shown == m_fullText ? QString() : u"<qt>%1</qt>"_s.arg(m_fullText.toHtmlEscaped()));
}

void MiddleElidedLabel::copy() const
{
    // A user who selects all that is shown wants the whole text, without the ellipsis.
    const bool isPart = hasSelectedText() && selectedText() != text();
    QGuiApplication::clipboard()->setText(isPart ? selectedText() : m_fullText);
}

} // namespace tessaly
