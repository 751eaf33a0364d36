#pragma once

#include "platform/VolumeService.hpp"
#include "platform/linux/volumes/VolumeList.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// Walks a list of volumes, and into those whose contents are not skipped.
///
/// It looks only into folders of volumes that are local: others may keep it waiting for ever. It
/// neither follows links nor crosses over to what is mounted inside.
class LinuxVolumeEnumerator final : public VolumeEnumerator {
public:
    explicit LinuxVolumeEnumerator(const std::vector<VolumeList::Entry> &entries);

    [[nodiscard]] std::optional<std::string> next() override;
    void skipDescendants() override;

private:
    struct Item {
        std::string name;
        std::string path;
        bool mayBeEntered = false;
    };

    void addContents(const Item &folder);

    std::vector<std::string> m_mountPoints;
    std::vector<Item> m_items;    ///< those to come, the next one last
    std::optional<Item> m_folder; ///< to be entered before the next item
};

} // namespace tessaly
