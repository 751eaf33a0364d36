#pragma once

#include <QAbstractListModel>

namespace tessaly {

class CellTableSource;

/// The rows of a CellTableSource as Qt's item views know them: texts for searching and for
/// assistive technology. What is seen is drawn by cells.
class CellTableModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit CellTableModel(QObject *parent);

    void setSource(CellTableSource *source);
    void reload();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

private:
    CellTableSource *m_source = nullptr;
    int m_rowCount = 0; ///< as of the last reload: views must not see it change by itself
};

} // namespace tessaly
