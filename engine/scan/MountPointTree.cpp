#include "engine/scan/MountPointTree.hpp"

#include "engine/scan/MountTable.hpp"

#include <array>
#include <cstddef>
#include <optional>

#include <unistd.h>

namespace tessaly::scan {

namespace {

/// The kernel tells no path longer than a page; such a folder has none here.
std::optional<std::string> realPath(int folder)
{
    std::array<char, 4096> path;
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) == path.size() || path[0] != '/') {
        return std::nullopt;
    }
    return std::string(path.data(), static_cast<std::size_t>(length));
}

/// Takes the first name off the front of a path.
std::string_view takeName(std::string_view &path)
{
    const std::size_t end = path.find('/');
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    return name;
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
    while (!relativePath.empty()) {
        const std::string_view name = takeName(relativePath);
        std::unique_ptr<Place> &next = place->inside[std::string(name)];
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
