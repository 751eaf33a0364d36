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
    Q_DISABLE_COPY_MOVE(CellTableSource)

    [[nodiscard]] virtual int numberOfRowsInTableView() const = 0;

    /// The cell that shows a row, taken from the table's CellTableView::makeView() and filled. It
    /// is asked for only when the row comes into sight. nullptr leaves the row empty.
    [[nodiscard]] virtual QWidget *viewForTableColumn(int row) = 0;

    /// What typing is compared with, to select a row.
    [[nodiscard]] virtual QString searchText(int row) const = 0;
    /// What screen readers say for the row.
    [[nodiscard]] virtual QString accessibleText(int row) const { return searchText(row); }

    /// Is asked for each key that is typed: whether it may select rows by typing.
    virtual bool shouldTypeSelectForEvent(const QKeyEvent & /*event*/, const QString & /*typed*/)
    {
        return true;
    }
    /// Whether activateRow() and showMenu() do something with the row.
    [[nodiscard]] virtual bool canActivateRow(int /*row*/) const { return false; }
    [[nodiscard]] virtual bool hasMenu(int /*row*/) const { return false; }
    /// The user opens the row: Return, or a double click.
    virtual void activateRow(int /*row*/) {}
    /// The user wants the row's menu, at this place of the screen.
    virtual void showMenu(int /*row*/, const QPoint & /*place*/) {}
};

} // namespace tessaly
