#pragma once

#include "engine/tree/ScanTree.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

namespace tree {
class LUMFileContainer;
} // namespace tree

/// The level of a scan tree that a screen shows: a folder of the tree, and its path as that screen
/// spells it.
///
/// There may be one without the other. After a cancelled scan the folder of the scan before is
/// still there, but has no path; a name that no child has leads to a path without a folder.
///
/// Names:   paths and names are bytes.
/// Threads: the main thread.
class ShownLevel final {
public:
    [[nodiscard]] bool hasTree() const noexcept { return m_tree != nullptr; }
    /// nullptr when there is none. Valid until setTree().
    [[nodiscard]] const tree::LUMFileContainer *folder() const noexcept { return m_folder; }
    [[nodiscard]] const std::optional<std::string> &path() const noexcept { return m_path; }

    /// Goes to the top of a tree, or of none. The path stays.
    void setTree(std::shared_ptr<tree::ScanTree> tree);
    /// The path of the top: the name of the tree's root. Without a tree there is none.
    void takePathOfTree();
    void forgetPath() { m_path.reset(); }

    /// Goes to the child with this name.
    void goDown(std::string_view name, std::string path);

    [[nodiscard]] bool isTop() const noexcept;
    /// Whether there is a level above. Without a path there is none: what would be shown there
    /// could not be found on the disk.
    [[nodiscard]] bool canGoUp() const noexcept;
    /// Goes to the folder above. Requires: canGoUp().
    void goUp(std::optional<std::string> path);

private:
    std::shared_ptr<tree::ScanTree> m_tree; ///< keeps m_folder alive
    const tree::LUMFileContainer *m_folder = nullptr;
    std::optional<std::string> m_path;
};

} // namespace tessaly
