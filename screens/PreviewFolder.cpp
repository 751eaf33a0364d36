#include "screens/PreviewFolder.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

bool isFolder(int parent, const scan::DirectoryEntry &entry)
{
    // Most file systems tell the type in the listing, which saves a call for each entry. Some tell
    // nothing (DT_UNKNOWN), and of a link the target decides.
    if (entry.type != DT_LNK && entry.type != DT_UNKNOWN) {
        return entry.type == DT_DIR;
    }
    struct stat status;
    // A look at a folder must not mount anything.
    return fstatat(parent, entry.name.data(), &status, AT_NO_AUTOMOUNT) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace

std::vector<PreviewFolderEntry> previewFolderEntries(const std::string &path)
{
    std::vector<PreviewFolderEntry> entries;
    const scan::FileDescriptor folder(
        open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    if (!folder.isOpen()) {
        return entries;
    }
    scan::DirectoryListing listing;
    listing.open(folder.number());
    while (const scan::DirectoryEntry *entry = listing.next()) {
        // The check comes first, so that nothing is asked about hidden entries.
        if (!entry->name.starts_with('.')) {
            entries.push_back({std::string(entry->name), isFolder(folder.number(), *entry)});
        }
    }
    return entries;
}

} // namespace tessaly
