#pragma once

class QWidget;

namespace tessaly {

class CellTableView;
class RowActions;

/// One page of the main window, as the window and the program's menu see it. Both go through a list
/// of screens and know nothing else of a page.
///
/// Set-up:  awakeFromNib() first, then the window shows the view, then startLoading().
/// Threads: the main thread.
class Screen {
public:
    virtual ~Screen() = default;

    /// The page's widget, destroyed with the screen. The window that shows it may own it and
    /// destroy it earlier: nullptr from then on.
    [[nodiscard]] virtual QWidget *view() const noexcept = 0;

    /// One-time set-up. Later calls do nothing.
    virtual void awakeFromNib() = 0;
    /// Starts work that can wait until the window has been painted, such as reading the last
    /// result. Called once.
    virtual void startLoading() {}

    /// Rebuilds the rows by the preferences as they are now.
    virtual void refreshTable() {}

    /// From the start of a scan until its result, or that it was cancelled, is shown.
    [[nodiscard]] virtual bool isScanRunningNow() const noexcept { return false; }

    /// Turns to the other sort order.
    virtual void sortClicked() = 0;
    /// Whether the menu offers that now.
    [[nodiscard]] virtual bool canSort() const noexcept { return !isScanRunningNow(); }

    /// Whether there is something to go back to now.
    [[nodiscard]] virtual bool canGoBack() const noexcept { return false; }
    /// Goes back one step, as the page's own button does. Does nothing unless canGoBack().
    virtual void goBack() {}

    /// What the menu does with the selected row; nullptr for a page whose rows have no actions.
    [[nodiscard]] virtual RowActions *rowActions() noexcept { return nullptr; }

    /// The table whose rows a screen reader speaks when the page opens; nullptr for a page without
    /// one.
    [[nodiscard]] virtual CellTableView *rowsTable() const noexcept { return nullptr; }
};

} // namespace tessaly
