#pragma once

#include "platform/Services.hpp"

#include <functional>
#include <string>

class QWidget;

namespace tessaly {

/// Lets the user grant the program access to their home folder, or revoke it. The grant is a
/// bookmark in the settings, which the home screen reads when the program starts.
///
/// Threads: the main thread.
class HomeFolderGrant {
public:
    /// Asks on `window`, and calls `changed` after each change, which takes effect at the next
    /// start of the program. Must outlive the window's input, since the chooser answers later.
    HomeFolderGrant(QWidget &window, const Services &services, std::function<void()> changed);

    /// Asks for a folder and stores a bookmark of it. If none can be made, the stored one is
    /// removed. Does nothing when the user cancels.
    void customHomeFolder();
    /// Removes the grant.
    void removeHomeFolder();

private:
    void store(const std::string &url) const;

    QWidget &m_window;
    const Services m_services;
    std::function<void()> m_changed;
};

} // namespace tessaly
