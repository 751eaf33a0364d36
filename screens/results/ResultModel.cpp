#include "screens/results/ResultModel.hpp"

#include "engine/tree/LUMFileContainer.hpp"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

/// nullptr when no child has this name, or when it is a file.
const tree::LUMFileContainer *folderNamed(const tree::LUMFileContainer &parent,
                                          std::string_view name)
{
    const auto children = parent.subitems();
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const auto &child) { return child.itemName() == name; });
    return found != children.end() ? found->asContainer() : nullptr;
}

} // namespace

ResultModel::ResultModel(PathRules paths, Thresholds thresholds)
    : m_paths(std::move(paths)), m_thresholds(std::move(thresholds))
{
}

ResultModel::~ResultModel() = default;

void ResultModel::setResult(std::shared_ptr<tree::ScanTree> tree, ResultRows rows)
{
    m_tree = std::move(tree);
    m_folder = m_tree ? &m_tree->root() : nullptr;
    m_path = m_tree ? std::optional<std::string>(m_folder->itemName()) : std::nullopt;
    showLevel(std::move(rows));
}

void ResultModel::replaceSilently(std::shared_ptr<tree::ScanTree> tree, ResultRows rows)
{
    m_tree = std::move(tree);
    m_folder = m_tree ? &m_tree->root() : nullptr;
    // Its pointer must not be compared with folders of the new tree, which may get the same
    // address.
    m_selection.reset(); // its folder was the old tree's
    takeRows(std::move(rows));
}

void ResultModel::clearRows()
{
    // The tree is kept: the next refresh, such as after a change of the preferences, lists its rows
    // again, without a path. This is required and looks odd.
    m_path.reset();
    m_rows.clear();
    m_selection.reset();
    Q_EMIT levelChanged();
    Q_EMIT rowsChanged();
    Q_EMIT selectionChanged();
}

void ResultModel::refresh()
{
    showLevel(resultRowsOf(m_folder, m_thresholds()));
}

void ResultModel::setOrder(RowOrder order)
{
    m_order = order;
    sortRows(m_rows, order);
    m_selection = firstItem();
    Q_EMIT orderChanged();
    Q_EMIT rowsChanged();
    Q_EMIT selectionChanged();
}

bool ResultModel::drillDown(std::string_view name)
{
    if (m_isLocked) {
        return false;
    }
    // Rows that came back after a cancelled scan have no path above them.
    m_path = m_path ? m_paths.below(*m_path, name) : std::string(name);
    m_folder = m_folder != nullptr ? folderNamed(*m_folder, name) : nullptr;
    refresh();
    return true;
}

bool ResultModel::canDrillUp() const noexcept
{
    return !m_isLocked && m_path && m_folder != nullptr && m_folder->parentContainer() != nullptr;
}

bool ResultModel::drillUp()
{
    if (!canDrillUp()) {
        return false;
    }
    const std::string left(m_folder->itemName());
    m_path = m_paths.above(*m_path);
    m_folder = m_folder->parentContainer();
    showLevel(resultRowsOf(m_folder, m_thresholds()), left);
    return true;
}

bool ResultModel::isBelowTop() const noexcept
{
    // Only drillDown() to a name that no folder has leaves a path without a folder.
    return m_path && (m_folder == nullptr || m_folder->parentContainer() != nullptr);
}

std::optional<std::size_t> ResultModel::selectedRow() const
{
    // A name alone is not enough: the item may lie on another level with a child of that name.
    return m_selection && m_selection->folder == m_folder ? rowNamed(m_selection->name)
                                                          : std::nullopt;
}

void ResultModel::select(ResultItem item)
{
    // A view that shows the selection selects its row, which comes back here. The comparison ends
    // that loop.
    if (m_selection != item) {
        m_selection = std::move(item);
        Q_EMIT selectionChanged();
    }
}

ResultItem ResultModel::itemAt(std::size_t row) const
{
    return {m_folder, std::string(m_rows[row].folderName())};
}

void ResultModel::takeRows(ResultRows rows)
{
    m_rows = std::move(rows.rows);
    m_total = rows.total;
}

void ResultModel::showLevel(ResultRows rows, const std::optional<std::string> &selected)
{
    takeRows(std::move(rows));
    m_order = RowOrder::size;
    // The folder that was left may be one that is not listed, which a direct call can go into.
    const auto row = selected ? rowNamed(*selected) : std::nullopt;
    m_selection = row ? itemAt(*row) : firstItem();
    // Only when the whole change is done, so that every view finds a consistent state.
    Q_EMIT levelChanged();
    Q_EMIT orderChanged();
    Q_EMIT rowsChanged();
    Q_EMIT selectionChanged();
}

std::optional<std::size_t> ResultModel::rowNamed(std::string_view name) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const auto &row) { return row.folderName() == name; });
    return found != m_rows.end() ? std::optional(static_cast<std::size_t>(found - m_rows.begin()))
                                 : std::nullopt;
}

std::optional<ResultItem> ResultModel::firstItem() const
{
    return m_rows.empty() ? std::nullopt : std::optional(itemAt(0));
}

} // namespace tessaly
