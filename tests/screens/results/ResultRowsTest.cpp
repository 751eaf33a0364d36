#include "screens/results/ResultRows.hpp"

#include "engine/tree/LUMFileContainer.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// Nothing but folders, and everything of more than a byte.
constexpr RowThresholds noFiles{.hiddenItem = 0, .largeFile = 0};
constexpr RowThresholds nearlyAll{.hiddenItem = 1, .largeFile = 1};

Names namesOf(const std::vector<KORVENFolderObject> &rows)
{
    Names names;
    for (const KORVENFolderObject &row : rows) {
        names.emplace_back(row.folderName());
    }
    return names;
}

/// The names of the rows of a folder with these children.
Names listed(std::vector<PlannedNode> children, RowThresholds thresholds)
{
    const auto tree = makeTree("/f", std::move(children));
    return namesOf(resultRowsOf(&tree->root(), thresholds).rows);
}

TEST(ResultRows, ofNoFolderAreNone)
{
    const ResultRows rows = resultRowsOf(nullptr, nearlyAll);
    EXPECT_TRUE(rows.rows.empty());
    EXPECT_EQ(rows.total, 0);
}

TEST(ResultRows, sayWhatEachItemIs)
{
    const auto tree = makeTree("/f", {file("a", 10), folder("d", {file("x", 20), file("y", 5)})});
    const auto rows = resultRowsOf(&tree->root(), nearlyAll).rows;
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].folderName(), "d");
    EXPECT_TRUE(rows[0].folderIsDirectory());
    EXPECT_EQ(rows[0].folderSizeAsNumber(), 25U) << "the whole tree of the folder";
    EXPECT_EQ(rows[1].folderName(), "a");
    EXPECT_EQ(rows[1].folderFullPath(), "a");
    EXPECT_FALSE(rows[1].folderIsDirectory());
    EXPECT_EQ(rows[1].folderSizeAsNumber(), 10U);
}

TEST(ResultRows, haveFilesThatExceedTheThresholdAlone)
{
    const RowThresholds thresholds{.hiddenItem = 1'000, .largeFile = 500};
    EXPECT_EQ(listed({file("at it", 500), file("above it", 501), file(".at it", 1'000),
                      file(".above it", 1'001)},
                     thresholds),
              (Names{".above it", "above it"}));
}

TEST(ResultRows, haveNoFilesWhereTheThresholdIsZero)
{
    EXPECT_EQ(listed({file("a", UINT64_MAX)}, {.hiddenItem = 1, .largeFile = 0}), Names{});
    EXPECT_EQ(listed({file(".a", UINT64_MAX)}, {.hiddenItem = 0, .largeFile = 1}), Names{});
}

TEST(ResultRows, haveFoldersOfAnySize)
{
    EXPECT_EQ(listed({folder("empty"), folder("full", {file("x", 1)})}, noFiles),
              (Names{"full", "empty"}));
}

TEST(ResultRows, haveHiddenFoldersByTheirTotal)
{
    const std::vector<PlannedNode> children{folder(".a", {file("x", 6), file("y", 5)}),
                                            folder(".b", {file("x", 10)})};
    EXPECT_EQ(listed(children, {.hiddenItem = 10, .largeFile = 0}), Names{".a"});
    EXPECT_EQ(listed(children, noFiles), Names{});
}

TEST(ResultRows, haveTheTrashWhateverTheThresholds)
{
    EXPECT_EQ(listed({folder(".Trash")}, noFiles), Names{".Trash"});
    EXPECT_EQ(listed({folder(".trash"), folder(".Trashes"), folder(".TRASH")}, noFiles), Names{});
    EXPECT_EQ(listed({file(".Trash", 10)}, noFiles), Names{}) << "a file is none";
}

TEST(ResultRows, haveATotalOfAllItemsListedOrNot)
{
    const auto tree =
        makeTree("/f", {file("a", 100), file(".h", 20), folder(".d", {file("x", 3)}), folder("e")});
    EXPECT_EQ(resultRowsOf(&tree->root(), noFiles).total, 123);
}

TEST(ResultRows, haveATotalThatIsAddedUpExactlyAndThenRounded)
{
    // Added up in single precision the second and the third byte would be lost.
    const auto tree = makeTree("/f", {file("a", (1U << 24U)), file("b", 1), file("c", 1)});
    EXPECT_EQ(resultRowsOf(&tree->root(), noFiles).total, 16'777'218.0F);
    const auto odd = makeTree("/f", {file("a", (1U << 24U) + 1)});
    EXPECT_EQ(resultRowsOf(&odd->root(), noFiles).total, 16'777'216.0F);
}

TEST(ResultRows, comeLargestFirstAndElseInTheOrderOfTheTree)
{
    EXPECT_EQ(listed({file("c", 5), file("z", 10), file("a", 5), file("b", 5)}, nearlyAll),
              (Names{"z", "c", "a", "b"}));
}

TEST(ResultRows, areSortedByNameUpperCaseFirst)
{
    const auto tree = makeTree("/f", {file("alpha", 30), file("Zeta", 10), folder("d"),
                                      file("\xC3\xA9", 5), file("a", 20)});
    auto rows = resultRowsOf(&tree->root(), nearlyAll).rows;
    sortRows(rows, RowOrder::name);
    EXPECT_EQ(namesOf(rows), (Names{"Zeta", "a", "alpha", "d", "\xC3\xA9"}));
    sortRows(rows, RowOrder::size);
    EXPECT_EQ(namesOf(rows), (Names{"alpha", "a", "Zeta", "\xC3\xA9", "d"}));
}

} // namespace
} // namespace tessaly
