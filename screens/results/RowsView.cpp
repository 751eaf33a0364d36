#include "screens/results/RowsView.hpp"

#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameText.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultModel.hpp"

#include <QItemSelectionModel>

#include <cstddef>
#include <utility>

namespace tessaly {

RowsView::RowsView(CellTableView &table, ResultModel &model, KORVENViewController &screen,
                   const QString &cellIdentifier, ResultCells::TrashImage trashImage)
    : m_table(&table), m_model(model), m_screen(screen),
      m_cells(table, screen, cellIdentifier, std::move(trashImage))
{
    // The view listens to the model rather than to the screen, so several views can show one model
    // without knowing each other.
    table.setDataSource(this);
    connect(&model, &ResultModel::rowsChanged, this, &RowsView::showRows);
    connect(&model, &ResultModel::selectionChanged, this, &RowsView::showSelection);
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &RowsView::takeSelection);
}

RowsView::~RowsView()
{
    // The table belongs to the interface file's widgets, which may be destroyed first. If it lives
    // on, it must not ask a source that is destroyed.
    if (m_table) {
        m_table->setDataSource(nullptr);
    }
}

QWidget &RowsView::widget() const
{
    return *m_table;
}

void RowsView::speak()
{
    m_table->speakRows();
}

void RowsView::showRows()
{
    // The reload leaves no row selected. The model keeps its selection, see takeSelection().
    m_table->reloadData();
    m_table->scrollToTop();
    // The selected row may be out of sight, but a level is shown from its first row.
    m_table->setAutoScroll(false);
    showSelection();
    m_table->setAutoScroll(true);
}

void RowsView::showSelection()
{
    const int shown = m_table->selectedRow();
    if (hasRow(shown) && m_model.selection() == m_model.itemAt(static_cast<std::size_t>(shown))) {
        return; // saves the search in a million rows for each key
    }
    // The model selects by item, since row numbers differ between views and change with the order.
    if (const auto row = m_model.selectedRow()) {
        m_table->selectRow(static_cast<int>(*row));
    } else {
        m_table->clearSelection();
    }
}

void RowsView::takeSelection()
{
    // No selected row is not taken over: a reload of the table deselects too, and the selected item
    // may lie on a level that this view does not show now.
    if (const int row = m_table->selectedRow(); hasRow(row)) {
        m_model.select(m_model.itemAt(static_cast<std::size_t>(row)));
    }
}

// The model can have fewer rows than the table still shows, since one of its changes is silent
// (ResultModel::replaceSilently()).
bool RowsView::hasRow(int row) const
{
    return row >= 0 && static_cast<std::size_t>(row) < m_model.rows().size();
}

const KORVENFolderObject &RowsView::rowAt(int row) const
{
    return m_model.rows()[static_cast<std::size_t>(row)];
}

KORVENFolderCellView *RowsView::cellAt(int row) const
{
    return qobject_cast<KORVENFolderCellView *>(m_table->cellForRow(row));
}

bool RowsView::hasSelectedRow() const
{
    return m_screen.canActOnRows() && m_table->selectedRow() >= 0;
}

bool RowsView::canShowQuickLook() const
{
    const int row = m_table->selectedRow();
    return hasSelectedRow() && hasRow(row) && !rowAt(row).folderIsDirectory();
}

void RowsView::actOnSelectedCell(void (KORVENFolderCellView::*act)())
{
    // The actions are the cell's, and a row that is out of sight has no cell. selectedCell()
    // scrolls the row into sight to get one.
    if (auto *cell = qobject_cast<KORVENFolderCellView *>(m_table->selectedCell())) {
        (cell->*act)();
    }
}

void RowsView::showQuickLook()
{
    actOnSelectedCell(&KORVENFolderCellView::showQuickLook);
}

void RowsView::showInFinder()
{
    actOnSelectedCell(&KORVENFolderCellView::showInFinder);
}

void RowsView::showInfo()
{
    actOnSelectedCell(&KORVENFolderCellView::showInfo);
}

int RowsView::numberOfRowsInTableView() const
{
    return static_cast<int>(m_model.rows().size());
}

QWidget *RowsView::viewForTableColumn(int row)
{
    return hasRow(row) ? m_cells.cellFor(rowAt(row), m_model.total()) : nullptr;
}

QString RowsView::searchText(int row) const
{
    return textOfName(rowAt(row).folderName());
}

QString RowsView::accessibleText(int row) const
{
    return ResultCells::accessibleText(rowAt(row), m_model.total());
}

bool RowsView::shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed)
{
    return m_screen.shouldTypeSelectForEvent(event, typed);
}

bool RowsView::canActivateRow(int /*row*/) const
{
    // Also for folders: without a path of the level, going down would lead to a path that is only a
    // name.
    return m_screen.canActOnRows();
}

// Return and a double click do what a click on the name does.
void RowsView::activateRow(int row)
{
    if (KORVENFolderCellView *cell = cellAt(row)) {
        cell->clickedName();
    }
}

void RowsView::showMenu(int row, const QPoint &place)
{
    if (KORVENFolderCellView *cell = cellAt(row)) {
        cell->popUpMenu(place);
    }
}

} // namespace tessaly
