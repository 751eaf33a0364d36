#include "app/controls/tables/CellTableView.hpp"

#include "app/controls/accessibility/SpokenNotice.hpp"
#include "app/controls/tables/CellTableModel.hpp"
#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

/// Draws what lies behind the cells: stripes, the selection and the focus.
class RowBackground final : public QStyledItemDelegate {
public:
    explicit RowBackground(CellTableView *table) : QStyledItemDelegate(table), m_table(table) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const QPalette &palette = option.palette;
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const bool isOdd = index.row() % 2 != 0;
        // The style is not asked: it would draw the text of the row as well, over the cell.
        painter->fillRect(option.rect, isSelected ? palette.brush(QPalette::Highlight)
                                       : isOdd    ? palette.brush(QPalette::AlternateBase)
                                                  : palette.brush(QPalette::Base));
        if (option.state.testFlag(QStyle::State_HasFocus) &&
            option.state.testFlag(QStyle::State_KeyboardFocusChange)) {
            painter->setPen(palette.color(QPalette::BrightText));
            painter->drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
        }
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem & /*option*/,
                                 const QModelIndex & /*index*/) const override
    {
        return {1, m_table->rowHeight()};
    }

private:
    CellTableView *m_table;
};

} // namespace

CellTableView::CellTableView(QWidget *parent) : QListView(parent), m_model(new CellTableModel(this))
{
    setModel(m_model);
    setItemDelegate(new RowBackground(this));
    setUniformItemSizes(true); // else the view asks for the size of each of a million rows
    // The cells are placed by the pixel offset. Scrolling by items would jump by a whole row.
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    // Single, not extended: all actions are about one row.
    setSelectionMode(SingleSelection);
    setFrameShape(QFrame::NoFrame);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, theme::evenRow);
    colors.setColor(QPalette::AlternateBase, theme::oddRow);
    colors.setColor(QPalette::Highlight, theme::selectedRow);
    setPalette(colors);
    // Queued, since the item view selects a row before it makes it the current one.
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CellTableView::makeSelectedRowCurrent, Qt::QueuedConnection);
    // Qt sends this only when both presses were on the same row of the same content.
    connect(this, &QListView::doubleClicked, this, [this](const QModelIndex &index) {
        if (m_source != nullptr) {
            m_source->activateRow(index.row());
        }
    });
}

CellTableView::~CellTableView() = default;

void CellTableView::setDataSource(CellTableSource *source)
{
    m_source = source;
    m_model->setSource(source);
    reloadData();
}

void CellTableView::setRowHeight(int height)
{
    m_rowHeight = height;
    verticalScrollBar()->setSingleStep(height);
    // QListView caches the size of the uniform item.
    scheduleDelayedItemsLayout();
}

void CellTableView::setRowHeightForWidth(std::function<int(int width)> heightForWidth)
{
    m_heightForWidth = std::move(heightForWidth);
    fitRowHeight();
}

void CellTableView::fitRowHeight()
{
    const int height = m_heightForWidth ? m_heightForWidth(viewport()->width()) : m_rowHeight;
    if (height != m_rowHeight) {
        setRowHeight(height);
    }
}

void CellTableView::registerCells(const QString &identifier, CellMaker maker)
{
    m_makers[identifier] = std::move(maker);
}

QWidget *CellTableView::makeView(const QString &identifier)
{
    m_madeIdentifier = identifier;
    // From the front, so that after a reload the rows have the cells that they had before.
    const auto unused = std::find_if(m_unused.begin(), m_unused.end(), [&](const Cell &cell) {
        return cell.identifier == identifier;
    });
    if (unused != m_unused.end()) {
        QWidget *widget = unused->widget;
        m_unused.erase(unused);
        return widget;
    }
    const auto maker = m_makers.find(identifier);
    if (maker == m_makers.end()) {
        return nullptr;
    }
    std::unique_ptr<QWidget> made = maker->second();
    return made ? adoptView(std::move(made), identifier) : nullptr;
}

QWidget *CellTableView::adoptView(std::unique_ptr<QWidget> cell, const QString &identifier)
{
    m_madeIdentifier = identifier;
    // Below the viewport, so that the cells are clipped by it and lie above the painted rows.
    cell->setParent(viewport());
    ++m_cellCount;
    return cell.release(); // the viewport's from now on
}

void CellTableView::reloadData()
{
    Q_ASSERT(!m_isLayingOut); // a source must not reload from within viewForTableColumn()
    for (auto &[row, cell] : m_shown) {
        m_unused.push_back(cell);
    }
    m_shown.clear();
    m_model->reload();
    layOutCells();
}

QWidget *CellTableView::cellForRow(int row) const
{
    const auto shown = m_shown.find(row);
    return shown != m_shown.end() ? shown->second.widget : nullptr;
}

int CellTableView::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.front().row();
}

void CellTableView::selectRow(int row)
{
    // The current row, not the selection alone: the arrow keys go on from it, and the view scrolls
    // to it.
    setCurrentIndex(m_model->index(row));
}

void CellTableView::makeSelectedRowCurrent()
{
    const int row = selectedRow();
    if (row >= 0 && row != currentIndex().row()) {
        selectRow(row);
    }
}

/// On focus the item view makes the first row the current one, but does not select it.
void CellTableView::selectCurrentRow()
{
    if (selectedRow() < 0 && currentIndex().isValid()) {
        selectRow(currentIndex().row());
    }
}

QWidget *CellTableView::selectedCell()
{
    const int row = selectedRow();
    if (row >= 0) {
        scrollTo(m_model->index(row)); // a row that is out of sight has no cell
    }
    return cellForRow(row);
}

/// Selects the row and gives it a cell; false when there is no such row.
bool CellTableView::bringIntoSight(int row)
{
    if (m_source == nullptr || row < 0 || row >= m_model->rowCount()) {
        return false;
    }
    selectRow(row);
    scrollTo(m_model->index(row)); // a row that is out of sight has no cell
    return true;
}

void CellTableView::activateRow(int row)
{
    if (bringIntoSight(row)) {
        m_source->activateRow(row);
    }
}

void CellTableView::showMenuOfRow(int row)
{
    if (bringIntoSight(row)) {
        const QPoint middle = visualRect(m_model->index(row)).center();
        m_source->showMenu(row, viewport()->mapToGlobal(middle));
    }
}

void CellTableView::speakRows()
{
    // A screen reader speaks the text to its end, and a level may have a million rows.
    constexpr int maxSpokenRows = 5;
    const int rowCount = m_model->rowCount();
    if (m_source == nullptr || rowCount == 0 || !isVisible()) {
        return;
    }
    QStringList rows;
    for (int row = 0; row < std::min(rowCount, maxSpokenRows); ++row) {
        rows << m_source->accessibleText(row);
    }
    const QString text = rowCount == 1 ? tr("1 item: %1") : tr("%n items: %1", nullptr, rowCount);
    SpokenNotice::say(*window(), text.arg(rows.join(u"; ")));
}

QItemSelectionModel::SelectionFlags CellTableView::selectionCommand(const QModelIndex &index,
                                                                    const QEvent *event) const
{
    // A row stays selected until another one is: a click with Ctrl would leave none.
    const auto command = QListView::selectionCommand(index, event);
    return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate
                                                           : command;
}

void CellTableView::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason) { // else the press selects a row
        selectCurrentRow();
    }
}

void CellTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        QListView::mouseDoubleClickEvent(event);
    } else {
        mousePressEvent(event); // doubleClicked() does not say which button it was
    }
}

void CellTableView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (m_source != nullptr && isReturn && modifiers == Qt::NoModifier && selectedRow() >= 0) {
        activateRow(selectedRow());
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        event->ignore(); // type-ahead would take it for a letter
        return;
    }
    // The source is asked for each letter before type-ahead sees it: the space bar, for instance,
    // is the preview panel's.
    if (!event->text().isEmpty() && m_source != nullptr &&
        !m_source->shouldTypeSelectForEvent(*event, event->text())) {
        return;
    }
    if (event->key() == Qt::Key_Space) {
        return; // the source has acted on it; the item view would clear the selection
    }
    QListView::keyPressEvent(event);
}

void CellTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const int row = isKey ? selectedRow() : indexAt(event->pos()).row();
    if (row < 0 || m_source == nullptr) {
        return;
    }
    if (isKey) {
        showMenuOfRow(row);
    } else if (bringIntoSight(row)) {
        m_source->showMenu(row, event->globalPos());
    }
}

void CellTableView::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    // Before the cells are laid out: the height of a row may depend on the width.
    fitRowHeight();
    layOutCells();
}

void CellTableView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // Rows have come into sight that have no cells yet.
    layOutCells();
}

void CellTableView::updateGeometries()
{
    QListView::updateGeometries();
    verticalScrollBar()->setSingleStep(m_rowHeight); // QListView has just set another one
    layOutCells();
}

void CellTableView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    // Below the last row the window's colour, in place of the table's.
    const int rowCount = m_model->rowCount();
    const int end = rowCount * m_rowHeight - verticalOffset();
    if (end < viewport()->height()) {
        QPainter painter(viewport());
        painter.fillRect(0, end, viewport()->width(), viewport()->height() - end,
                         palette().brush(QPalette::Window));
    }
}

std::pair<int, int> CellTableView::rowsInSight() const
{
    const int rowCount = m_model->rowCount();
    const int top = std::max(verticalOffset(), 0);
    const int bottom = top + viewport()->height();
    return {std::min(top / m_rowHeight, rowCount),
            std::min((bottom + m_rowHeight - 1) / m_rowHeight, rowCount)};
}

void CellTableView::layOutCells()
{
    // Filling a cell may have the view laid out again.
    if (m_source == nullptr || m_isLayingOut) {
        return;
    }
    m_isLayingOut = true;
    const auto [first, end] = rowsInSight();
    // Cells of rows that have left come first: the rows that have come can reuse them.
    for (auto shown = m_shown.begin(); shown != m_shown.end();) {
        if (shown->first < first || shown->first >= end) {
            m_unused.push_back(shown->second);
            shown = m_shown.erase(shown);
        } else {
            ++shown;
        }
    }
    for (int row = first; row < end; ++row) {
        if (m_shown.contains(row)) {
            continue;
        }
        if (QWidget *cell = m_source->viewForTableColumn(row)) {
            m_shown[row] = {cell, m_madeIdentifier};
        }
    }
    for (const auto &[row, cell] : m_shown) {
        cell.widget->setGeometry(0, row * m_rowHeight - verticalOffset(), viewport()->width(),
                                 m_rowHeight);
        cell.widget->show();
    }
    // Hidden last, since a cell that is reused at once stays visible and does not flicker.
    for (const Cell &cell : m_unused) {
        cell.widget->hide();
    }
    m_isLayingOut = false;
}

} // namespace tessaly
