#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// The user's folders by freedesktop.org's XDG Base Directory Specification 0.8.
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

    /// Where settings are looked for, by falling preference: config(), then $XDG_CONFIG_DIRS or,
    /// when that names none, /etc/xdg.
    [[nodiscard]] static std::vector<std::string> configSearch();

    /// Where data is looked for, by falling preference: data(), then $XDG_DATA_DIRS or, when
    /// that names none, /usr/local/share and /usr/share.
    [[nodiscard]] static std::vector<std::string> dataSearch();

    /// $HOME, or what the password database says when that is unset, empty or relative. Empty, so
    /// that paths made with it lie in the root folder, when that does not know the user either.
    [[nodiscard]] static std::string home();
};

} // namespace tessaly
