#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QCoreApplication>
#include <QPointer>

namespace tessaly {

class CellTableView;

/// What assistive technology sees of a row of a CellTableView: an item of a list that can be
/// selected, and opened or asked for its menu where the table's source says so.
///
/// The rows of a table that is disabled or hidden have no actions.
///
/// Threads: the main thread.
class AccessibleCellRow final : public QAccessibleInterface, public QAccessibleActionInterface {
    Q_DECLARE_TR_FUNCTIONS(tessaly::AccessibleCellRow)

public:
    AccessibleCellRow(CellTableView &table, int row);

    [[nodiscard]] int row() const noexcept { return m_row; }

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override
    {
        return nullptr;
    }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override
    {
        return -1;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void *interface_cast(QAccessible::InterfaceType type) override;

    /// The default action is the first.
    [[nodiscard]] QStringList actionNames() const override;
    [[nodiscard]] QString localizedActionName(const QString &name) const override;
    /// Runs after the call has returned, since it may remove the row. Does not run when the rows
    /// are reloaded before: the number may be that of another row then.
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &name) const override;

private:
    [[nodiscard]] bool canBeUsed() const;

    QPointer<CellTableView> m_table;
    int m_row;
};

} // namespace tessaly
