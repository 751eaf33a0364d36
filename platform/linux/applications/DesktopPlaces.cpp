#include "platform/linux/applications/DesktopPlaces.hpp"

#include "platform/linux/storage/XdgFolders.hpp"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {

namespace {

std::vector<std::string> listIn(const char *variable, const char *usual)
{
    const char *value = std::getenv(variable);
    std::istringstream text(value == nullptr ? usual : value);
    std::vector<std::string> items;
    for (std::string item; std::getline(text, item, ':');) {
        // An empty part of PATH means the current folder, in which no program is looked for.
        if (!item.empty()) {
            items.push_back(item);
        }
    }
    return items;
}

/// A folder may be "executable" as well, so that alone does not make a program.
bool isProgram(const std::string &path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace

DesktopPlaces DesktopPlaces::ofEnvironment()
{
    return {XdgFolders::configSearch(), XdgFolders::dataSearch(), listIn("XDG_CURRENT_DESKTOP", ""),
            listIn("PATH", "/usr/local/bin:/usr/bin:/bin")};
}

bool DesktopPlaces::hasProgram(const std::string &name) const
{
    if (name.starts_with('/')) {
        return isProgram(name);
    }
    // A relative path would depend on the folder that this program was started in.
    if (name.empty() || name.find('/') != std::string::npos) {
        return false;
    }
    return std::any_of(programFolders.begin(), programFolders.end(),
                       [&](const std::string &folder) { return isProgram(folder + '/' + name); });
}

} // namespace tessaly
