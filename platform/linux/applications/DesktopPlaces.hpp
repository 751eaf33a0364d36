#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// What the environment says about programs: where their descriptions and the programs themselves
/// lie, and which desktop runs. A copy, for threads that must not read the environment.
struct DesktopPlaces {
    std::vector<std::string> configFolders;  ///< by falling importance, as in XdgFolders
    std::vector<std::string> dataFolders;    ///< the same
    std::vector<std::string> desktops;       ///< XDG_CURRENT_DESKTOP: "ubuntu:GNOME" are two names
    std::vector<std::string> programFolders; ///< PATH

    /// Threads: any, as long as none changes the environment.
    [[nodiscard]] static DesktopPlaces ofEnvironment();

    /// Whether this is a program that may be run: a name that PATH leads to, or an absolute path.
    [[nodiscard]] bool hasProgram(const std::string &name) const;
};

} // namespace tessaly
