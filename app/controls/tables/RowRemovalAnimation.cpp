#include "app/controls/tables/RowRemovalAnimation.hpp"

#include "app/controls/tables/CellTableView.hpp"

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

namespace tessaly {

namespace {

int duration(const CellTableView &table)
{
    return table.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &table);
}

} // namespace

bool RowRemovalAnimation::isWanted(const CellTableView &table)
{
    return table.isVisible() && duration(table) > 0;
}

RowRemovalAnimation::RowRemovalAnimation(CellTableView &table, QWidget &stage)
    // Pictures of the table before and after: the rows themselves have changed at once, so that a
    // click during the animation meets the right one.
    : QWidget(&stage), m_table(&table), m_offsetBefore(table.verticalScrollBar()->value()),
      m_before(table.viewport()->grab()), m_progress(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void RowRemovalAnimation::play(std::optional<int> row)
{
    m_table->doItemsLayout(); // else the scroll bar still has the range of the rows before
    const QWidget *viewport = m_table->viewport();
    setGeometry(QRect(viewport->mapTo(parentWidget(), QPoint()), viewport->size()));
    // With fewer rows the table may have scrolled. Then the pictures do not match row by row, and
    // the old one is only faded out.
    if (row && m_table->isVisible() && m_table->verticalScrollBar()->value() == m_offsetBefore) {
        prepareMove(*row);
    }
    // The pictures fit over the table only as long as it is not scrolled or resized.
    connect(m_table->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &RowRemovalAnimation::end);
    parentWidget()->installEventFilter(this);

    m_progress.setStartValue(0.0);
    m_progress.setEndValue(1.0);
    m_progress.setDuration(duration(*m_table));
    m_progress.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_progress, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&m_progress, &QVariantAnimation::finished, this, &RowRemovalAnimation::end);
    m_progress.start();
    show();
    raise();
}

void RowRemovalAnimation::prepareMove(int row)
{
    const int rowHeight = m_table->rowHeight();
    const QRect place(0, row * rowHeight - m_offsetBefore, width(), rowHeight);
    if (rect().contains(place)) {
        m_removedRow = place;
        // The cells have new texts, and their layouts run only with the next event.
        for (const QWidget *cell :
             m_table->viewport()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (cell->layout() != nullptr) {
                cell->layout()->activate();
            }
        }
        m_after = m_table->viewport()->grab(rect().adjusted(0, place.top(), 0, 0));
    }
}

void RowRemovalAnimation::end()
{
    m_progress.stop();
    hide();
    deleteLater();
}

void RowRemovalAnimation::paintEvent(QPaintEvent * /*event*/)
{
    const double progress = m_progress.currentValue().toDouble();
    QPainter painter(this);
    if (m_removedRow.isEmpty()) {
        painter.setOpacity(1 - progress);
        painter.drawPixmap(0, 0, m_before);
        return;
    }
    const int top = m_removedRow.top();
    painter.fillRect(0, top, width(), height() - top, palette().brush(QPalette::Window));
    painter.setOpacity(1 - progress);
    const double scale = m_before.devicePixelRatio();
    painter.drawPixmap(
        m_removedRow, m_before,
        QRectF(QPointF(m_removedRow.topLeft()) * scale, QSizeF(m_removedRow.size()) * scale)
            .toAlignedRect());
    painter.setOpacity(1);
    const double remaining = m_removedRow.height() * (1 - progress);
    painter.drawPixmap(QPointF(0, top + remaining), m_after);
}

bool RowRemovalAnimation::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        // The pictures have the old size.
        end();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tessaly
