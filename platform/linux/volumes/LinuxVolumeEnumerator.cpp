#include "platform/linux/volumes/LinuxVolumeEnumerator.hpp"

#include "engine/tree/FilePath.hpp"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tessaly {

LinuxVolumeEnumerator::LinuxVolumeEnumerator(const std::vector<VolumeList::Entry> &entries)
{
    for (const VolumeList::Entry &entry : entries) {
        m_mountPoints.push_back(entry.path);
        m_items.push_back({entry.name, entry.path, entry.isLocal});
    }
    std::reverse(m_items.begin(), m_items.end()); // a stack: the next one is taken off the end
}

std::optional<std::string> LinuxVolumeEnumerator::next()
{
    // Folders are entered as late as possible: the caller skips most of them before that.
    if (const auto folder = std::exchange(m_folder, std::nullopt)) {
        addContents(*folder);
    }
    if (m_items.empty()) {
        return std::nullopt;
    }
    Item item = std::move(m_items.back());
    m_items.pop_back();
    if (item.mayBeEntered) {
        m_folder = item;
    }
    return std::move(item.name);
}

void LinuxVolumeEnumerator::skipDescendants()
{
    m_folder.reset();
}

void LinuxVolumeEnumerator::addContents(const Item &folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder.path, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename();
        Item item{tree::joinPath(folder.name, name), tree::joinPath(folder.path, name), false};
        // Another volume is an entry of its own, and may hang. Links could lead round in circles.
        const bool isMountPoint =
            std::find(m_mountPoints.begin(), m_mountPoints.end(), item.path) != m_mountPoints.end();
        std::error_code isUnknown;
        item.mayBeEntered =
            !isMountPoint && !entry->is_symlink(isUnknown) && entry->is_directory(isUnknown);
        m_items.push_back(std::move(item));
    }
}

} // namespace tessaly
