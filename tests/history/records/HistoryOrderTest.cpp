#include "history/records/HistoryOrder.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Totals = std::vector<std::string>;

/// A record that is known by its total.
HistoryRecords::value_type record(const std::string &total, std::optional<std::string> path,
                                  std::optional<double> date = std::nullopt)
{
    auto item = std::make_shared<KORVENHistoryItem>(path.value_or(""), total);
    item->setScanPath(std::move(path));
    item->setScanDate(date ? std::optional(archive::Timestamp{*date}) : std::nullopt);
    return item;
}

Totals totalsOf(const HistoryRecords &records)
{
    Totals totals;
    for (const auto &each : records) {
        totals.push_back(each->scanTotal().value_or("(none)"));
    }
    return totals;
}

TEST(HistoryOrder, theNewestComesFirstAndThoseWithoutADateLast)
{
    HistoryRecords records{record("undated", "/u"), record("old", "/o", -5.0),
                           record("new", "/n", 7.5), record("between", "/b", 7.25)};
    sortNewestFirst(records);
    EXPECT_EQ(totalsOf(records), (Totals{"new", "between", "old", "undated"}));
}

TEST(HistoryOrder, recordsOfOneDateKeepTheirOrder)
{
    HistoryRecords records{record("1", "/b", 3.0), record("2", "/a", 3.0), record("3", "/c", 3.0)};
    sortNewestFirst(records);
    EXPECT_EQ(totalsOf(records), (Totals{"1", "2", "3"}));
}

TEST(HistoryOrder, pathsAreOrderedByTheirCodeUnits)
{
    // U+1F600 is a surrogate pair in UTF-16 and comes before U+FF5E there, unlike in UTF-8.
    HistoryRecords records{record("tilde", "/\xEF\xBD\x9E"), record("face", "/\xF0\x9F\x98\x80"),
                           record("lower", "/alpha"), record("upper", "/Zeta"),
                           record("deeper", "/Zeta/a")};
    sortByPath(records);
    EXPECT_EQ(totalsOf(records), (Totals{"upper", "deeper", "lower", "face", "tilde"}));
}

TEST(HistoryOrder, recordsWithoutAPathComeFirstInTheirOrder)
{
    HistoryRecords records{record("a", "/a"), record("none 1", std::nullopt), record("empty", ""),
                           record("none 2", std::nullopt)};
    sortByPath(records);
    EXPECT_EQ(totalsOf(records), (Totals{"none 1", "none 2", "empty", "a"}));
}

TEST(HistoryOrder, recordsOfOnePathKeepTheirOrder)
{
    HistoryRecords records{record("1", "/a", 1.0), record("2", "/a", 2.0), record("3", "/a", 0.0)};
    sortByPath(records);
    EXPECT_EQ(totalsOf(records), (Totals{"1", "2", "3"}));
}

TEST(HistoryOrder, noRecordsAreInOrder)
{
    HistoryRecords records;
    sortNewestFirst(records);
    sortByPath(records);
    EXPECT_TRUE(records.empty());
}

} // namespace
} // namespace tessaly
