#include "drives/KORVENDriveObject.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <type_traits>

using namespace std::string_literals;
using namespace std::string_view_literals;

namespace tessaly {
namespace {

using Value = KORVENDriveObject::Value;

KORVENDriveObject sampleRow()
{
    return {"Data", "/Volumes/Data", 2'000'000'000, 500'000'000, 1.5e9, true, true, "msdos"};
}

TEST(KORVENDriveObject, isADiskObject)
{
    EXPECT_TRUE((std::is_base_of_v<KORVENDiskObject, KORVENDriveObject>));
}

TEST(KORVENDriveObject, keepsWhatItIsMadeOf)
{
    std::string name = "Data";
    std::string path = "/Volumes/Data";
    const KORVENDriveObject row(name, path, 2'000'000'000, 500'000'000, 1.25e9);
    name = path = "overwritten";

    EXPECT_EQ(row.diskName(), "Data");
    EXPECT_EQ(row.diskFullPath(), "/Volumes/Data");
    EXPECT_EQ(row.diskTotal(), 2'000'000'000U);
    EXPECT_EQ(row.diskFree(), 500'000'000U);
    EXPECT_EQ(row.diskUsed(), 1.25e9);
    EXPECT_EQ(row.diskTotalAsString(), "2.00 GB");
    EXPECT_EQ(row.diskFreeAsString(), "500.00 MB");
    EXPECT_EQ(row.diskUsedAsString(), "1.25 GB");
}

TEST(KORVENDriveObject, madeShortlyItIsOfKind0AndCannotGo)
{
    const KORVENDriveObject row("a", "/Volumes/a", 1, 1, 0);
    EXPECT_FALSE(row.isRemoveable());
    EXPECT_FALSE(row.isUnmountable());
    EXPECT_EQ(row.diskType(), 0);
}

TEST(KORVENDriveObject, itsKindIsThatOfAnExactTypeName)
{
    struct {
        const char *typeName;
        std::int32_t type;
    } const cases[]{
        {"hfs", 0},  {"afpfs", 1}, {"msdos", 2}, {"HFS", 3},     {"Msdos", 3},
        {"hfs+", 3}, {" hfs", 3},  {"", 3},      {"msdosfs", 3}, {"ext4", 3},
    };
    for (const auto &[typeName, type] : cases) {
        const KORVENDriveObject row("a", "/Volumes/a", 1, 1, 0, false, true, typeName);
        EXPECT_EQ(row.diskType(), type) << typeName;
        EXPECT_FALSE(row.isRemoveable());
        EXPECT_TRUE(row.isUnmountable());
    }
    EXPECT_TRUE(KORVENDriveObject("a", "b", 1, 1, 0, true, false, "hfs").isRemoveable());
    EXPECT_FALSE(KORVENDriveObject("a", "b", 1, 1, 0, true, false, "hfs").isUnmountable());
}

TEST(KORVENDriveObject, theLongWayMakesTheSameTexts)
{
    const KORVENDriveObject row = sampleRow();
    EXPECT_EQ(row.diskName(), "Data");
    EXPECT_EQ(row.diskFullPath(), "/Volumes/Data");
    EXPECT_EQ(row.diskTotalAsString(), "2.00 GB");
    EXPECT_EQ(row.diskFreeAsString(), "500.00 MB");
    EXPECT_EQ(row.diskUsedAsString(), "1.50 GB");
}

TEST(KORVENDriveObject, integersThatReadAsMinus1HaveADash)
{
    const KORVENDriveObject row("a", "/Volumes/a", 0xFFFF'FFFF, 0xFFFF'FFFF, 4'294'967'295.0);
    EXPECT_EQ(row.diskTotalAsString(), "--");
    EXPECT_EQ(row.diskFreeAsString(), "--");
    EXPECT_EQ(row.diskUsedAsString(), "4.29 GB");
}

TEST(KORVENDriveObject, theUsedFractionIsOfTotalAndFreeAlone)
{
    EXPECT_EQ(KORVENDriveObject("a", "b", 1000, 250, 1e9).sizeAsPercent(), 0.75);
    EXPECT_EQ(KORVENDriveObject("a", "b", 1000, 1000, 5).sizeAsPercent(), 0.0);
    EXPECT_EQ(KORVENDriveObject("a", "b", 3, 1, 0).sizeAsPercent(), 2.0 / 3.0);
    EXPECT_EQ(KORVENDriveObject("a", "b", 1000, 1500, 0).sizeAsPercent(), -0.5);
    EXPECT_TRUE(std::isnan(KORVENDriveObject("a", "b", 0, 0, 7).sizeAsPercent()));
}

TEST(KORVENDriveObject, answersItsKeys)
{
    const KORVENDriveObject row = sampleRow();
    EXPECT_EQ(row.valueForKey("Disk"), Value("Data"sv));
    EXPECT_EQ(row.valueForKey("FullPath"), Value("/Volumes/Data"sv));
    EXPECT_EQ(row.valueForKey("SizeTotalAsString"), Value("2.00 GB"sv));
    EXPECT_EQ(row.valueForKey("SizeFreeAsString"), Value("500.00 MB"sv));
    EXPECT_EQ(row.valueForKey("SizeTotal"), Value(std::uint64_t{2'000'000'000}));
    EXPECT_EQ(row.valueForKey("SizeFree"), Value(std::uint64_t{500'000'000}));
    EXPECT_EQ(row.valueForKey("SizeUsed"), Value(0.75));
    EXPECT_EQ(row.valueForKey("DiskType"), Value(std::int32_t{2}));
}

TEST(KORVENDriveObject, answersNoOtherKey)
{
    const KORVENDriveObject row = sampleRow();
    for (const char *key : {"disk", "DISK", "Disk ", "", "SizeUsedAsString", "diskName", "size",
                            "isRemoveable", "sizeused"}) {
        EXPECT_EQ(row.valueForKey(key), Value()) << key;
    }
}

TEST(KORVENDriveObject, isReadOnlyToKeys)
{
    const KORVENDriveObject row = sampleRow();
    for (const char *key : {"Disk", "FullPath", "SizeTotal", "SizeFree", "SizeUsed", "DiskType",
                            "SizeTotalAsString", "SizeFreeAsString", "other"}) {
        const Value before = row.valueForKey(key);
        row.setValue("x"sv, key);
        row.setValue(std::uint64_t{1}, key);
        row.setValue(std::int32_t{1}, key);
        EXPECT_EQ(row.valueForKey(key), before) << key;
    }
}

TEST(KORVENDriveObject, itsPropertiesMayBeSetOneByOne)
{
    KORVENDriveObject row("a", "/Volumes/a", 1, 1, 0);
    row.setDiskName("b");
    row.setDiskFullPath("/Volumes/b");
    row.setDiskTotal(1000);
    row.setDiskFree(400);
    row.setDiskUsed(600);
    row.setIsRemoveable(true);
    row.setIsUnmountable(true);
    row.setDiskType(3);
    EXPECT_EQ(row.diskName(), "b");
    EXPECT_EQ(row.diskFullPath(), "/Volumes/b");
    EXPECT_EQ(row.sizeAsPercent(), 0.6);
    EXPECT_EQ(row.diskUsed(), 600);
    EXPECT_TRUE(row.isRemoveable());
    EXPECT_TRUE(row.isUnmountable());
    EXPECT_EQ(row.diskType(), 3);
    EXPECT_EQ(row.diskTotalAsString(), "0.00 KB") << "made once, of the total at first";
    row.setDiskTotalAsString("1.00 KB");
    row.setDiskFreeAsString("0.40 KB");
    row.setDiskUsedAsString("0.60 KB");
    EXPECT_EQ(row.diskTotalAsString(), "1.00 KB");
    EXPECT_EQ(row.diskFreeAsString(), "0.40 KB");
    EXPECT_EQ(row.diskUsedAsString(), "0.60 KB");
}

TEST(KORVENDriveObject, keepsNamesOfAnyBytes)
{
    const std::string name = "a\0\xFF\n"s;
    EXPECT_EQ(KORVENDriveObject(name, name, 0, 0, 0).diskName(), name);
}

} // namespace
} // namespace tessaly
