#pragma once

#include <QtGlobal>

namespace tessaly {

/// What the program's menu does with the selected row of a screen. A screen that is one offers it.
///
/// Threads: the main thread.
class RowActions {
public:
    RowActions() = default;
    virtual ~RowActions() = default;
    Q_DISABLE_COPY_MOVE(RowActions)

    /// Whether there is a selected row that can be acted on.
    [[nodiscard]] virtual bool hasSelectedRow() const = 0;
    /// Whether there is such a row, and something in it to preview.
    [[nodiscard]] virtual bool canShowQuickLook() const { return false; }

    // Each does nothing without a selected row.
    virtual void showQuickLook() {}
    virtual void showInFinder() = 0;
    virtual void showInfo() = 0;
};

} // namespace tessaly
