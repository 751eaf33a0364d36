#include "app/controls/tables/CellTableModel.hpp"

#include "app/controls/tables/CellTableSource.hpp"

namespace tessaly {

CellTableModel::CellTableModel(QObject *parent) : QAbstractListModel(parent) {}

void CellTableModel::setSource(CellTableSource *source)
{
    m_source = source;
    reload();
}

void CellTableModel::reload()
{
    beginResetModel();
    // Counted inside the reset and kept: views must not see the number of rows change at any other
    // time.
    m_rowCount = m_source != nullptr ? m_source->numberOfRowsInTableView() : 0;
    endResetModel();
}

int CellTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

QVariant CellTableModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    // The source may have fewer rows by now than at the last reset: a view may ask in between.
    if (m_source == nullptr || row < 0 || row >= m_source->numberOfRowsInTableView()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return m_source->searchText(row);
    case Qt::AccessibleTextRole:
        return m_source->accessibleText(row);
    default:
        return {};
    }
}

} // namespace tessaly
