#include "tests/engine/TemporaryFolder.hpp"

#include "engine/scan/DirectoryListing.hpp"

#include <cstdlib>
#include <optional>
#include <system_error>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// In memory where that can be had: some of the trees have hundreds of thousands of entries.
std::string parentFolder()
{
    if (const char *chosen = std::getenv("TMPDIR")) {
        return chosen;
    }
    return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

scan::FileDescriptor openFolder(int parent, const std::string &name)
{
    scan::FileDescriptor folder(openat(parent, name.c_str(), folderFlags));
    if (!folder.isOpen()) {
        fail("open " + name);
    }
    return folder;
}

void makeFile(int parent, const std::string &name, std::uint64_t byteCount)
{
    const scan::FileDescriptor file(
        openat(parent, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!file.isOpen() || ftruncate(file.number(), static_cast<off_t>(byteCount)) != 0) {
        fail("make file " + name);
    }
}

void makeFolder(int parent, const std::string &name)
{
    if (mkdirat(parent, name.c_str(), 0755) != 0) {
        fail("make folder " + name);
    }
}

void makeFolderOfOne(int parent, const std::string &name)
{
    makeFolder(parent, name);
    makeFile(parent, name + "/f", 1);
}

/// Removes what can be removed at once; the name of a folder that is not empty is returned.
std::optional<std::string> removeSimpleEntries(int folder)
{
    scan::DirectoryListing listing;
    lseek(folder, 0, SEEK_SET);
    listing.open(folder);
    while (const scan::DirectoryEntry *entry = listing.next()) {
        const bool isFolder = entry->type == DT_DIR;
        if (unlinkat(folder, entry->name.data(), isFolder ? AT_REMOVEDIR : 0) != 0 && isFolder) {
            return std::string(entry->name);
        }
    }
    return std::nullopt;
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    m_path = parentFolder() + "/tessaly-test-XXXXXX";
    if (mkdtemp(m_path.data()) == nullptr || chmod(m_path.c_str(), 0755) != 0) {
        fail("make " + m_path);
    }
    m_descriptor = openFolder(AT_FDCWD, m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    removeContents(m_descriptor.number());
    rmdir(m_path.c_str());
}

void TemporaryFolder::file(const std::string &name, std::uint64_t byteCount) const
{
    makeFile(AT_FDCWD, path(name), byteCount);
}

void TemporaryFolder::folder(const std::string &name) const
{
    makeFolder(AT_FDCWD, path(name));
}

void TemporaryFolder::link(const std::string &name, const std::string &target) const
{
    if (symlink(target.c_str(), path(name).c_str()) != 0) {
        fail("make link " + name);
    }
}

void TemporaryFolder::nestedFolders(const std::string &name, int depth, std::uint64_t leafByteCount,
                                    Siblings siblings) const
{
    scan::FileDescriptor here = openFolder(descriptor(), ".");
    for (int level = 0; level < depth; ++level) {
        if (siblings == Siblings::two) {
            makeFolderOfOne(here.number(), "y");
        }
        makeFolder(here.number(), name);
        if (siblings == Siblings::two) {
            makeFolderOfOne(here.number(), "z");
        }
        here = openFolder(here.number(), name);
    }
    makeFile(here.number(), "leaf", leafByteCount);
}

void removeContents(int folder)
{
    std::vector<std::string> names; // the way from the folder to where we are
    scan::FileDescriptor here(openat(folder, ".", folderFlags));
    while (here.isOpen()) {
        if (std::optional<std::string> name = removeSimpleEntries(here.number())) {
            scan::FileDescriptor below(openat(here.number(), name->c_str(), folderFlags));
            if (!below.isOpen()) {
                return; // a mount point, or not ours: it stays
            }
            here = std::move(below);
            names.push_back(std::move(*name));
        } else if (names.empty()) {
            return;
        } else {
            here = scan::FileDescriptor(openat(here.number(), "..", folderFlags));
            if (unlinkat(here.number(), names.back().c_str(), AT_REMOVEDIR) != 0) {
                return;
            }
            names.pop_back();
        }
    }
}

} // namespace tessaly
