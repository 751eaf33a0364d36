#include "history/records/KORVENHistoryItem.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace tessaly {
namespace {

using Value = KORVENHistoryItem::Value;

class KORVENHistoryItemTest : public testing::Test {
protected:
    /// The record that comes back from an archive.
    static KORVENHistoryItem archivedAndRead(const KORVENHistoryItem &item)
    {
        archive::KeyedArchiveWriter writer;
        const auto place = writer.reserve();
        item.encodeWithCoder(writer, place);
        MemorySink file;
        EXPECT_TRUE(writer.finish(place, file));
        const archive::KeyedArchiveReader reader(file.bytes());
        return {reader, reader.root()};
    }

    static KORVENHistoryItem emptyItem()
    {
        KORVENHistoryItem item("", "");
        item.setScanPath(std::nullopt);
        item.setScanTotal(std::nullopt);
        item.setScanKey(std::nullopt);
        item.setScanDate(std::nullopt);
        return item;
    }

    FakeServices m_services{"/documents"};
    KORVENAppDelegate m_delegate{m_services.all()};
};

TEST_F(KORVENHistoryItemTest, keepsPathAndTotalAndTakesTheTime)
{
    const archive::Timestamp before = archive::Timestamp::now();
    const KORVENHistoryItem item("/home/ada", "12.34 GB");

    EXPECT_EQ(item.scanPath(), "/home/ada");
    EXPECT_EQ(item.scanTotal(), "12.34 GB");
    ASSERT_TRUE(item.scanDate());
    EXPECT_GE(*item.scanDate(), before);
    EXPECT_LE(*item.scanDate(), archive::Timestamp::now());
}

TEST_F(KORVENHistoryItemTest, aKeyIsAnUpperCaseUuid)
{
    for (const std::string &key :
         {KORVENHistoryItem::UUIDString(), *KORVENHistoryItem("a", "b").scanKey()}) {
        ASSERT_EQ(key.size(), 36U) << key;
        for (std::size_t i = 0; i < key.size(); ++i) {
            const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
            const std::string allowed = isHyphen ? "-" : "0123456789ABCDEF";
            EXPECT_NE(allowed.find(key[i]), std::string::npos) << key;
        }
    }
}

TEST_F(KORVENHistoryItemTest, recordsOfTheSameSecondHaveKeysAndFilesOfTheirOwn)
{
    std::set<std::string> keys;
    std::set<std::string> files;
    for (int i = 0; i < 1000; ++i) {
        const KORVENHistoryItem item("a", "b");
        keys.insert(*item.scanKey());
        files.insert(*item.scanFilePath());
    }
    EXPECT_EQ(keys.size(), 1000U);
    EXPECT_EQ(files.size(), 1000U);
}

TEST_F(KORVENHistoryItemTest, itsFileIsNamedByItsKey)
{
    KORVENHistoryItem item("/home/ada", "12.34 GB");
    item.setScanKey("6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB");
    EXPECT_EQ(item.scanFilePath(), "/documents/6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB.archive");
}

TEST_F(KORVENHistoryItemTest, withoutAKeyItsFileIsNamedNull)
{
    EXPECT_EQ(emptyItem().scanFilePath(), "/documents/(null).archive");
}

TEST_F(KORVENHistoryItemTest, aKeyThatIsNoFileNameNamesNoFile)
{
    KORVENHistoryItem item("a", "b");
    for (const std::string &key :
         {""s, "."s, ".."s, "a/b"s, "/etc/passwd"s, "../../x"s, "a\0b"s, std::string(248, 'a')}) {
        item.setScanKey(key);
        EXPECT_EQ(item.scanFilePath(), std::nullopt) << key;
    }
    item.setScanKey(std::string(247, 'a'));
    EXPECT_TRUE(item.scanFilePath());
}

TEST_F(KORVENHistoryItemTest, aKeyThatNamesAnotherOfOurFilesNamesNoScan)
{
    KORVENHistoryItem item("a", "b");
    for (const char *key : {"scanHistory", "scanhome", "scan", "SCANHOME"}) {
        item.setScanKey(key);
        EXPECT_EQ(item.scanFilePath(), std::nullopt) << key;
    }
}

TEST_F(KORVENHistoryItemTest, isSortedByPathAndDateAlone)
{
    const KORVENHistoryItem item("/home/ada", "12.34 GB");
    EXPECT_EQ(item.valueForKey("scanPath"), Value("/home/ada"s));
    EXPECT_EQ(item.valueForKey("scanDate"), Value(*item.scanDate()));
    for (const char *key : {"scanTotal", "scanKey", "ScanPath", "scandate", "", "description"}) {
        EXPECT_EQ(item.valueForKey(key), Value()) << key;
    }
}

TEST_F(KORVENHistoryItemTest, describesItselfInFourLines)
{
    KORVENHistoryItem item("/home/ada", "12.34 GB");
    item.setScanKey("KEY");
    item.setScanDate(archive::Timestamp{0});
    EXPECT_EQ(item.description(),
              "\nPATH: /home/ada\nTOTL: 12.34 GB\nUUID: KEY\nDATE: 2001-01-01 00:00:00 +0000");
    EXPECT_EQ(emptyItem().description(),
              "\nPATH: (null)\nTOTL: (null)\nUUID: (null)\nDATE: (null)");
}

TEST_F(KORVENHistoryItemTest, comesBackFromAnArchive)
{
    KORVENHistoryItem item("/home/\xC3\xA9lo\xFF\n", "12.34 GB");
    item.setScanDate(archive::Timestamp{-31708800.125});
    const KORVENHistoryItem read = archivedAndRead(item);

    EXPECT_EQ(read.scanPath(), item.scanPath());
    EXPECT_EQ(read.scanTotal(), item.scanTotal());
    EXPECT_EQ(read.scanKey(), item.scanKey());
    EXPECT_EQ(read.scanDate(), item.scanDate());
}

TEST_F(KORVENHistoryItemTest, isWrittenInTheOrderOfPathTotalKeyAndDate)
{
    KORVENHistoryItem item("/the path", "the total");
    item.setScanKey("the key");
    item.setScanDate(archive::Timestamp{-1234.5});
    archive::KeyedArchiveWriter writer;
    const auto place = writer.reserve();
    item.encodeWithCoder(writer, place);
    MemorySink file;
    ASSERT_TRUE(writer.finish(place, file));

    const archive::KeyedArchiveReader reader(file.bytes());
    const auto uidOf = [&](std::string_view key) {
        archive::KeyedArchiveReader::NameMatcher names{key};
        return reader.uid(*reader.fields(reader.object(reader.root()), names)[0], key);
    };
    EXPECT_LT(uidOf("scanPath"), uidOf("scanTotal"));
    EXPECT_LT(uidOf("scanTotal"), uidOf("scanKey"));
    EXPECT_LT(uidOf("scanKey"), uidOf("scanDate"));

    const std::string bytes(reinterpret_cast<const char *>(file.bytes().data()),
                            file.bytes().size());
    std::size_t last = 0;
    for (const char *text : {"/the path", "the total", "the key"}) {
        const std::size_t at = bytes.find(text);
        ASSERT_NE(at, std::string::npos) << text;
        EXPECT_GT(at, last) << text;
        last = at;
    }
}

TEST_F(KORVENHistoryItemTest, emptyValuesComeBackEmptyAndSortAsNothing)
{
    const KORVENHistoryItem read = archivedAndRead(emptyItem());
    EXPECT_EQ(read.scanPath(), std::nullopt);
    EXPECT_EQ(read.scanTotal(), std::nullopt);
    EXPECT_EQ(read.scanKey(), std::nullopt);
    EXPECT_EQ(read.scanDate(), std::nullopt);
    EXPECT_EQ(read.valueForKey("scanPath"), Value());
    EXPECT_EQ(read.valueForKey("scanDate"), Value());
}

TEST_F(KORVENHistoryItemTest, readsARecordWithoutADate)
{
    archive::KeyedArchiveWriter writer;
    const auto place = writer.reserve();
    const auto path = writer.string("/home/ada");
    writer.instance(place, writer.classNamed("KORVENHistoryItem", {"NSObject"}),
                    {{"scanPath", path}});
    MemorySink file;
    ASSERT_TRUE(writer.finish(place, file));
    const archive::KeyedArchiveReader reader(file.bytes());

    const KORVENHistoryItem item(reader, reader.root());

    EXPECT_EQ(item.scanPath(), "/home/ada");
    EXPECT_EQ(item.scanDate(), std::nullopt);
    EXPECT_EQ(item.scanKey(), std::nullopt);
}

TEST_F(KORVENHistoryItemTest, isNotReadFromAnObjectOfAnotherClass)
{
    archive::KeyedArchiveWriter writer;
    const auto place = writer.reserve();
    writer.instance(place, writer.classNamed("SomethingElse", {"NSObject"}), {});
    MemorySink file;
    ASSERT_TRUE(writer.finish(place, file));
    const archive::KeyedArchiveReader reader(file.bytes());

    EXPECT_THROW((KORVENHistoryItem{reader, reader.root()}), archive::ArchiveFailure);
}

} // namespace
} // namespace tessaly
