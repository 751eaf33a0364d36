#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// Where the environment says that programs are described and lie, and on which desktop it is.
/// A copy of the environment, so that other threads can go by it.
struct DesktopPlaces {
    std::vector<std::string> configFolders;  ///< the most important first, as XdgFolders has them
    std::vector<std::string> dataFolders;    ///< the same
    std::vector<std::string> desktops;       ///< XDG_CURRENT_DESKTOP: "ubuntu:GNOME" are two names
    std::vector<std::string> programFolders; ///< PATH

    /// Threads: any, as long as none changes the environment.
    [[nodiscard]] static DesktopPlaces ofEnvironment();

    /// Whether this is a program that may be run: a name that PATH leads to, or an absolute path.
    [[nodiscard]] bool hasProgram(const std::string &name) const;
};

} // namespace tessaly
