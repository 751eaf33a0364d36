#include "platform/linux/storage/LinuxUserAccount.hpp"

#include "engine/tree/FilePath.hpp"
#include "platform/linux/storage/PasswordEntry.hpp"

#include <cstdlib>

namespace tessaly {

std::string LinuxUserAccount::loginName() const
{
    const auto entry = PasswordEntry::ofThisUser();
    return entry ? entry->loginName : std::string();
}

std::string LinuxUserAccount::homeFolder() const
{
    // The environment first, as shells and other programs have it: sudo and tests change it.
    if (const char *home = std::getenv("HOME"); home != nullptr && *home == '/') {
        return tree::cleanPath(home);
    }
    const auto entry = PasswordEntry::ofThisUser();
    return entry && entry->homeFolder.starts_with('/') ? tree::cleanPath(entry->homeFolder)
                                                       : std::string();
}

std::string LinuxUserAccount::usersFolder() const
{
    // The usual place on Linux. Homes elsewhere are told by homeFolder().
    return "/home";
}

} // namespace tessaly
