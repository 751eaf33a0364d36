#pragma once

#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/screen/CellKind.hpp"
#include "app/screen/InterfaceScreen.hpp"

namespace tessaly {

/// Base of the screens that are themselves the source of a table of cells: makes the cells, and
/// shows either the table or the page that says why it has no rows.
///
/// Interface file: a CellTableView "tableView" beside the "emptyPage".
/// Threads:        the main thread.
class TableScreen : public InterfaceScreen, protected CellTableSource {
public:
    ~TableScreen() override = default;
    Q_DISABLE_COPY_MOVE(TableScreen)

    [[nodiscard]] CellTableView *rowsTable() const noexcept final
    {
        return view() != nullptr ? &m_tableView : nullptr;
    }

protected:
    /// Loads the view. `object`: the derived class as the QObject that it is.
    TableScreen(QObject &object, const QString &nibName, CellKind cells);

    /// Connects the table to its rows and cells. An override calls this first.
    void setUp() override;

    [[nodiscard]] CellTableView &table() const noexcept { return m_tableView; }

    /// A cell to be filled (see CellKind).
    template <typename Cell>
    [[nodiscard]] Cell &makeCell()
    {
        return static_cast<Cell &>(m_cells.nextOf(m_tableView));
    }
    /// The cell that shows a row; nullptr when the row is out of sight.
    template <typename Cell>
    [[nodiscard]] Cell *cellAt(int row) const
    {
        return qobject_cast<Cell *>(m_tableView.cellForRow(row));
    }
    /// The cell of the selected row, which is scrolled into sight; nullptr without one.
    template <typename Cell>
    [[nodiscard]] Cell *selectedCell() const
    {
        return qobject_cast<Cell *>(m_tableView.selectedCell());
    }
    [[nodiscard]] bool isRow(int row) const { return row >= 0 && row < numberOfRowsInTableView(); }
    /// Selects a row without scrolling.
    void selectInPlace(int row);

    void showTable() { showPage(m_tableView); }

private:
    CellKind m_cells;
    CellTableView &m_tableView; ///< the view owns it
};

} // namespace tessaly
