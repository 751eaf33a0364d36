#include "platform/FileUrl.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace std::string_literals;

namespace tessaly {
namespace {

TEST(FileUrl, keepsUnreservedCharactersAndSlashes)
{
    EXPECT_EQ(fileUrl("/home/ada/a-b_c.d~e/09AZaz"), "file:///home/ada/a-b_c.d~e/09AZaz");
    EXPECT_EQ(fileUrl("/"), "file:///");
}

TEST(FileUrl, encodesEveryOtherByte)
{
    EXPECT_EQ(fileUrl("/a b"), "file:///a%20b");
    EXPECT_EQ(fileUrl("/100%#?&+"), "file:///100%25%23%3F%26%2B");
    EXPECT_EQ(fileUrl("/\xC3\xA9\xFF\n"), "file:///%C3%A9%FF%0A");
}

TEST(FileUrl, isMadeOfAbsolutePathsOnly)
{
    EXPECT_EQ(fileUrl(""), std::nullopt);
    EXPECT_EQ(fileUrl("a/b"), std::nullopt);
    EXPECT_EQ(fileUrl("/a\0b"s), std::nullopt);
}

TEST(FileUrl, givesThePathBackByteForByte)
{
    std::string path = "/";
    for (int byte = 1; byte < 256; ++byte) {
        path += static_cast<char>(byte);
    }
    const auto url = fileUrl(path);
    ASSERT_TRUE(url);
    EXPECT_EQ(pathOfFileUrl(*url), path);
}

TEST(FileUrl, isReadInEveryFormThatOthersWrite)
{
    EXPECT_EQ(pathOfFileUrl("file:/a"), "/a");
    EXPECT_EQ(pathOfFileUrl("FILE:///a"), "/a");
    EXPECT_EQ(pathOfFileUrl("file://localhost/a"), "/a");
    EXPECT_EQ(pathOfFileUrl("file:///%c3%A9/b+c"), "/\xC3\xA9/b+c");
}

TEST(FileUrl, isNothingWhenItIsNoneOrNotWellFormed)
{
    for (const std::string_view url :
         {"", "/Temp", "a/b", "file", "file:", "file:a", "file://", "file://host/a", "http:///a",
          "file:///a%", "file:///a%4", "file:///a%zz", "file:///a?b", "file:///a#b",
          "file:///a%00b", "file://localhostile/a"}) {
        EXPECT_EQ(pathOfFileUrl(url), std::nullopt) << url;
    }
}

} // namespace
} // namespace tessaly
