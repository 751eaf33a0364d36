#pragma once

#include "app/controls/tables/CellTableSource.hpp"

#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

namespace tessaly {

class CellTableView;

/// The list of the screens at the window's left.
class Sidebar final : public QWidget, private CellTableSource {
    Q_OBJECT

public:
    static constexpr int usualWidth = 240;

    /// Decides for each key that is typed whether it may select a row.
    using TypeSelect = std::function<bool(const QKeyEvent &event, const QString &typed)>;

    /// A row: the interface file of its cell, and its title for type-ahead and screen readers.
    struct Row {
        QString cellIdentifier;
        QString title;
    };

    Sidebar(std::vector<Row> rows, TypeSelect shouldTypeSelect, QWidget *parent = nullptr);
    ~Sidebar() override;
    Q_DISABLE_COPY_MOVE(Sidebar)

    [[nodiscard]] CellTableView &outlineTable() const noexcept { return *m_outlineTable; }
    [[nodiscard]] int selectedRow() const;
    void selectRow(int row);

Q_SIGNALS:
    void selectionChanged(int row);

private:
    [[nodiscard]] int numberOfRowsInTableView() const override;
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;
    [[nodiscard]] QString searchText(int row) const override;
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed) override;

    const std::vector<Row> m_rows;
    const TypeSelect m_shouldTypeSelect;
    CellTableView *m_outlineTable;
};

} // namespace tessaly
