#include "platform/StoredBookmark.hpp"

#include "tests/fakes/FakeFolderBookmarks.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {

namespace {

constexpr auto key = "grant";
const std::string url = "file:///folders/some";

TEST(StoredBookmark, isInTheSettingsUnderItsKeyAndFlushed)
{
    FakeFolderBookmarks bookmarks;
    FakeSettingsStore settings;
    storeBookmark(url, key, bookmarks, settings);
    const auto data = settings.data(key);
    ASSERT_TRUE(data);
    EXPECT_EQ(bookmarks.resolve(*data), url);
    EXPECT_EQ(settings.log().back(), "flush");
}

TEST(StoredBookmark, isRemovedWhereThereIsNoFolder)
{
    FakeFolderBookmarks bookmarks;
    FakeSettingsStore settings;
    storeBookmark(url, key, bookmarks, settings);
    settings.clearLog();
    storeBookmark({}, key, bookmarks, settings);
    EXPECT_FALSE(settings.hasKey(key));
    EXPECT_EQ(settings.log(), (std::vector<std::string>{"remove grant", "flush"}));
}

} // namespace

} // namespace tessaly
