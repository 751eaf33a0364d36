#include "platform/linux/storage/PasswordEntry.hpp"

#include <cstddef>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace tessaly {

std::optional<PasswordEntry> PasswordEntry::ofThisUser()
{
    // sysconf(_SC_GETPW_R_SIZE_MAX) is only a hint, and may be too small for entries from a server.
    constexpr std::size_t enoughForAnyEntry = std::size_t{64} << 10U;
    std::vector<char> texts(enoughForAnyEntry);
    passwd entry = {};
    passwd *found = nullptr;
    // The reentrant call: getpwuid() returns a buffer that all threads share.
    if (getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found) != 0 ||
        found == nullptr) {
        return std::nullopt;
    }
    // Copied here: the entry points into `texts`.
    return PasswordEntry{found->pw_name, found->pw_dir};
}

} // namespace tessaly
