#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tessaly::scan {

class MountTable;

/// Where below a scanned folder something is mounted, so that a scan need not ask at every folder
/// what file system it has come to.
///
/// The list is the one that the kernel had when it was read. It only says where to ask: what is
/// really there (one mount may cover another) is for fileSystemKind() to say.
///
/// Threads: never changes once made; any number may read.
class MountPointTree {
public:
    /// A folder in which, or somewhere below which, something is mounted, or that is itself a
    /// mount point. A walk carries one along; almost everywhere it is nullptr.
    struct Place {
        std::map<std::string, std::unique_ptr<Place>, std::less<>> inside;
    };

    /// Knows nothing: every folder must be asked.
    MountPointTree() = default;

    /// The mounts below an open folder, out of the kernel's list at `mountInfoPath`. Knows nothing
    /// when the list or the folder's real path cannot be read.
    static MountPointTree below(int folder, const std::string &mountInfoPath);

    /// The same from a list that was read and the folder's real path.
    static MountPointTree fromTable(const MountTable &table, std::string_view folderPath);

    /// Whether a folder's file system has to be asked for before the folder is opened.
    [[nodiscard]] bool mustAsk(const Place *place) const noexcept
    {
        return place != nullptr || m_top == nullptr;
    }

    /// Whether anything in this process's view of the file system may mount itself when touched.
    [[nodiscard]] bool mayAutomount() const noexcept { return m_mayAutomount; }

    /// The scanned folder; nullptr when nothing is mounted below it or nothing is known.
    [[nodiscard]] const Place *top() const noexcept
    {
        return m_top == nullptr || m_top->inside.empty() ? nullptr : m_top.get();
    }

    /// The place that a subfolder of a place is; nullptr for the most part.
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
