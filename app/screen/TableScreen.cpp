#include "app/screen/TableScreen.hpp"

#include <utility>

namespace tessaly {

TableScreen::TableScreen(QObject &object, const QString &nibName, CellKind cells)
    : InterfaceScreen(object, nibName), m_cells(std::move(cells)),
      m_tableView(find<CellTableView>("tableView"))
{
}

void TableScreen::setUp()
{
    // The cells first: setting the source lays the table out, which asks for them.
    m_cells.registerIn(m_tableView);
    m_tableView.setDataSource(this);
}

void TableScreen::selectInPlace(int row)
{
    // A view scrolls to its current row by itself.
    m_tableView.setAutoScroll(false);
    m_tableView.selectRow(row);
    m_tableView.setAutoScroll(true);
}

} // namespace tessaly
