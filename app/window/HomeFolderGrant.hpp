#pragma once

#include "platform/Services.hpp"

#include <functional>
#include <string>

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
    HomeFolderGrant(QWidget &window, const Services &services, std::function<void()> changed);

    /// Asks for a folder and keeps the bookmark of the chosen one; without a bookmark of it, none
    /// is kept any more. Nothing happens when the user cancels.
    void customHomeFolder();
    /// Takes the grant back.
    void removeHomeFolder();

private:
    void store(const std::string &url) const;

    QWidget &m_window;
    const Services m_services;
    std::function<void()> m_changed;
};

} // namespace tessaly
