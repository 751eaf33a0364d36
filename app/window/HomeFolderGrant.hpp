#pragma once

#include <functional>
#include <string_view>

class QWidget;

namespace tessaly {

/// Lets the user grant the program their home folder, or take that back. The grant is a bookmark in
/// the settings, which the home screen reads when the program starts.
///
/// Threads: the main thread.
class HomeFolderGrant {
public:
    /// Asks on `window`, and calls `changed` after each change, which takes effect only when the
    /// program starts anew. Has to live for as long as the window takes input.
    HomeFolderGrant(QWidget &window, std::function<void()> changed);

    /// Asks for a folder and keeps the bookmark of the chosen one; without a bookmark of it, none
    /// is kept any more. Nothing happens when the user cancels.
    void customHomeFolder();
    /// Takes the grant back.
    void removeHomeFolder();

private:
    void store(std::string_view url) const;

    QWidget &m_window;
    std::function<void()> m_changed;
};

} // namespace tessaly
