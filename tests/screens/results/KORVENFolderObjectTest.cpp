#include "screens/results/KORVENFolderObject.hpp"

#include "app/controls/tables/KORVENDiskObject.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

using namespace std::string_literals;

namespace tessaly {
namespace {

using Value = KORVENFolderObject::Value;

TEST(KORVENDiskObject, buildsSizeTextsWithADashForMinus1)
{
    EXPECT_EQ(KORVENDiskObject::buildString(500), "0.50 KB");
    EXPECT_EQ(KORVENDiskObject::buildString(1'500'000), "1.50 MB");
    EXPECT_EQ(KORVENDiskObject::buildString(2'500'000'000), "2.50 GB");
    EXPECT_EQ(KORVENDiskObject::buildString(1'000'000'000'000), "1.00 TB");
    EXPECT_EQ(KORVENDiskObject::buildString(-1), "--");
    EXPECT_EQ(KORVENDiskObject::buildString(std::uint64_t{4'294'967'295}), "--");
    EXPECT_EQ(KORVENDiskObject::buildString(std::numeric_limits<std::uint64_t>::max()), "--");
}

TEST(KORVENDiskObject, knowsNoOtherPlaceholder)
{
    EXPECT_EQ(KORVENDiskObject::buildString(-2), "-0.00 KB");
    EXPECT_EQ(KORVENDiskObject::buildString(4'294'967'295.0), "4.29 GB");
    EXPECT_EQ(KORVENDiskObject::buildString(std::nan("")), "nan TB");
}

TEST(KORVENFolderObject, keepsWhatItIsMadeOf)
{
    std::string name = "name";
    std::string path = "/some/path";
    const KORVENFolderObject row(name, path, 1'500'000, true);
    name = path = "overwritten";

    EXPECT_EQ(row.folderName(), "name");
    EXPECT_EQ(row.folderFullPath(), "/some/path");
    EXPECT_EQ(row.folderSizeAsNumber(), 1'500'000U);
    EXPECT_EQ(row.folderSizeAsString(), "1.50 MB");
    EXPECT_TRUE(row.folderIsDirectory());
    EXPECT_FALSE(KORVENFolderObject("a", "a", 1, false).folderIsDirectory());
}

TEST(KORVENFolderObject, mayHaveItsNameForAPath)
{
    const KORVENFolderObject row("name", "name", 0, false);
    EXPECT_EQ(row.folderFullPath(), "name");
    const KORVENFolderObject withoutPath("name", "", 0, false);
    EXPECT_EQ(withoutPath.folderFullPath(), "");
}

TEST(KORVENFolderObject, keepsNamesOfAnyBytes)
{
    const std::string name = "a\0\xFF\n"s;
    EXPECT_EQ(KORVENFolderObject(name, name, 0, false).folderName(), name);
}

TEST(KORVENFolderObject, hasADashForASizeThatReadsAsMinus1)
{
    EXPECT_EQ(KORVENFolderObject("a", "a", 0xFFFFFFFF, false).folderSizeAsString(), "--");
}

TEST(KORVENFolderObject, answersItsKeys)
{
    const KORVENFolderObject row("name", "/path", 1'500'000, false);
    EXPECT_EQ(row.valueForKey("Folder"), Value(std::string_view("name")));
    EXPECT_EQ(row.valueForKey("Size"), Value("1.50 MB"s));
    EXPECT_EQ(row.valueForKey("SizeNumber"), Value(std::uint64_t{1'500'000}));
    EXPECT_EQ(row.valueForKey("SizeLevel"), Value(std::uint64_t{1'500'000}));
}

TEST(KORVENFolderObject, answersNoOtherKey)
{
    const KORVENFolderObject row("name", "/path", 1, false);
    for (const char *key : {"folder", "FOLDER", "Folder ", "", "size", "folderName",
                            "folderFullPath", "folderSizeAsString", "folderIsDirectory"}) {
        EXPECT_EQ(row.valueForKey(key), Value()) << key;
    }
}

TEST(KORVENFolderObject, isReadOnlyToKeys)
{
    const KORVENFolderObject row("name", "/path", 250, true);
    for (const char *key : {"Folder", "Size", "SizeNumber", "SizeLevel", "folderName", "other"}) {
        row.setValue("x"s, key);
        row.setValue(std::uint64_t{1}, key);
    }
    EXPECT_EQ(row.folderName(), "name");
    EXPECT_EQ(row.folderFullPath(), "/path");
    EXPECT_EQ(row.folderSizeAsNumber(), 250U);
    EXPECT_EQ(row.folderSizeAsString(), "0.25 KB");
    EXPECT_TRUE(row.folderIsDirectory());
}

TEST(KORVENFolderObject, itsShareIsAFractionInDoublePrecision)
{
    const KORVENFolderObject row("a", "a", 250, false);
    EXPECT_EQ(row.sizeAsPercent(1000), 0.25);
    EXPECT_EQ(row.sizeAsPercent(3), 250.0 / 3.0);
    // A single-precision quotient of these would be exactly 1.
    EXPECT_NE(KORVENFolderObject("a", "a", 999'999'999, false).sizeAsPercent(1e9), 1.0);
}

TEST(KORVENFolderObject, aTotalOf0GivesNoFiniteShare)
{
    EXPECT_TRUE(std::isinf(KORVENFolderObject("a", "a", 1, false).sizeAsPercent(0)));
    EXPECT_TRUE(std::isnan(KORVENFolderObject("a", "a", 0, false).sizeAsPercent(0)));
}

} // namespace
} // namespace tessaly
