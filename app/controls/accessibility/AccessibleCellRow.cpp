#include "app/controls/accessibility/AccessibleCellRow.hpp"

#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/CellTableView.hpp"

#include <QAbstractItemModel>
#include <QPersistentModelIndex>
#include <QWindow>

namespace tessaly {

namespace {

const QString &openAction()
{
    return QAccessibleActionInterface::pressAction();
}

const QString &menuAction()
{
    return QAccessibleActionInterface::showMenuAction();
}

/// Qt's item views call it so.
const QString &selectAction()
{
    return QAccessibleActionInterface::toggleAction();
}

const QString &focusAction()
{
    return QAccessibleActionInterface::setFocusAction();
}

void perform(CellTableView &table, int row, const QString &action)
{
    if (action == openAction()) {
        table.activateRow(row);
    } else if (action == menuAction()) {
        table.showMenuOfRow(row);
    } else if (action == selectAction()) {
        table.selectRow(row);
    } else if (action == focusAction()) {
        table.selectRow(row);
        table.setFocus(Qt::OtherFocusReason);
    }
}

} // namespace

AccessibleCellRow::AccessibleCellRow(CellTableView &table, int row) : m_table(&table), m_row(row) {}

/// Clients keep an item for as long as they like: the table may be destroyed, and its rows may be
/// fewer.
bool AccessibleCellRow::isValid() const
{
    return m_table != nullptr && m_row < m_table->model()->rowCount();
}

bool AccessibleCellRow::canBeUsed() const
{
    return isValid() && m_table->isEnabled() && m_table->isVisible();
}

QWindow *AccessibleCellRow::window() const
{
    return m_table != nullptr ? m_table->window()->windowHandle() : nullptr;
}

QAccessibleInterface *AccessibleCellRow::parent() const
{
    return QAccessible::queryAccessibleInterface(m_table);
}

QString AccessibleCellRow::text(QAccessible::Text kind) const
{
    return isValid() && kind == QAccessible::Name
               ? m_table->model()->index(m_row, 0).data(Qt::AccessibleTextRole).toString()
               : QString();
}

QRect AccessibleCellRow::rect() const
{
    if (!isValid()) {
        return {};
    }
    const QRect place = m_table->visualRect(m_table->model()->index(m_row, 0));
    return {m_table->viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::State AccessibleCellRow::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const QRect place = m_table->visualRect(m_table->model()->index(m_row, 0));
    state.disabled = !m_table->isEnabled();
    state.invisible = !m_table->isVisible() || !m_table->viewport()->rect().intersects(place);
    state.selectable = true;
    state.selected = m_table->selectedRow() == m_row;
    state.focusable = true;
    state.active = m_table->currentIndex().row() == m_row;
    state.focused = state.active && m_table->hasFocus();
    return state;
}

void *AccessibleCellRow::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                : nullptr;
}

QStringList AccessibleCellRow::actionNames() const
{
    QStringList names;
    const CellTableSource *source = canBeUsed() ? m_table->dataSource() : nullptr;
    if (source == nullptr) {
        return names;
    }
    if (source->canActivateRow(m_row)) {
        names << openAction();
    }
    if (source->hasMenu(m_row)) {
        names << menuAction();
    }
    return names << selectAction() << focusAction();
}

QString AccessibleCellRow::localizedActionName(const QString &name) const
{
    if (name == openAction()) {
        return tr("Open");
    }
    if (name == selectAction()) {
        return tr("Select");
    }
    return QAccessibleActionInterface::localizedActionName(name);
}

void AccessibleCellRow::doAction(const QString &name)
{
    // A client may ask for any name, also while the row has no actions.
    if (!actionNames().contains(name)) {
        return;
    }
    // Queued, since the action may remove this row. A persistent index becomes invalid with a
    // reload, when another row may have the number.
    QMetaObject::invokeMethod(
        m_table,
        [table = m_table, index = QPersistentModelIndex(m_table->model()->index(m_row, 0)), name] {
            // Meanwhile a sheet may have opened, or the rows been reloaded.
            if (index.isValid() &&
                AccessibleCellRow(*table, index.row()).actionNames().contains(name)) {
                perform(*table, index.row(), name);
            }
        },
        Qt::QueuedConnection);
}

QStringList AccessibleCellRow::keyBindingsForAction(const QString & /*name*/) const
{
    return {};
}

} // namespace tessaly
