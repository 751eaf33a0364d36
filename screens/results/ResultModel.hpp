#pragma once

#include "engine/tree/ScanTree.hpp"
#include "screens/results/ResultRows.hpp"

#include <QObject>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// An item of a scan tree, wherever it lies and whatever row shows it.
struct ResultItem {
    const tree::LUMFileContainer *folder = nullptr; ///< that holds it; valid as long as its tree
    std::string name;

    friend bool operator==(const ResultItem &, const ResultItem &) = default;
};

/// What all views of one result display: a scan tree, one level of it, the rows of that level in an
/// order, and the selected item. Views do not know each other: what the user does in one of them
/// reaches the others as a change of the model.
///
/// A level is a folder of the tree and its path as the screen spells it. There may be one without
/// the other: after a cancelled scan the folder of the scan before is still there but has no path,
/// and a name that no child has leads to a path without a folder.
///
/// All signals of a change are sent when the whole change is done.
///
/// Names:   paths and names are bytes.
/// Threads: the main thread, but for isLocked() and setLocked(), which any may call.
class ResultModel final : public QObject {
    Q_OBJECT

public:
    /// How a screen spells the paths of levels.
    struct PathRules {
        /// The path of a child, from the folder's path and the child's name.
        std::function<std::string(const std::string &folder, std::string_view name)> below;
        /// The path of the folder above.
        std::function<std::string(const std::string &folder)> above;
    };
    /// Asked each time that rows are made.
    using Thresholds = std::function<RowThresholds()>;

    ResultModel(PathRules paths, Thresholds thresholds);
    ~ResultModel() override;
    Q_DISABLE_COPY_MOVE(ResultModel)

    [[nodiscard]] bool hasTree() const noexcept { return m_tree != nullptr; }
    /// The folder of the level. Valid until the tree is replaced.
    [[nodiscard]] const tree::LUMFileContainer *folder() const noexcept { return m_folder; }
    [[nodiscard]] const std::optional<std::string> &path() const noexcept { return m_path; }
    [[nodiscard]] const std::vector<KORVENFolderObject> &rows() const noexcept { return m_rows; }
    /// Bytes of all items of the level, listed or not, in single precision (see ResultRows).
    [[nodiscard]] float total() const noexcept { return m_total; }
    [[nodiscard]] RowOrder order() const noexcept { return m_order; }

    /// Shows a tree, or none, from its top. `rows` are those of its root; the path is the root's
    /// name.
    void setResult(std::shared_ptr<tree::ScanTree> tree, ResultRows rows);
    /// Replaces tree and rows, but sends no signal and keeps the path: views go on to show what
    /// they showed before, and nothing is selected.
    void replaceSilently(std::shared_ptr<tree::ScanTree> tree, ResultRows rows);
    /// Leaves the level with neither rows nor path. Its folder stays: refresh() lists it again.
    void clearRows();
    /// Rebuilds the rows of the level, by the thresholds as they are now and by size.
    void refresh();
    void setOrder(RowOrder order);

    // The way through the tree. A level is first shown by size, with its first row selected.

    /// Goes to the child folder with this name. Returns false when it is locked.
    bool drillDown(std::string_view name);
    /// Whether there is a level above that can be gone to now. Without a path there is none: what
    /// would be shown there could not be found on the disk.
    [[nodiscard]] bool canDrillUp() const noexcept;
    /// Goes to the folder above and selects the one that was left. False when it cannot.
    bool drillUp();
    /// Whether a path has led down from the top, be it to a folder that is not there.
    [[nodiscard]] bool isBelowTop() const noexcept;

    /// While it is locked there is no way down or up: another result is on its way.
    [[nodiscard]] bool isLocked() const noexcept { return m_isLocked; }
    void setLocked(bool isLocked) noexcept { m_isLocked = isLocked; }

    // The selection, which all views share. The item may lie on another level than the one shown.

    [[nodiscard]] const std::optional<ResultItem> &selection() const noexcept
    {
        return m_selection;
    }
    /// The row of the selected item; nothing when no row shows it. Looks through the rows.
    [[nodiscard]] std::optional<std::size_t> selectedRow() const;
    /// Requires: the item is of this tree.
    void select(ResultItem item);
    /// The item that a row shows. Requires: there is such a row.
    [[nodiscard]] ResultItem itemAt(std::size_t row) const;

Q_SIGNALS:
    /// Folder, path or total of the level are others.
    void levelChanged();
    /// The rows are others, or in another order. They are shown from the first one.
    void rowsChanged();
    void orderChanged();
    void selectionChanged();

private:
    void takeRows(ResultRows rows);
    /// Shows these rows of the level by size, with this item or else the first row selected.
    void showLevel(ResultRows rows, const std::optional<std::string> &selected = std::nullopt);
    [[nodiscard]] std::optional<std::size_t> rowNamed(std::string_view name) const;
    [[nodiscard]] std::optional<ResultItem> firstItem() const;

    const PathRules m_paths;
    const Thresholds m_thresholds;
    std::shared_ptr<tree::ScanTree> m_tree;           ///< keeps m_folder alive
    const tree::LUMFileContainer *m_folder = nullptr; ///< nullptr: none
    std::optional<std::string> m_path;
    std::vector<KORVENFolderObject> m_rows;
    float m_total = 0;
    RowOrder m_order = RowOrder::size;
    std::optional<ResultItem> m_selection;
    std::atomic<bool> m_isLocked = false; ///< set by scan workers
};

} // namespace tessaly
