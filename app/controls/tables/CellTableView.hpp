#pragma once

#include <QListView>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tessaly {

class CellTableModel;
class CellTableSource;

/// A table of one column whose rows are shown by widgets, the cells. Cells are made for the rows in
/// view alone and reused, by identifier, as rows are scrolled; so a million rows take no more cells
/// than fit into the window. Selection, keys, type-ahead and what assistive
/// technology sees are those of the item view that this is.
///
/// Keys:  Return opens the selected row, the menu key shows its menu. When the keyboard gives the
///        table the focus, a row is selected if none was.
/// Mouse: a double click opens a row, except on a part of the cell that takes clicks itself.
class CellTableView : public QListView {
    Q_OBJECT

public:
    using CellMaker = std::function<std::unique_ptr<QWidget>()>;

    explicit CellTableView(QWidget *parent = nullptr);
    ~CellTableView() override;
    Q_DISABLE_COPY_MOVE(CellTableView)

    /// The source outlives the table, or is set to nullptr before it is destroyed.
    void setDataSource(CellTableSource *source);
    [[nodiscard]] CellTableSource *dataSource() const noexcept { return m_source; }

    /// All rows are of the same height, in points.
    void setRowHeight(int height);
    [[nodiscard]] int rowHeight() const noexcept { return m_rowHeight; }
    /// The same for rows whose height depends on the width that they have; called again whenever
    /// that changes.
    void setRowHeightForWidth(std::function<int(int width)> heightForWidth);

    /// How cells with this identifier are made.
    void registerCells(const QString &identifier, CellMaker maker);

    /// An unused cell with this identifier, or else a new one; nullptr when no cells are registered
    /// under it. The table owns the cell.
    [[nodiscard]] QWidget *makeView(const QString &identifier);

    /// Takes ownership of a cell, to be reused under this identifier.
    QWidget *adoptView(std::unique_ptr<QWidget> cell, const QString &identifier);

    /// Shows the rows that the source has now. Nothing is selected afterwards.
    void reloadData();

    /// The cell that shows a row, or nullptr when the row is out of sight.
    [[nodiscard]] QWidget *cellForRow(int row) const;
    /// How many cells there are, in use and out of use.
    [[nodiscard]] int cellCount() const noexcept { return m_cellCount; }

    [[nodiscard]] int selectedRow() const;
    void selectRow(int row);
    /// The cell of the selected row, which is brought into sight for that; nullptr without one.
    [[nodiscard]] QWidget *selectedCell();

    /// Opens a row, as Return on it does. Does nothing when there is no such row.
    void activateRow(int row);
    /// Shows a row's menu in its middle, as the menu key does. Does nothing when there is no row.
    void showMenuOfRow(int row);

    /// Has screen readers speak the rows: how many they are, and the first few. Does nothing while
    /// the table is out of sight, or when there are none.
    void speakRows();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex &index, const QEvent *event = nullptr) const override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Cell {
        QWidget *widget = nullptr;
        QString identifier;
    };

    /// Assistive technology selects a row, but leaves the current row as it was.
    void makeSelectedRowCurrent();
    void selectCurrentRow();
    [[nodiscard]] bool bringIntoSight(int row);
    void fitRowHeight();
    void layOutCells();
    [[nodiscard]] std::pair<int, int> rowsInSight() const;

    CellTableSource *m_source = nullptr;
    CellTableModel *m_model;
    int m_rowHeight = 46;
    std::function<int(int width)> m_heightForWidth;
    std::map<QString, CellMaker> m_makers;
    std::map<int, Cell> m_shown; ///< by row
    std::vector<Cell> m_unused;
    QString m_madeIdentifier; ///< of the cell that makeView() gave out last
    int m_cellCount = 0;
    bool m_isLayingOut = false;
};

} // namespace tessaly
