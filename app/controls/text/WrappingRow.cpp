#include "app/controls/text/WrappingRow.hpp"

#include <QEvent>
#include <QList>
#include <QStyle>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int betweenWidgets = 18;
constexpr int betweenLines = 2;

QList<QWidget *> childrenOf(const QWidget &row)
{
    return row.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

WrappingRow::WrappingRow(QWidget *parent) : QWidget(parent)
{
    // Not fixed: layouts would take the height of the hint, which is one line.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize WrappingRow::sizeHint() const
{
    QSize hint(0, 0);
    for (const QWidget *child : childrenOf(*this)) {
        const QSize size = child->sizeHint();
        hint.rwidth() += size.width() + (hint.width() > 0 ? betweenWidgets : 0);
        hint.setHeight(std::max(hint.height(), size.height()));
    }
    return hint;
}

QSize WrappingRow::minimumSizeHint() const
{
    QSize minSize(0, 0);
    for (const QWidget *child : childrenOf(*this)) {
        // The widest child decides: narrower than this, no line could hold it.
        minSize = minSize.expandedTo(child->sizeHint());
    }
    return minSize;
}

int WrappingRow::heightForWidth(int width) const
{
    return layOut(width, false);
}

bool WrappingRow::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) { // a child has another size hint
        updateGeometry();
        layOut(width(), true);
    }
    return QWidget::event(event);
}

void WrappingRow::resizeEvent(QResizeEvent * /*event*/)
{
    layOut(width(), true);
}

int WrappingRow::layOut(int width, bool movesChildren) const
{
    int left = 0;
    int top = 0;
    int lineHeight = 0;
    for (QWidget *child : childrenOf(*this)) {
        const QSize size = child->sizeHint();
        if (left > 0 && left + size.width() > width) {
            left = 0;
            top += lineHeight + betweenLines;
            lineHeight = 0;
        }
        if (movesChildren) {
            child->setGeometry(
                QStyle::visualRect(layoutDirection(), rect(), {QPoint(left, top), size}));
        }
        left += size.width() + betweenWidgets;
        lineHeight = std::max(lineHeight, size.height());
    }
    return top + lineHeight;
}

} // namespace tessaly
