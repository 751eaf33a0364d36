#pragma once

#include "platform/Interface.hpp"

#include <functional>
#include <string_view>

namespace tessaly {

/// Starts other programs of the desktop.
///
/// Threads: the main thread. Returns at once.
/// Errors:  none reach the caller; they go to the log.
class ApplicationLauncher : public Interface {
public:
    /// Starts the desktop's program for "Disk Utility.app", "Finder.app" (the file manager) or
    /// "System Preferences.app" (the settings). Any other name, and one for which no program is
    /// installed, starts nothing.
    virtual void launchApplication(std::string_view name) = 0;

    /// Asks whether launchApplication() would find a program by that name now. Answers on the main
    /// thread, never before it returns, nor after this object is destroyed.
    virtual void askWhetherInstalled(std::string_view name,
                                     std::function<void(bool isInstalled)> answer) = 0;
};

} // namespace tessaly
