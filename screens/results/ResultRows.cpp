#include "screens/results/ResultRows.hpp"

#include "engine/tree/LUMFileContainer.hpp"
#include "engine/tree/NameOrder.hpp"

#include <algorithm>
#include <compare>

namespace tessaly {

namespace {

bool exceeds(std::uint64_t size, std::uint64_t threshold) noexcept
{
    // A preference of 0 lists none of these items. It does not mean "any size".
    return size > threshold && threshold != 0;
}

bool isListed(const tree::LUMFileItem &item, std::uint64_t size, RowThresholds thresholds) noexcept
{
    const std::string_view name = item.itemName();
    if (name.starts_with('.')) {
        // A deliberate exception: the trash is where space can be won, whatever the preferences
        // say.
        return exceeds(size, thresholds.hiddenItem) || (item.isContainer() && name == trashName);
    }
    return item.isContainer() || exceeds(size, thresholds.largeFile);
}

} // namespace

ResultRows resultRowsOf(const tree::LUMFileContainer *folder, RowThresholds thresholds)
{
    ResultRows result;
    if (folder == nullptr) {
        return result;
    }
    // Added up exactly and rounded once at the end. A float would lose small files beside large
    // ones.
    std::uint64_t total = 0;
    for (const tree::LUMFileItem &child : folder->subitems()) {
        const tree::LUMFileContainer *container = child.asContainer();
        const std::uint64_t size =
            container != nullptr ? container->valueOfSubitems() : child.itemSize();
        total += size;
        if (isListed(child, size, thresholds)) {
            result.rows.emplace_back(child.itemName(), child.itemName(), size,
                                     container != nullptr);
        }
    }
    sortRows(result.rows, RowOrder::size);
    result.total = static_cast<float>(total);
    return result;
}

// Stable, so that rows of one size keep the order of the tree.
void sortRows(std::vector<KORVENFolderObject> &rows, RowOrder order)
{
    if (order == RowOrder::size) {
        std::stable_sort(rows.begin(), rows.end(),
                         [](const KORVENFolderObject &a, const KORVENFolderObject &b) {
                             return a.folderSizeAsNumber() > b.folderSizeAsNumber();
                         });
    } else {
        std::stable_sort(
            rows.begin(), rows.end(), [](const KORVENFolderObject &a, const KORVENFolderObject &b) {
                return std::is_lt(tree::compareByCodeUnits(a.folderName(), b.folderName()));
            });
    }
}

} // namespace tessaly
