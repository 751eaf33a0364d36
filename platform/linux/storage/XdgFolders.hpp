#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// The user's base folders as freedesktop.org lays them down, from the environment.
///
/// All paths are absolute, are bytes, and have no slash at their end. The folders may be missing.
///
/// Threads: any, as long as none changes the environment.
class XdgFolders {
public:
    /// For settings: $XDG_CONFIG_HOME, or .config in the home folder when that is unset, empty or
    /// relative.
    [[nodiscard]] static std::string config();

    /// For what the program keeps: $XDG_DATA_HOME, or .local/share in the home folder likewise.
    [[nodiscard]] static std::string data();

    /// Where settings are looked for, the most important first: config(), then $XDG_CONFIG_DIRS or,
    /// when that names none, /etc/xdg.
    [[nodiscard]] static std::vector<std::string> configSearch();

    /// Where data is looked for, the most important first: data(), then $XDG_DATA_DIRS or, when
    /// that names none, /usr/local/share and /usr/share.
    [[nodiscard]] static std::vector<std::string> dataSearch();

    /// $HOME, or what the password database says when that is unset, empty or relative. Empty, so
    /// that paths made with it lie in the root folder, when nobody knows.
    [[nodiscard]] static std::string home();
};

} // namespace tessaly
