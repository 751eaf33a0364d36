#include "platform/linux/storage/XdgFolders.hpp"

#include "platform/linux/storage/LinuxUserAccount.hpp"

#include <cstdlib>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

/// The path without slashes at its end; nothing when it is not absolute.
std::optional<std::string> absolutePath(const char *path)
{
    // The base directory rules say to ignore relative paths.
    if (path == nullptr || *path != '/') {
        return std::nullopt;
    }
    std::string_view bytes = path;
    while (bytes.ends_with('/')) {
        bytes.remove_suffix(1);
    }
    return std::string(bytes);
}

std::string folder(const char *variable, const char *insideHome)
{
    const auto chosen = absolutePath(std::getenv(variable));
    return chosen ? *chosen : XdgFolders::home() + insideHome;
}

/// The first folder, and those that the variable lists, or else the usual ones. Relative paths are
/// ignored, as the XDG Base Directory rules say.
std::vector<std::string> searched(std::string first, const char *variable, const char *usual)
{
    const char *value = std::getenv(variable);
    // A variable without a single absolute path counts as unset.
    for (const char *list : {value == nullptr ? "" : value, usual}) {
        std::vector<std::string> folders{first};
        std::istringstream items(list);
        for (std::string item; std::getline(items, item, ':');) {
            if (const auto path = absolutePath(item.c_str())) {
                folders.push_back(*path);
            }
        }
        if (folders.size() > 1) {
            return folders;
        }
    }
    return {std::move(first)};
}

} // namespace

std::string XdgFolders::config()
{
    return folder("XDG_CONFIG_HOME", "/.config");
}

std::string XdgFolders::data()
{
    return folder("XDG_DATA_HOME", "/.local/share");
}

std::vector<std::string> XdgFolders::configSearch()
{
    return searched(config(), "XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<std::string> XdgFolders::dataSearch()
{
    return searched(data(), "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

std::string XdgFolders::home()
{
    const std::string home = LinuxUserAccount().homeFolder();
    // Else "/" + "/.config" would begin with two slashes.
    return home == "/" ? "" : home;
}

} // namespace tessaly
