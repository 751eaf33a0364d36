#include "drives/DriveRows.hpp"

#include "platform/VolumeService.hpp"
#include "tests/fakes/FakeVolumeService.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

Names listed(Names entries)
{
    FakeVolumeService volumes;
    volumes.entries = std::move(entries);
    return listedVolumes(*volumes.enumerator());
}

KORVENDriveObject row(const std::string &name, std::uint64_t total, std::uint64_t free)
{
    return {name, "/Volumes/" + name, total, free, 0};
}

Names sorted(std::vector<KORVENDriveObject> rows, DriveOrder order)
{
    sortDrives(rows, order);
    Names names;
    for (const KORVENDriveObject &object : rows) {
        names.push_back(object.diskName());
    }
    return names;
}

TEST(DriveRows, everyEntryIsListedInItsOrder)
{
    EXPECT_EQ(listed({"b", "/", "a stray file", "A"}), (Names{"b", "/", "a stray file", "A"}));
    EXPECT_EQ(listed({}), Names{});
}

TEST(DriveRows, twoNamesAreNotListedInUpperOrLowerCase)
{
    EXPECT_EQ(listed({".DS_Store", ".ds_store", ".Ds_StoRe", "MobileBackups", "mobilebackups",
                      "MOBILEBACKUPS", "a"}),
              Names{"a"});
    EXPECT_EQ(listed({"DS_Store", ".DS_Store2", "MobileBackup", "Mobile Backups", ".hidden"}),
              (Names{"DS_Store", ".DS_Store2", "MobileBackup", "Mobile Backups", ".hidden"}));
}

TEST(DriveRows, whatLiesWithinMobileBackupsIsListed)
{
    EXPECT_EQ(listed({"a", "mobileBACKUPS", "mobileBACKUPS/one", "mobileBACKUPS/one/deeper",
                      "mobileBACKUPS/two", "b"}),
              (Names{"a", "mobileBACKUPS/one", "mobileBACKUPS/two", "b"}));
}

TEST(DriveRows, noOtherVolumeIsWalked)
{
    EXPECT_EQ(listed({"a", "a/folder", "a/folder/file", "b"}), (Names{"a", "b"}));
}

TEST(DriveRows, aRowIsMadeOfWhatIsKnown)
{
    const KORVENDriveObject made =
        driveRow("a", "/Volumes/a", {VolumeFigures{1'000'000, 250'000}, true, false, "afpfs"});
    EXPECT_EQ(made.diskName(), "a");
    EXPECT_EQ(made.diskFullPath(), "/Volumes/a");
    EXPECT_EQ(made.diskTotal(), 1'000'000U);
    EXPECT_EQ(made.diskFree(), 250'000U);
    EXPECT_EQ(made.diskUsed(), 750'000.0);
    EXPECT_TRUE(made.isRemoveable());
    EXPECT_FALSE(made.isUnmountable());
    EXPECT_EQ(made.diskType(), 1);
    EXPECT_EQ(driveRow("a", "b", {VolumeFigures{1, 3}, false, true, ""}).diskUsed(), -2.0);
}

TEST(DriveRows, aRowWithoutFiguresHasNoSpace)
{
    const KORVENDriveObject made = driveRow("a", "/Volumes/a", {std::nullopt, false, true, "hfs"});
    EXPECT_EQ(made.diskTotal(), 0U);
    EXPECT_EQ(made.diskFree(), 0U);
    EXPECT_EQ(made.diskUsed(), 0.0);
    EXPECT_EQ(made.diskTotalAsString(), "0.00 KB");
    EXPECT_EQ(made.diskFreeAsString(), "0.00 KB");
    EXPECT_EQ(made.diskUsedAsString(), "0.00 KB");
    EXPECT_TRUE(std::isnan(made.sizeAsPercent()));
    EXPECT_TRUE(made.isUnmountable());
    EXPECT_EQ(made.diskType(), 0);
}

TEST(DriveRows, theFullestComesFirstHoweverSmall)
{
    EXPECT_EQ(sorted({row("large", 4'000'000'000, 2'000'000'000), row("small", 1'000, 50),
                      row("empty", 100, 100), row("full", 10, 0)},
                     DriveOrder::size),
              (Names{"full", "small", "large", "empty"}));
}

TEST(DriveRows, thoseWithoutAFractionComeLastInTheirOrder)
{
    EXPECT_EQ(sorted({row("n1", 0, 0), row("half", 10, 5), row("n2", 0, 0), row("empty", 10, 10),
                      row("full", 10, 0), row("n3", 0, 0)},
                     DriveOrder::size),
              (Names{"full", "half", "empty", "n1", "n2", "n3"}));
}

TEST(DriveRows, equalRowsKeepTheirOrder)
{
    std::vector<KORVENDriveObject> rows;
    Names expected;
    for (int i = 0; i < 100; ++i) {
        rows.push_back(row("v" + std::to_string(99 - i), 10, 5));
        expected.push_back(rows.back().diskName());
    }
    EXPECT_EQ(sorted(rows, DriveOrder::size), expected);
}

TEST(DriveRows, namesAreOrderedByCodeUnit)
{
    EXPECT_EQ(sorted({row("b", 1, 1), row("a", 1, 0), row("B", 1, 1), row("/", 1, 1),
                      row("\xC3\xA4", 1, 1), row("a2", 1, 1), row("a10", 0, 0)},
                     DriveOrder::name),
              (Names{"/", "B", "a", "a10", "a2", "b", "\xC3\xA4"}));
}

} // namespace
} // namespace tessaly
