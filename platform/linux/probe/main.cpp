// file-system-probe QUESTION PATH: asks a file system that may never answer, for the program that
// starts it (ProbeProcess), which can then kill this instead of hanging itself.
//
//   figures   writes "TOTAL FREE", in bytes; nothing when they cannot be read.
//   folders   writes an errno value, 0 when PATH is a folder; another one, 0 when it can be read;
//             then the names of the folders in it. A NUL byte follows each. What may hang comes
//             last: links and what the file system tells no type of.

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"
#include "platform/linux/volumes/VolumeSpace.hpp"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>

namespace {

using namespace tessaly;

void writeText(const std::string &text)
{
    std::fwrite(text.c_str(), 1, text.size() + 1, stdout);
}

/// Why a descriptor is not open, for whom it may interest at once.
void writeError(const scan::FileDescriptor &descriptor)
{
    writeText(std::to_string(descriptor.isOpen() ? 0 : errno));
    std::fflush(stdout);
}

bool isFolder(int folder, const std::string &name)
{
    struct stat status = {};
    return fstatat(folder, name.c_str(), &status, 0) == 0 && S_ISDIR(status.st_mode);
}

void writeFigures(const std::string &path)
{
    if (const auto figures = spaceAt(path)) {
        std::printf("%llu %llu", static_cast<unsigned long long>(figures->total),
                    static_cast<unsigned long long>(figures->free));
    }
}

void writeFolders(const std::string &path)
{
    const scan::FileDescriptor place(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    writeError(place);
    if (!place.isOpen()) {
        return;
    }
    const scan::FileDescriptor folder(
        openat(place.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    writeError(folder);
    if (!folder.isOpen()) {
        return;
    }
    std::vector<std::string> others;
    scan::DirectoryListing listing;
    listing.open(folder.number());
    while (const scan::DirectoryEntry *entry = listing.next()) {
        if (entry->type == DT_DIR) {
            writeText(std::string(entry->name));
        } else if (entry->type == DT_LNK || entry->type == DT_UNKNOWN) {
            others.emplace_back(entry->name);
        }
    }
    for (const std::string &name : others) {
        std::fflush(stdout); // this may be the one that hangs
        if (isFolder(folder.number(), name)) {
            writeText(name);
        }
    }
}

} // namespace

int main(int argumentCount, char **arguments)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argumentCount != 3) {
        return 2;
    }
    const std::string_view question = arguments[1];
    if (question == "figures") {
        writeFigures(arguments[2]);
    } else if (question == "folders") {
        writeFolders(arguments[2]);
    } else {
        return 2;
    }
    return 0;
}
