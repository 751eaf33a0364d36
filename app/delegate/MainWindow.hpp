#pragma once

#include <QtGlobal>

#include <optional>
#include <string>

namespace tessaly {

/// What the application delegate asks of the main window's controller.
///
/// Threads: the main thread, but for historyStoreUpdated(), which is called on the thread that
///          added to the history.
class MainWindow {
public:
    MainWindow() = default;
    virtual ~MainWindow() = default;
    Q_DISABLE_COPY_MOVE(MainWindow)

    /// The program has been launched, on a release whose windows need help with their layout.
    virtual void windowLoaded() = 0;
    /// Reloads the history screen.
    virtual void historyStoreUpdated() = 0;
    /// Removes the record with this key from the history screen.
    virtual void reloadHistoryDelete(const std::optional<std::string> &scanKey) = 0;
    /// Shows the recorded scan with this key.
    virtual void loadHistoryItem(const std::string &scanKey) = 0;
    /// Lets the user choose a folder and scans it.
    virtual void scanClicked() = 0;
};

} // namespace tessaly
