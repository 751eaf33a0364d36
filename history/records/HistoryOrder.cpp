#include "history/records/HistoryOrder.hpp"

#include "engine/tree/NameOrder.hpp"

#include <algorithm>
#include <compare>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tessaly {

namespace {

using Value = KORVENHistoryItem::Value;

/// Sorts by the values that the records have for a key, each of which is asked for once.
template <typename Before>
void sortByKey(HistoryRecords &records, std::string_view key, Before comesBefore)
{
    // A value is a copy of the path. Asking in the comparison would copy two paths for each of n
    // log n steps.
    std::vector<std::pair<Value, HistoryRecords::value_type>> rows;
    rows.reserve(records.size());
    for (auto &record : records) {
        Value value = record->valueForKey(key);
        rows.emplace_back(std::move(value), std::move(record));
    }
    std::stable_sort(rows.begin(), rows.end(), [&](const auto &left, const auto &right) {
        return comesBefore(left.first, right.first);
    });
    std::transform(rows.begin(), rows.end(), records.begin(),
                   [](auto &row) { return std::move(row.second); });
}

bool isEarlierPath(const Value &left, const Value &right)
{
    const auto *leftPath = std::get_if<std::string>(&left);
    const auto *rightPath = std::get_if<std::string>(&right);
    // std::stable_sort() needs a strict weak order: two records without a path are equal.
    if (leftPath == nullptr || rightPath == nullptr) {
        return leftPath == nullptr && rightPath != nullptr;
    }
    return std::is_lt(tree::compareByCodeUnits(*leftPath, *rightPath));
}

} // namespace

void sortNewestFirst(HistoryRecords &records)
{
    // Nothing comes before every date in the order of values.
    sortByKey(records, "scanDate",
              [](const Value &left, const Value &right) { return right < left; });
}

void sortByPath(HistoryRecords &records)
{
    sortByKey(records, "scanPath", isEarlierPath);
}

} // namespace tessaly
