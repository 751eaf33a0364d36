#pragma once

#include "app/screen/CellKind.hpp"

#include <QString>

#include <functional>

class QWidget;

namespace tessaly {

class CellTableView;
class KORVENFolderCellView;
class KORVENFolderObject;
class KORVENProgressBar;
class KORVENViewController;

/// The cells of a result table: what each says of its row, and how its bar shows the row's share of
/// the level.
///
/// Threads: the main thread.
class ResultCells final {
public:
    /// The image of the row of a ".Trash" folder.
    using TrashImage = std::function<QString(const KORVENFolderObject &row)>;

    /// Cells of this table that call on this screen; both must outlive this. The table keeps them
    /// under the identifier, for reuse.
    ResultCells(CellTableView &table, KORVENViewController &screen, const QString &identifier,
                TrashImage trashImage);

    /// A cell of the table, filled with a row out of a level with this total.
    [[nodiscard]] QWidget *cellFor(const KORVENFolderObject &row, float total);

    /// The row as it is read out: name, size, percentage.
    [[nodiscard]] static QString accessibleText(const KORVENFolderObject &row, float total);

private:
    static void showShare(KORVENProgressBar &bar, float share);
    [[nodiscard]] QString imageName(const KORVENFolderObject &row) const;

    CellTableView &m_table;
    KORVENViewController &m_screen;
    const CellKind m_kind;
    const TrashImage m_trashImage;
};

} // namespace tessaly
