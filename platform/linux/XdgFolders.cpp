#include "platform/linux/XdgFolders.hpp"

#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// The path without slashes at its end; nothing when it is not absolute.
std::optional<std::string> absolutePath(const char *path)
{
    if (path == nullptr || *path != '/') {
        return std::nullopt;
    }
    std::string_view bytes = path;
    while (bytes.ends_with('/')) {
        bytes.remove_suffix(1);
    }
    return std::string(bytes);
}

std::optional<std::string> homeInPasswordDatabase()
{
    constexpr std::size_t enoughForAnyEntry = std::size_t{64} << 10U;
    std::vector<char> texts(enoughForAnyEntry);
    passwd entry = {};
    passwd *found = nullptr;
    if (getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found) != 0 ||
        found == nullptr) {
        return std::nullopt;
    }
    return absolutePath(found->pw_dir);
}

std::string folder(const char *variable, const char *insideHome)
{
    const auto chosen = absolutePath(std::getenv(variable));
    return chosen ? *chosen : XdgFolders::home() + insideHome;
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

std::string XdgFolders::home()
{
    if (auto home = absolutePath(std::getenv("HOME"))) {
        return *home;
    }
    return homeInPasswordDatabase().value_or("");
}

} // namespace tessaly
