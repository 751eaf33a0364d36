// What all bookmarks do.

#include "platform/FolderBookmarks.hpp"

#include "platform/FileUrl.hpp"
#include "platform/linux/storage/LinuxFolderBookmarks.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeFolderBookmarks.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace tessaly {
namespace {

using Data = FolderBookmarks::Data;

class FakeHarness {
public:
    FakeFolderBookmarks bookmarks;

    /// The URL of a new folder of that name.
    [[nodiscard]] static std::string folder(const std::string &name)
    {
        return fileUrl("/folders/" + name).value_or("");
    }
    void remove(const std::string &url) { bookmarks.setGone(url); }
};

class LinuxHarness {
public:
    LinuxFolderBookmarks bookmarks;

    [[nodiscard]] std::string folder(const std::string &name) const
    {
        m_folder.folder(name);
        return fileUrl(m_folder.path(name)).value_or("");
    }
    static void remove(const std::string &url)
    {
        ASSERT_EQ(rmdir(pathOfFileUrl(url).value_or("").c_str()), 0);
    }

private:
    TemporaryFolder m_folder;
};

template <typename Harness>
class FolderBookmarksTest : public testing::Test {
protected:
    Harness m_harness;
};

class HarnessNames {
public:
    template <typename Harness>
    static std::string GetName(int /*index*/) // NOLINT(readability-identifier-naming): GoogleTest's
    {
        return std::is_same_v<Harness, FakeHarness> ? "Fake" : "Linux";
    }
};

using Harnesses = testing::Types<FakeHarness, LinuxHarness>;
TYPED_TEST_SUITE(FolderBookmarksTest, Harnesses, HarnessNames);

TYPED_TEST(FolderBookmarksTest, aBookmarkResolvesToTheUrlOfItsFolder)
{
    auto &bookmarks = this->m_harness.bookmarks;
    for (const char *name : {"plain", "with space", "100%", "not UTF-8 \xFF", "\xC3\xA9\n"}) {
        const std::string url = this->m_harness.folder(name);
        const auto data = bookmarks.makeBookmark(url);
        ASSERT_TRUE(data) << url;
        EXPECT_EQ(bookmarks.resolve(*data), url);
    }
}

TYPED_TEST(FolderBookmarksTest, differentFoldersHaveDifferentBookmarks)
{
    auto &bookmarks = this->m_harness.bookmarks;
    const auto a = bookmarks.makeBookmark(this->m_harness.folder("a"));
    const auto b = bookmarks.makeBookmark(this->m_harness.folder("b"));

    ASSERT_TRUE(a && b);
    EXPECT_NE(*a, *b);
}

TYPED_TEST(FolderBookmarksTest, whatIsNoFileUrlHasNoBookmarkAndNoAccess)
{
    auto &bookmarks = this->m_harness.bookmarks;
    for (const char *url : {"", "/Temp", "/", "Temp", "file", "file:", "file:Temp", "http:///",
                            "file://elsewhere/", "file:///%"}) {
        EXPECT_EQ(bookmarks.makeBookmark(url), std::nullopt) << url;
        EXPECT_FALSE(bookmarks.startAccess(url)) << url;
        EXPECT_EQ(bookmarks.accessCount(url), 0) << url;
    }
}

TYPED_TEST(FolderBookmarksTest, aFolderThatIsGoneHasNoBookmarkAndNoAccess)
{
    auto &bookmarks = this->m_harness.bookmarks;
    const std::string url = this->m_harness.folder("folder");
    const auto data = bookmarks.makeBookmark(url);
    ASSERT_TRUE(data);
    this->m_harness.remove(url);

    EXPECT_EQ(bookmarks.resolve(*data), std::nullopt);
    EXPECT_EQ(bookmarks.makeBookmark(url), std::nullopt);
    EXPECT_FALSE(bookmarks.startAccess(url));
    EXPECT_EQ(bookmarks.accessCount(url), 0);
}

TYPED_TEST(FolderBookmarksTest, dataOfOthersResolvesToNothing)
{
    auto &bookmarks = this->m_harness.bookmarks;
    EXPECT_EQ(bookmarks.resolve({}), std::nullopt);
    EXPECT_EQ(bookmarks.resolve(Data(100)), std::nullopt);
    EXPECT_EQ(bookmarks.resolve(Data(100, std::byte{0xFF})), std::nullopt);
}

TYPED_TEST(FolderBookmarksTest, accessIsCountedForEachUrl)
{
    auto &bookmarks = this->m_harness.bookmarks;
    const std::string a = this->m_harness.folder("a");
    const std::string b = this->m_harness.folder("b");
    EXPECT_TRUE(bookmarks.startAccess(a));
    EXPECT_TRUE(bookmarks.startAccess(a));
    EXPECT_TRUE(bookmarks.startAccess(b));
    EXPECT_EQ(bookmarks.accessCount(a), 2);
    EXPECT_EQ(bookmarks.accessCount(b), 1);

    bookmarks.stopAccess(a);
    EXPECT_EQ(bookmarks.accessCount(a), 1);
    bookmarks.stopAccess(a);
    bookmarks.stopAccess(b);
    EXPECT_EQ(bookmarks.accessCount(a), 0);
    EXPECT_EQ(bookmarks.accessCount(b), 0);
}

TYPED_TEST(FolderBookmarksTest, accessThatWasNotStartedIsNotStopped)
{
    const LoggedWarnings log;
    auto &bookmarks = this->m_harness.bookmarks;
    const std::string url = this->m_harness.folder("folder");
    bookmarks.stopAccess(url);
    EXPECT_EQ(bookmarks.accessCount(url), 0);

    EXPECT_TRUE(bookmarks.startAccess(url));
    EXPECT_EQ(bookmarks.accessCount(url), 1);
}

TYPED_TEST(FolderBookmarksTest, accessToAFolderThatIsGoneCanStillBeStopped)
{
    auto &bookmarks = this->m_harness.bookmarks;
    const std::string url = this->m_harness.folder("folder");
    ASSERT_TRUE(bookmarks.startAccess(url));
    this->m_harness.remove(url);
    bookmarks.stopAccess(url);

    EXPECT_EQ(bookmarks.accessCount(url), 0);
}

TYPED_TEST(FolderBookmarksTest, anyThreadMayUseThem)
{
    auto &bookmarks = this->m_harness.bookmarks;
    const std::string url = this->m_harness.folder("folder");
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 100; ++i) {
                EXPECT_TRUE(bookmarks.startAccess(url));
                const auto data = bookmarks.makeBookmark(url);
                EXPECT_EQ(bookmarks.resolve(data.value_or(Data())), url);
                EXPECT_GT(bookmarks.accessCount(url), 0);
                bookmarks.stopAccess(url);
            }
        });
    }
    threads.clear();

    EXPECT_EQ(bookmarks.accessCount(url), 0);
}

TEST(FakeFolderBookmarks, countStartsAndStops)
{
    FakeFolderBookmarks bookmarks;
    EXPECT_TRUE(bookmarks.startAccess("file:///a"));
    EXPECT_TRUE(bookmarks.startAccess("file:///a"));
    bookmarks.stopAccess("file:///a");
    bookmarks.stopAccess("file:///b");
    bookmarks.setGone("file:///c");
    EXPECT_FALSE(bookmarks.startAccess("file:///c"));

    EXPECT_EQ(bookmarks.startCount("file:///a"), 2);
    EXPECT_EQ(bookmarks.stopCount("file:///a"), 1);
    EXPECT_EQ(bookmarks.accessCount("file:///a"), 1);
    EXPECT_EQ(bookmarks.startCount("file:///b"), 0);
    EXPECT_EQ(bookmarks.stopCount("file:///b"), 1);
    EXPECT_EQ(bookmarks.startCount("file:///c"), 0);
}

TEST(FakeFolderBookmarks, resolveAgainWhenTheFolderIsBack)
{
    FakeFolderBookmarks bookmarks;
    const auto data = bookmarks.makeBookmark("file:///a");
    ASSERT_TRUE(data);
    bookmarks.setGone("file:///a");
    EXPECT_EQ(bookmarks.resolve(*data), std::nullopt);
    bookmarks.setGone("file:///a", false);

    EXPECT_EQ(bookmarks.resolve(*data), "file:///a");
}

} // namespace
} // namespace tessaly
