#pragma once

#include "app/controls/tables/CellTableSource.hpp"
#include "screens/results/ResultCells.hpp"
#include "screens/results/ResultView.hpp"

#include <QObject>
#include <QPointer>

namespace tessaly {

class CellTableView;
class KORVENFolderCellView;
class ResultModel;

/// The rows of a result's level in a table, each in a cell. Selecting a row in the table selects
/// its item in the model, and the other way round. Whatever changes the rows shows them from the
/// first one.
///
/// Threads: the main thread.
class RowsView final : public QObject, public ResultView, public CellTableSource {
public:
    /// Shows the model in the table, by cells that call on the screen. All three must outlive this,
    /// but for the table, which may be destroyed before.
    RowsView(CellTableView &table, ResultModel &model, KORVENViewController &screen,
             const QString &cellIdentifier, ResultCells::TrashImage trashImage);
    ~RowsView() override;
    Q_DISABLE_COPY_MOVE(RowsView)

    [[nodiscard]] QWidget &widget() const override;
    /// nullptr when it was destroyed.
    [[nodiscard]] CellTableView *table() const noexcept { return m_table; }
    void speak() override;

    [[nodiscard]] bool hasSelectedRow() const override;
    [[nodiscard]] bool canShowQuickLook() const override;
    void showQuickLook() override;
    void showInFinder() override;
    void showInfo() override;

    [[nodiscard]] int numberOfRowsInTableView() const override;
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;

private:
    void showRows();
    void showSelection();
    void takeSelection();
    /// The row is there. The table may not have been told of the rows that the model has now.
    [[nodiscard]] bool hasRow(int row) const;
    [[nodiscard]] const KORVENFolderObject &rowAt(int row) const;
    [[nodiscard]] KORVENFolderCellView *cellAt(int row) const;
    void actOnSelectedCell(void (KORVENFolderCellView::*act)());

    [[nodiscard]] QString searchText(int row) const override;
    [[nodiscard]] QString accessibleText(int row) const override;
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed) override;
    [[nodiscard]] bool canActivateRow(int row) const override;
    [[nodiscard]] bool hasMenu(int /*row*/) const override { return true; }
    void activateRow(int row) override;
    void showMenu(int row, const QPoint &place) override;

    QPointer<CellTableView> m_table;
    ResultModel &m_model;
    KORVENViewController &m_screen;
    ResultCells m_cells;
};

} // namespace tessaly
