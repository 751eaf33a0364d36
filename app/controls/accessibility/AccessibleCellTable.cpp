#include "app/controls/accessibility/AccessibleCellTable.hpp"

#include "app/controls/accessibility/AccessibleCellRow.hpp"
#include "app/controls/tables/CellTableView.hpp"

#include <QAbstractItemModel>

namespace tessaly {

AccessibleCellTable::AccessibleCellTable(CellTableView &table)
    : QAccessibleWidget(&table, QAccessible::List)
{
}

AccessibleCellTable::~AccessibleCellTable()
{
    // They refer to the table, and Qt's register would keep them.
    forgetRows();
}

CellTableView &AccessibleCellTable::table() const
{
    return static_cast<CellTableView &>(*widget());
}

void AccessibleCellTable::forgetRows()
{
    for (const QAccessible::Id row : std::as_const(m_rows)) {
        QAccessible::deleteAccessibleInterface(row);
    }
    m_rows.clear();
}

int AccessibleCellTable::childCount() const
{
    return table().model()->rowCount();
}

int AccessibleCellTable::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *row = dynamic_cast<const AccessibleCellRow *>(child);
    return row != nullptr && row->parent() == this ? row->row() : -1;
}

QAccessibleInterface *AccessibleCellTable::child(int index) const
{
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    // The same object each time: clients know an item by its registered identifier.
    if (const auto known = m_rows.constFind(index); known != m_rows.constEnd()) {
        return QAccessible::accessibleInterface(*known);
    }
    auto *made = new AccessibleCellRow(table(), index); // the register of interfaces owns it
    m_rows.insert(index, QAccessible::registerAccessibleInterface(made));
    return made;
}

QAccessibleInterface *AccessibleCellTable::childAt(int x, int y) const
{
    // Clients ask in coordinates of the screen.
    const QPoint place = table().viewport()->mapFromGlobal(QPoint(x, y));
    return table().viewport()->rect().contains(place) ? child(table().indexAt(place).row())
                                                      : nullptr;
}

QAccessibleInterface *AccessibleCellTable::focusChild() const
{
    if (!table().hasFocus()) {
        return nullptr;
    }
    // Without a current row it is the list itself that has the focus.
    QAccessibleInterface *current = child(table().currentIndex().row());
    return current != nullptr ? current : const_cast<AccessibleCellTable *>(this);
}

void *AccessibleCellTable::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface *>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QAccessibleInterface *AccessibleCellTable::cellAt(int row, int column) const
{
    return column == 0 ? child(row) : nullptr;
}

QList<QAccessibleInterface *> AccessibleCellTable::selectedCells() const
{
    QAccessibleInterface *selected = child(table().selectedRow());
    return selected != nullptr ? QList{selected} : QList<QAccessibleInterface *>{};
}

QString AccessibleCellTable::rowDescription(int row) const
{
    return table().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
}

int AccessibleCellTable::selectedRowCount() const
{
    return table().selectedRow() >= 0 ? 1 : 0;
}

QList<int> AccessibleCellTable::selectedRows() const
{
    const int selected = table().selectedRow();
    return selected >= 0 ? QList{selected} : QList<int>{};
}

bool AccessibleCellTable::isRowSelected(int row) const
{
    return row >= 0 && row == table().selectedRow();
}

bool AccessibleCellTable::selectRow(int row)
{
    // Qt keeps input from a disabled widget, but not what comes over the accessibility bus.
    if (!table().isEnabled() || row < 0 || row >= childCount()) {
        return false;
    }
    table().selectRow(row);
    return true;
}

void AccessibleCellTable::modelChange(QAccessibleTableModelChangeEvent * /*event*/)
{
    // Clients cache what they know of an item, so after a reset every row gets a new one.
    forgetRows();
}

} // namespace tessaly
