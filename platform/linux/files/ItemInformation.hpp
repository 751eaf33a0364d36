#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include <sys/types.h>

namespace tessaly {

/// What the file system knows about one item. Names and paths are bytes.
struct ItemInformation {
    /// Asks the system. Follows no link and triggers no automount. May block on the file system.
    /// The user's own files and folders keep their times of last access.
    ///
    /// Threads: any.
    /// Errors:  `error` says why nothing is known; whatever else cannot be read is left out.
    [[nodiscard]] static ItemInformation of(const std::string &path);

    std::string path;
    int error = 0; ///< the errno value with which looking at the item ended; 0: all went well

    mode_t mode = 0;                         ///< type and permissions, as the system has them
    std::uint64_t byteCount = 0;             ///< the logical size
    std::optional<std::uint64_t> entryCount; ///< of a folder, whatever lies directly in it
    std::string target;                      ///< of a link, as it is written in it
    bool isTargetThere = false;              ///< of a link
    std::optional<std::string> beginning;    ///< of a file, enough to guess what is in it

    std::string owner; ///< a name; where there is none, the number
    std::string group;

    std::optional<std::chrono::sys_seconds> created;
    std::chrono::sys_seconds modified{};
    std::chrono::sys_seconds accessed{};
};

} // namespace tessaly
