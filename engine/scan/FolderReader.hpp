#pragma once

#include "engine/scan/DescriptorShare.hpp"
#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/MountPointTree.hpp"
#include "engine/scan/OpenedFolder.hpp"
#include "engine/tree/LUMFileContainer.hpp"

namespace tessaly::scan {

/// A subfolder that was recorded and is still to be walked.
struct Subfolder {
    tree::LUMFileContainer *container;  ///< still empty, already a child of its parent
    const MountPointTree::Place *place; ///< nullptr when nothing is mounted there or below
};

/// Records the direct content of a folder: one node for each entry, in the listing's order.
///
/// Entries are recorded as:
///   a folder                       an empty container, reported as one to walk
///   a symbolic link to a folder    an empty container
///   any other symbolic link        nothing
///   anything else                  an item with its logical size; 0 when that cannot be read.
///                                  Nothing but folders is ever opened.
///   an entry named "Volumes"       nothing, and the rest of the listing is left out as well
///
/// A folder of an automount file system is not listed, which could mount everything in it: only
/// what is mounted there already is recorded, in the order of names.
///
/// Threads: one at a time.
/// Errors:  what cannot be read is left out. std::bad_alloc from any call; what was recorded before
///          stays consistent.
class FolderReader {
public:
    FolderReader(const MountPointTree &mounts, tree::NodeArena &arena, DescriptorShare &share)
        : m_mounts(mounts), m_arena(arena), m_share(share)
    {
    }

    /// Appends an open folder's entries to its container. Calls `shouldStop()` before each entry
    /// and `foundSubfolder(Subfolder)` for each folder to walk.
    template <typename ShouldStop, typename FoundSubfolder>
    void read(int descriptor, FileSystemKind kind, Subfolder recorded, ShouldStop shouldStop,
              FoundSubfolder foundSubfolder)
    {
        if (kind == FileSystemKind::automount) {
            readMounted(descriptor, recorded, foundSubfolder);
            return;
        }
        m_listing.open(descriptor);
        while (const DirectoryEntry *entry = m_listing.next()) {
            if (shouldStop() || endsListing(entry->name)) {
                return;
            }
            if (tree::LUMFileContainer *found = record(descriptor, *entry, *recorded.container)) {
                foundSubfolder(
                    Subfolder{found, MountPointTree::inside(recorded.place, entry->name)});
            }
        }
    }

    /// Appends one entry of an open folder to its container. Returns the new container of a folder
    /// to walk, else nullptr. Requires: a zero byte follows the entry's name.
    tree::LUMFileContainer *record(int folder, const DirectoryEntry &entry,
                                   tree::LUMFileContainer &container);

private:
    [[nodiscard]] static bool endsListing(std::string_view name) noexcept
    {
        return name == "Volumes";
    }

    template <typename FoundSubfolder>
    void readMounted(int descriptor, Subfolder recorded, FoundSubfolder foundSubfolder)
    {
        if (recorded.place == nullptr) {
            return;
        }
        for (const auto &[name, place] : recorded.place->inside) {
            if (endsListing(name)) {
                return;
            }
            if (isFolder(descriptor, name.c_str())) {
                foundSubfolder(Subfolder{&appendFolder(name, *recorded.container), place.get()});
            }
        }
    }

    [[nodiscard]] static bool isFolder(int folder, const char *name) noexcept;
    [[nodiscard]] bool leadsToFolder(int folder, const char *link);
    tree::LUMFileContainer &appendFolder(std::string_view name, tree::LUMFileContainer &container);

    const MountPointTree &m_mounts;
    tree::NodeArena &m_arena;
    DescriptorShare &m_share;
    DirectoryListing m_listing;
};

} // namespace tessaly::scan
