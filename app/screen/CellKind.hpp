#pragma once

#include "app/controls/tables/CellTableView.hpp"

#include <QString>

#include <memory>

namespace tessaly {

/// How the cells of a table are made: by the table, which is told how to load them, or on an old
/// release (run10p7Mode) one by one.
///
/// Threads: the main thread.
struct CellKind {
    QString identifier;            ///< under which the table keeps cells for reuse
    CellTableView::CellMaker load; ///< from the interface file; nullptr when that has no such cell
    CellTableView::CellMaker makeBare; ///< without anything in it

    /// Tells the table how to load cells. Does nothing on an old release.
    void registerIn(CellTableView &table) const;
    /// A cell to be filled: one that is out of use, or a new one. It is bare when the interface
    /// file has no such cell. The table owns it.
    [[nodiscard]] QWidget &nextOf(CellTableView &table) const;
};

/// Cells of a class that has tableCellViewWithNibNamed().
template <typename Cell, typename Owner>
[[nodiscard]] CellKind cellsOf(const QString &identifier, const QString &nibName, Owner *owner)
{
    return {identifier,
            [nibName, owner] { return Cell::tableCellViewWithNibNamed(nibName, owner); },
            [] { return std::make_unique<Cell>(); }};
}

} // namespace tessaly
