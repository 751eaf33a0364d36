#include "history/records/HistoryFile.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace tessaly {
namespace {

using Kind = archive::ArchiveError::Kind;

HistoryRecords someRecords(int count)
{
    HistoryRecords records;
    for (int i = 0; i < count; ++i) {
        records.push_back(std::make_shared<const KORVENHistoryItem>("/folder " + std::to_string(i),
                                                                    std::to_string(i) + ".00 KB"));
    }
    return records;
}

std::vector<std::string> descriptionsOf(const HistoryRecords &records)
{
    std::vector<std::string> descriptions;
    for (const auto &record : records) {
        descriptions.push_back(record->description());
    }
    return descriptions;
}

class HistoryFileTest : public testing::Test {
protected:
    void write(std::span<const std::byte> bytes) const
    {
        std::ofstream(m_path, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char *>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    TemporaryFolder m_folder;
    const std::string m_path = m_folder.path("history");
};

TEST_F(HistoryFileTest, recordsComeBackInTheirOrder)
{
    for (const int count : {0, 1, 3, 300}) {
        const HistoryRecords records = someRecords(count);
        ASSERT_TRUE(writeHistoryFile(records, m_path));
        const auto read = readHistoryFile(m_path);
        ASSERT_TRUE(read) << read.error().text();
        EXPECT_EQ(descriptionsOf(read.value()), descriptionsOf(records));
    }
}

TEST_F(HistoryFileTest, isForTheUserAlone)
{
    ASSERT_TRUE(writeHistoryFile({}, m_path));
    struct stat status;
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(HistoryFileTest, archivesOfOtherWritersAreReadOrRefused)
{
    for (const ArchiveVector &vector : archiveVectors("history")) {
        const auto read = readHistoryFile(vectorPath(vector.file));
        EXPECT_EQ(read ? "read" : kindName(read.error().kind), vector.outcome) << vector.file;
    }
}

TEST_F(HistoryFileTest, aScanIsNoHistory)
{
    const auto read = readHistoryFile(vectorPath("valid/basic.bplist"));
    ASSERT_FALSE(read);
    EXPECT_NE(read.error().kind, Kind::unreadable);
}

TEST_F(HistoryFileTest, aFileCutAnywhereIsAnError)
{
    MemorySink whole;
    ASSERT_TRUE(writeHistoryArchive(someRecords(2), whole));
    for (std::size_t length = 0; length < whole.bytes().size(); ++length) {
        write(std::span(whole.bytes()).first(length));
        const auto read = readHistoryFile(m_path);
        ASSERT_FALSE(read) << length;
        EXPECT_NE(read.error().kind, Kind::unreadable) << length;
    }
}

TEST_F(HistoryFileTest, aFileWithAWrongByteIsReadOrRefused)
{
    MemorySink whole;
    ASSERT_TRUE(writeHistoryArchive(someRecords(2), whole));
    int refused = 0;
    for (std::size_t i = 0; i < whole.bytes().size(); ++i) {
        for (const unsigned change : {0x01U, 0x80U, 0xFFU}) {
            std::vector<std::byte> bytes = whole.bytes();
            bytes[i] ^= static_cast<std::byte>(change);
            write(bytes);
            refused += readHistoryFile(m_path) ? 0 : 1;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST_F(HistoryFileTest, aRecordThatIsListedTwiceIsOneRecord)
{
    archive::KeyedArchiveWriter writer;
    const auto list = writer.reserve();
    const auto record = writer.reserve();
    KORVENHistoryItem("a", "b").encodeWithCoder(writer, record);
    writer.array(list, std::vector{record, record});
    MemorySink file;
    ASSERT_TRUE(writer.finish(list, file));
    write(file.bytes());

    const auto read = readHistoryFile(m_path);

    ASSERT_TRUE(read);
    ASSERT_EQ(read.value().size(), 2U);
    EXPECT_EQ(read.value()[0], read.value()[1]);
}

TEST_F(HistoryFileTest, aMissingFileIsUnreadable)
{
    const auto read = readHistoryFile(m_folder.path("missing"));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().kind, Kind::unreadable);
}

TEST_F(HistoryFileTest, aFullDiskIsAnError)
{
    MemorySink sink(100);
    EXPECT_FALSE(writeHistoryArchive(someRecords(3), sink));
}

} // namespace
} // namespace tessaly
