#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tessaly::scan {

class MountTable;

/// The mount points below a scanned folder, so that a scan calls fstatfs() only there and not for
/// every folder.
///
/// It is a snapshot, and it only says where to look: what a scan finds there (one mount may cover
/// another) is what fileSystemKind() says.
///
/// Threads: immutable once made; any number may read.
class MountPointTree {
public:
    /// A folder that is a mount point or has one somewhere below. A walk keeps track of the one
    /// that it is in; almost everywhere it is nullptr.
    struct Place {
        std::map<std::string, std::unique_ptr<Place>, std::less<>> inside;
    };

    /// Knows nothing: every folder must be checked.
    MountPointTree() = default;

    /// The mounts below an open folder, from the kernel's list at `mountInfoPath`. Knows nothing
    /// when the list or the folder's real path cannot be read.
    static MountPointTree below(int folder, const std::string &mountInfoPath);

    /// The same from a list and the folder's real path.
    static MountPointTree fromTable(const MountTable &table, std::string_view folderPath);

    /// Whether a folder's file system has to be checked before the folder is opened.
    [[nodiscard]] bool mustCheck(const Place *place) const noexcept
    {
        return place != nullptr || m_top == nullptr;
    }

    /// Whether there may be automounts anywhere in this process's view of the file system.
    [[nodiscard]] bool mayAutomount() const noexcept { return m_mayAutomount; }

    /// The scanned folder; nullptr when nothing is mounted below it or nothing is known.
    [[nodiscard]] const Place *top() const noexcept
    {
        return m_top == nullptr || m_top->inside.empty() ? nullptr : m_top.get();
    }

    /// The place of a subfolder, or nullptr.
    [[nodiscard]] static const Place *inside(const Place *place, std::string_view name)
    {
        return place == nullptr ? nullptr : find(*place, name);
    }

private:
    [[nodiscard]] static const Place *find(const Place &place, std::string_view name);
    void add(std::string_view relativePath);

    std::unique_ptr<Place> m_top;
    bool m_mayAutomount = true;
};

} // namespace tessaly::scan
