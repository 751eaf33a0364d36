#include "engine/FolderProblem.hpp"

#include "engine/OpenedFolder.hpp"

#include <cerrno>
#include <system_error>

namespace tessaly {

std::optional<std::string> folderProblem(std::string_view path)
{
    const OpenedFolder folder = openFolderPath(path);
    const int errorNumber = errno;
    // A kernel file system is left closed without an error: it is not listed, but it could be.
    if (folder.descriptor.isOpen() || errorNumber == 0) {
        return std::nullopt;
    }
    return std::generic_category().message(errorNumber);
}

} // namespace tessaly
