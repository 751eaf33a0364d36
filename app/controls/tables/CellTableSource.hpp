#pragma once

#include <QString>

class QKeyEvent;
class QPoint;
class QWidget;

namespace tessaly {

/// What a CellTableView shows: rows, each in a cell.
///
/// Threads: the main thread.
class CellTableSource {
public:
    CellTableSource() = default;
    virtual ~CellTableSource() = default;
    CellTableSource(const CellTableSource &) = delete;
    CellTableSource &operator=(const CellTableSource &) = delete;
    CellTableSource(CellTableSource &&) = delete;
    CellTableSource &operator=(CellTableSource &&) = delete;

    [[nodiscard]] virtual int numberOfRowsInTableView() const = 0;

    /// The cell that shows a row, taken from the table's CellTableView::makeView() and filled. It
    /// is asked for only when the row comes into sight. nullptr leaves the row empty.
    [[nodiscard]] virtual QWidget *viewForTableColumn(int row) = 0;

    /// What typing is compared with, to select a row.
    [[nodiscard]] virtual QString searchText(int row) const = 0;
    /// What the row is to somebody who cannot see it.
    [[nodiscard]] virtual QString accessibleText(int row) const { return searchText(row); }

    /// Asked for each key that is typed: whether it may select rows by typing.
    virtual bool shouldTypeSelectForEvent(const QKeyEvent & /*event*/, const QString & /*typed*/)
    {
        return true;
    }
    /// Whether activateRow() and showMenu() do something with the row.
    [[nodiscard]] virtual bool canActivateRow(int /*row*/) const { return false; }
    [[nodiscard]] virtual bool hasMenu(int /*row*/) const { return false; }
    /// The user wants to go into the row: Return on it.
    virtual void activateRow(int /*row*/) {}
    /// The user wants the row's menu, at this place of the screen.
    virtual void showMenu(int /*row*/, const QPoint & /*place*/) {}
};

} // namespace tessaly
