#include "engine/scan/FolderReader.hpp"

#include "engine/scan/LinkTarget.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

struct EntryFacts {
    unsigned char type = DT_REG;
    std::uint64_t byteCount = 0;
};

/// An entry's own facts, links not followed; those of an empty file when they cannot be read.
EntryFacts entryFacts(int folder, const char *name, unsigned wanted) noexcept
{
    struct statx facts = {};
    if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &facts) != 0) {
        return {};
    }
    return {static_cast<unsigned char>(IFTODT(facts.stx_mode)), facts.stx_size};
}

} // namespace

tree::LUMFileContainer *FolderReader::record(int folder, const DirectoryEntry &entry,
                                             tree::LUMFileContainer &container)
{
    // Folders and links need no statx(): the listing says what they are, and their own size counts
    // for nothing. Some file systems do not say, and only there it costs a call for each entry.
    EntryFacts facts{entry.type, 0};
    if (entry.type == DT_UNKNOWN) {
        facts = entryFacts(folder, entry.name.data(), STATX_TYPE | STATX_SIZE);
    } else if (entry.type != DT_DIR && entry.type != DT_LNK) {
        facts.byteCount = entryFacts(folder, entry.name.data(), STATX_SIZE).byteCount;
    }

    if (facts.type == DT_DIR) {
        return &appendFolder(entry.name, container);
    }
    if (facts.type != DT_LNK) {
        container.subitems().append(m_arena.make<tree::LUMFileItem>(entry.name, facts.byteCount));
    } else if (leadsToFolder(folder, entry.name.data())) {
        appendFolder(entry.name, container);
    }
    return nullptr;
}

tree::LUMFileContainer &FolderReader::appendFolder(std::string_view name,
                                                   tree::LUMFileContainer &container)
{
    auto &folder = m_arena.make<tree::LUMFileContainer>(name, std::uint64_t{0});
    container.subitems().append(folder);
    return folder;
}

bool FolderReader::isFolder(int folder, const char *name) noexcept
{
    return entryFacts(folder, name, STATX_TYPE).type == DT_DIR;
}

bool FolderReader::leadsToFolder(int folder, const char *link)
{
    // Resolving a link by hand takes many calls, so it is done only where there is an automount.
    return m_mounts.mayAutomount() ? linkLeadsToFolderWithoutAutomount(folder, link, m_share)
                                   : linkLeadsToFolder(folder, link);
}

} // namespace tessaly::scan
