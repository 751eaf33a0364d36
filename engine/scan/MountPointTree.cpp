#include "engine/scan/MountPointTree.hpp"

#include "engine/scan/MountTable.hpp"

#include <filesystem>
#include <optional>
#include <system_error>

namespace tessaly::scan {

namespace {

/// The path of an open folder as the list of mounts has it, without links. The kernel reports no
/// path longer than a page, and none that this process cannot reach: those have no leading slash.
std::optional<std::string> realPath(int folder)
{
    std::error_code unknown;
    const std::string path =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(folder), unknown).native();
    return path.starts_with('/') ? std::optional(path) : std::nullopt;
}

} // namespace

MountPointTree MountPointTree::below(int folder, const std::string &mountInfoPath)
{
    const std::optional<MountTable> table = MountTable::read(mountInfoPath);
    const std::optional<std::string> path = realPath(folder);
    return table && path ? fromTable(*table, *path) : MountPointTree();
}

MountPointTree MountPointTree::fromTable(const MountTable &table, std::string_view folderPath)
{
    MountPointTree mounts;
    mounts.m_top = std::make_unique<Place>();
    mounts.m_mayAutomount = false;
    const std::string prefix =
        folderPath == "/" ? std::string(folderPath) : std::string(folderPath) + '/';
    for (const Mount &mount : table.mounts()) {
        // Wherever it is mounted: a link below the scanned folder may lead there.
        mounts.m_mayAutomount = mounts.m_mayAutomount || mount.type == "autofs";
        if (mount.mountPoint.size() > prefix.size() && mount.mountPoint.starts_with(prefix)) {
            mounts.add(std::string_view(mount.mountPoint).substr(prefix.size()));
        }
    }
    return mounts;
}

void MountPointTree::add(std::string_view relativePath)
{
    Place *place = m_top.get();
    for (const std::filesystem::path &name : std::filesystem::path(relativePath)) {
        std::unique_ptr<Place> &next = place->inside[name.native()];
        if (next == nullptr) {
            next = std::make_unique<Place>();
        }
        place = next.get();
    }
}

const MountPointTree::Place *MountPointTree::find(const Place &place, std::string_view name)
{
    const auto found = place.inside.find(name);
    return found == place.inside.end() ? nullptr : found->second.get();
}

} // namespace tessaly::scan
