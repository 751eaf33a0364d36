#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace tessaly {

class CellTableView;

/// What assistive technology sees of a CellTableView: a list whose items are the rows (see
/// AccessibleCellRow). Items are made on demand.
///
/// Threads: the main thread.
// Destroyed by Qt's list of interfaces.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class AccessibleCellTable final : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit AccessibleCellTable(CellTableView &table);
    Q_DISABLE_COPY_MOVE(AccessibleCellTable)

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;
    [[nodiscard]] void *interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QAccessibleInterface *caption() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *summary() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *cellAt(int row, int column) const override;
    [[nodiscard]] int selectedCellCount() const override { return selectedRowCount(); }
    [[nodiscard]] QList<QAccessibleInterface *> selectedCells() const override;
    [[nodiscard]] QString columnDescription(int /*column*/) const override { return {}; }
    [[nodiscard]] QString rowDescription(int row) const override;
    [[nodiscard]] int selectedColumnCount() const override { return 0; }
    [[nodiscard]] int selectedRowCount() const override;
    [[nodiscard]] int columnCount() const override { return 1; }
    [[nodiscard]] int rowCount() const override { return childCount(); }
    [[nodiscard]] QList<int> selectedColumns() const override { return {}; }
    [[nodiscard]] QList<int> selectedRows() const override;
    [[nodiscard]] bool isColumnSelected(int /*column*/) const override { return false; }
    [[nodiscard]] bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int /*column*/) override { return false; }
    /// A row stays selected until another one is.
    bool unselectRow(int /*row*/) override { return false; }
    bool unselectColumn(int /*column*/) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *event) override;

private:
    ~AccessibleCellTable() override;
    [[nodiscard]] CellTableView &table() const;
    void forgetRows();

    mutable QHash<int, QAccessible::Id> m_rows; ///< those made so far, by row
};

} // namespace tessaly
