#pragma once

#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/screen/Screen.hpp"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

class QLabel;
class QStackedWidget;

namespace tessaly {

/// Base of the screens that show a table of cells: loads the screen's interface file, owns its
/// view, makes the cells, and shows either the table or what there is to say without rows.
///
/// It is no QObject, so that a screen may derive from one of its own. List that base first: this
/// one uses it until it is destroyed.
///
/// Interface file: a CellTableView "tableView" in a stack of pages, and in the same stack a page
///                 "emptyPage" with the labels "emptyTitle" and "emptyText".
/// Destructor:     a derived class calls closeView() in its own, since the table asks its overrides
///                 for as long as there is a view.
/// Threads:        the main thread.
class TableScreen : public Screen, protected CellTableSource {
public:
    [[nodiscard]] QWidget *view() const noexcept final { return m_view; }
    [[nodiscard]] CellTableView *rowsTable() const noexcept final
    {
        return m_view ? m_tableView : nullptr;
    }

    void awakeFromNib() final;
    /// Until awakeFromNib() has been called.
    [[nodiscard]] bool firstRunFlag() const noexcept { return m_firstRunFlag; }

protected:
    /// How the cells of a table are made.
    struct CellKind {
        QString identifier; ///< under which the table keeps cells for reuse
        CellTableView::CellMaker
            load; ///< from the interface file; nullptr when that has no such cell
        CellTableView::CellMaker makeBare; ///< without anything in it
    };
    /// Cells of a class that has tableCellViewWithNibNamed().
    template <typename Cell, typename Owner>
    [[nodiscard]] static CellKind cellsOf(const QString &identifier, const QString &nibName,
                                          Owner *owner)
    {
        return {identifier,
                [nibName, owner] { return Cell::tableCellViewWithNibNamed(nibName, owner); },
                [] { return std::make_unique<Cell>(); }};
    }

    /// Loads the view. `object`: the derived class as the QObject that it is.
    TableScreen(QObject &object, const QString &nibName, CellKind cells);
    ~TableScreen() override;
    TableScreen(const TableScreen &) = delete;
    TableScreen &operator=(const TableScreen &) = delete;
    TableScreen(TableScreen &&) = delete;
    TableScreen &operator=(TableScreen &&) = delete;

    /// The rest of the set-up. The table has its data source and the cells can be made.
    virtual void setUp() = 0;

    /// The widget of the view with this name, which has to be there.
    template <typename Widget>
    [[nodiscard]] Widget &find(QAnyStringView name) const
    {
        return outlet<Widget>(*m_view, name);
    }
    /// Connects buttons and actions of the view, all of which have to be there.
    void wire(const std::vector<WiredAction> &actions);

    /// Destroys the view, which asks nothing of this any more. Does nothing without one.
    void closeView();

    [[nodiscard]] CellTableView &table() const noexcept { return *m_tableView; }
    /// Guards the buttons that it is given against double clicks.
    [[nodiscard]] PressGuard &pressGuard() noexcept { return m_pressGuard; }

    /// A cell to be filled: one that is out of use, or a new one. It is bare when the interface
    /// file has no such cell.
    template <typename Cell>
    [[nodiscard]] Cell &makeCell()
    {
        return static_cast<Cell &>(nextCell());
    }
    /// The cell that shows a row; nullptr when the row is out of sight.
    template <typename Cell>
    [[nodiscard]] Cell *cellAt(int row) const
    {
        return qobject_cast<Cell *>(m_tableView->cellForRow(row));
    }
    /// The cell of the selected row, which is scrolled into sight; nullptr without one.
    template <typename Cell>
    [[nodiscard]] Cell *selectedCell() const
    {
        return qobject_cast<Cell *>(m_tableView->selectedCell());
    }
    [[nodiscard]] bool isRow(int row) const { return row >= 0 && row < numberOfRowsInTableView(); }
    /// Selects a row without scrolling.
    void selectInPlace(int row);

    /// What the page says in place of rows. Without a text, the title stands alone.
    void setEmptyTexts(const QString &title, const QString &text);
    void showTable();
    void showEmptyPage();

private:
    [[nodiscard]] QWidget &nextCell();

    QObject &m_object;
    PressGuard m_pressGuard;
    CellKind m_cells;
    bool m_firstRunFlag = true;
    QPointer<QWidget> m_view;
    // Outlets: the view owns them.
    CellTableView *m_tableView = nullptr;
    QStackedWidget *m_pages = nullptr;
    QWidget *m_emptyPage = nullptr;
    QLabel *m_emptyTitle = nullptr;
    QLabel *m_emptyText = nullptr;
};

} // namespace tessaly
