#include "platform/linux/storage/LinuxFolderBookmarks.hpp"

#include "engine/archive/PropertyList.hpp"
#include "platform/FileUrl.hpp"
#include "platform/linux/storage/FolderIdentity.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/MemorySink.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

using Data = FolderBookmarks::Data;

archive::PlistData dataOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

Data plistOf(const archive::PlistValue &value)
{
    MemorySink sink;
    EXPECT_TRUE(archive::writePropertyList(value, sink));
    return sink.bytes();
}

class LinuxFolderBookmarksTest : public testing::Test {
protected:
    LinuxFolderBookmarksTest() { m_folder.folder("a"); }

    [[nodiscard]] std::string url(const std::string &name) const
    {
        return fileUrl(m_folder.path(name)).value_or("");
    }
    [[nodiscard]] Data bookmarkOf(const std::string &name)
    {
        const auto data = m_bookmarks.makeBookmark(url(name));
        EXPECT_TRUE(data) << name;
        return data.value_or(Data());
    }
    void rename(const std::string &from, const std::string &to) const
    {
        ASSERT_EQ(std::rename(m_folder.path(from).c_str(), m_folder.path(to).c_str()), 0);
    }

    TemporaryFolder m_folder;
    LinuxFolderBookmarks m_bookmarks;
};

TEST_F(LinuxFolderBookmarksTest, aBookmarkResolvesInAnotherProcess)
{
    const Data data = bookmarkOf("a");
    runInChild([&] { EXPECT_EQ(LinuxFolderBookmarks().resolve(data), url("a")); });
}

TEST_F(LinuxFolderBookmarksTest, everyFormOfAUrlResolvesToTheOneThatWeWrite)
{
    const auto data = m_bookmarks.makeBookmark("FILE://localhost" + m_folder.path("%61/"));
    ASSERT_TRUE(data);

    EXPECT_EQ(m_bookmarks.resolve(*data), url("a/"));
}

TEST_F(LinuxFolderBookmarksTest, aFileHasNoBookmarkAndNoAccess)
{
    m_folder.file("file");

    EXPECT_EQ(m_bookmarks.makeBookmark(url("file")), std::nullopt);
    EXPECT_FALSE(m_bookmarks.startAccess(url("file")));
}

TEST_F(LinuxFolderBookmarksTest, changesInsideAFolderLeaveItsBookmarkAlone)
{
    const Data data = bookmarkOf("a");
    m_folder.file("a/file");
    m_folder.folder("a/folder");
    ASSERT_EQ(chmod(m_folder.path("a").c_str(), 0700), 0);

    EXPECT_EQ(m_bookmarks.resolve(data), url("a"));
}

TEST_F(LinuxFolderBookmarksTest, aFolderThatWasMovedIsNotFoundUntilItIsBack)
{
    const Data data = bookmarkOf("a");
    rename("a", "b");
    EXPECT_EQ(m_bookmarks.resolve(data), std::nullopt);

    rename("b", "a");
    EXPECT_EQ(m_bookmarks.resolve(data), url("a"));
}

TEST_F(LinuxFolderBookmarksTest, anotherFolderWithTheSameNameIsNotTakenForTheOldOne)
{
    const auto identity = folderIdentity(m_folder.path("a"));
    ASSERT_TRUE(identity);
    if (!identity->contains("handle")) {
        GTEST_SKIP() << "needs a file system that tells two folders with one number apart, which "
                        "that of TMPDIR does not";
    }
    for (int round = 0; round < 100; ++round) { // many get the same number, and at the same moment
        const Data data = bookmarkOf("a");
        ASSERT_EQ(rmdir(m_folder.path("a").c_str()), 0);
        m_folder.folder("a");
        EXPECT_EQ(m_bookmarks.resolve(data), std::nullopt) << round;
    }
}

TEST_F(LinuxFolderBookmarksTest, aFileWithTheSameNameIsNotTakenForTheFolder)
{
    const Data data = bookmarkOf("a");
    ASSERT_EQ(rmdir(m_folder.path("a").c_str()), 0);
    m_folder.file("a");

    EXPECT_EQ(m_bookmarks.resolve(data), std::nullopt);
}

TEST_F(LinuxFolderBookmarksTest, aPathOverALinkStaysAsItIsAndLeadsToTheSameFolder)
{
    m_folder.folder("a/inside");
    m_folder.folder("b");
    m_folder.folder("b/inside");
    m_folder.link("link", "a");
    const Data ofLink = bookmarkOf("link");
    const Data ofInside = bookmarkOf("link/inside");
    EXPECT_EQ(m_bookmarks.resolve(ofLink), url("link"));
    EXPECT_EQ(m_bookmarks.resolve(ofInside), url("link/inside"));

    ASSERT_EQ(unlink(m_folder.path("link").c_str()), 0);
    m_folder.link("link", "b");
    EXPECT_EQ(m_bookmarks.resolve(ofLink), std::nullopt);
    EXPECT_EQ(m_bookmarks.resolve(ofInside), std::nullopt);
}

TEST_F(LinuxFolderBookmarksTest, aFolderOnAnUnpluggedDriveResolvesWhenTheDriveIsBack)
{
    if (!canMount()) {
        GTEST_SKIP() << "needs root, to mount things";
    }
    m_folder.folder("drive");
    m_folder.folder("drive/inside");
    m_folder.folder("place");
    runWithPrivateMounts([this] {
        const auto plugIn = [this](const std::string &drive) {
            ASSERT_EQ(mount(m_folder.path(drive).c_str(), m_folder.path("place").c_str(), nullptr,
                            MS_BIND, nullptr),
                      0);
        };
        plugIn("drive");
        const Data ofDrive = bookmarkOf("place");
        const Data ofInside = bookmarkOf("place/inside");
        ASSERT_EQ(umount(m_folder.path("place").c_str()), 0);
        EXPECT_EQ(m_bookmarks.resolve(ofDrive), std::nullopt);
        EXPECT_EQ(m_bookmarks.resolve(ofInside), std::nullopt);

        plugIn("a");
        EXPECT_EQ(m_bookmarks.resolve(ofDrive), std::nullopt);
        ASSERT_EQ(umount(m_folder.path("place").c_str()), 0);

        plugIn("drive");
        EXPECT_EQ(m_bookmarks.resolve(ofDrive), url("place"));
        EXPECT_EQ(m_bookmarks.resolve(ofInside), url("place/inside"));
    });
}

TEST_F(LinuxFolderBookmarksTest, dataHoldsThePathAsBytesAndTheFoldersIdentity)
{
    m_folder.folder("\xFF");
    const auto list = archive::readPropertyList(bookmarkOf("\xFF"));
    ASSERT_TRUE(list);
    const auto *content = list.value().as<archive::PlistDictionary>();

    ASSERT_NE(content, nullptr);
    ASSERT_EQ(content->size(), 3U);
    EXPECT_EQ(content->at("version"), archive::PlistValue(1));
    EXPECT_EQ(content->at("path"), archive::PlistValue(dataOf(m_folder.path("\xFF"))));
    const auto *identity = content->at("identity").as<archive::PlistDictionary>();
    ASSERT_NE(identity, nullptr);
    EXPECT_TRUE(identity->contains("fileSystem"));
}

TEST_F(LinuxFolderBookmarksTest, dataThatLacksAnythingResolvesToNothing)
{
    const auto list = archive::readPropertyList(bookmarkOf("a"));
    ASSERT_TRUE(list);
    const auto *whole = list.value().as<archive::PlistDictionary>();
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(m_bookmarks.resolve(plistOf(*whole)), url("a"));
    for (const auto &[key, value] : *whole) {
        archive::PlistDictionary content = *whole;
        content.erase(key);
        EXPECT_EQ(m_bookmarks.resolve(plistOf(content)), std::nullopt) << key;
        content[key] = "of another type";
        EXPECT_EQ(m_bookmarks.resolve(plistOf(content)), std::nullopt) << key;
    }
    for (const auto &[key, value] : std::vector<std::pair<std::string, archive::PlistValue>>{
             {"version", 2},
             {"path", dataOf("")},
             {"path", dataOf("tmp")},
             {"path", dataOf(m_folder.path("missing"))},
             {"path", dataOf(std::string(m_folder.path("a")) + '\0')},
             {"identity", archive::PlistDictionary()},
             {"identity", archive::PlistDictionary{{"fileSystem", 1}}},
             {"identity", archive::PlistDictionary{{"fileSystem", dataOf("1")}}}}) {
        archive::PlistDictionary content = *whole;
        content[key] = value;
        EXPECT_EQ(m_bookmarks.resolve(plistOf(content)), std::nullopt) << key;
    }
}

TEST_F(LinuxFolderBookmarksTest, dataCutAnywhereResolvesToNothing)
{
    const Data data = bookmarkOf("a");
    for (std::size_t size = 0; size < data.size(); ++size) {
        EXPECT_EQ(m_bookmarks.resolve(std::span(data).first(size)), std::nullopt) << size;
    }
}

TEST_F(LinuxFolderBookmarksTest, aFolderThatMayNotBeReadHasABookmarkButNoAccess)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    for (const mode_t mode : {0700U, 0744U, 0711U}) {
        ASSERT_EQ(chmod(m_folder.path("a").c_str(), mode), 0);
        runUnprivileged([this] {
            EXPECT_EQ(m_bookmarks.resolve(bookmarkOf("a")), url("a"));
            EXPECT_FALSE(m_bookmarks.startAccess(url("a")));
            EXPECT_EQ(m_bookmarks.accessCount(url("a")), 0);
        });
    }
    ASSERT_EQ(chmod(m_folder.path("a").c_str(), 0755), 0);
    runUnprivileged([this] { EXPECT_TRUE(m_bookmarks.startAccess(url("a"))); });
}

TEST_F(LinuxFolderBookmarksTest, stoppingWhatWasNotStartedLeavesAWarning)
{
    const LoggedWarnings log;
    EXPECT_TRUE(m_bookmarks.startAccess(url("a")));
    m_bookmarks.stopAccess(url("a"));
    EXPECT_TRUE(log.lines().empty());
    m_bookmarks.stopAccess(url("a"));

    EXPECT_EQ(log.lines(), std::vector<std::string>{"tessaly.bookmarks: access to " + url("a") +
                                                    " was stopped, but not started"});
}

TEST_F(LinuxFolderBookmarksTest, noDescriptorStaysOpen)
{
    const int before = openDescriptorCount();
    EXPECT_TRUE(m_bookmarks.startAccess(url("a")));
    EXPECT_EQ(m_bookmarks.resolve(bookmarkOf("a")), url("a"));

    EXPECT_EQ(openDescriptorCount(), before);
}

} // namespace
} // namespace tessaly
