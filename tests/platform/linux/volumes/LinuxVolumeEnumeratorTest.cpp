#include "platform/linux/volumes/LinuxVolumeEnumerator.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tessaly {

namespace {

using Names = std::vector<std::string>;

/// Two volumes: "outer" with folders, links and files, and "inner", mounted inside of it.
class LinuxVolumeEnumeratorTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_folder.folder("outer");
        m_folder.folder("outer/a");
        m_folder.folder("outer/a/b");
        m_folder.file("outer/a/\xff");
        m_folder.link("outer/link", "a");
        m_folder.folder("outer/inner");
        m_folder.file("outer/inner/file");
    }

    /// All entries when nothing is skipped but what is named here.
    [[nodiscard]] Names names(const std::vector<VolumeList::Entry> &entries,
                              const Names &skipped = {}) const
    {
        LinuxVolumeEnumerator enumerator(entries);
        Names names;
        while (const auto name = enumerator.next()) {
            names.push_back(*name);
            if (std::find(skipped.begin(), skipped.end(), *name) != skipped.end()) {
                enumerator.skipDescendants();
            }
        }
        EXPECT_EQ(enumerator.next(), std::nullopt);
        return names;
    }

    [[nodiscard]] VolumeList::Entry entry(const std::string &name, const std::string &inside,
                                          bool isLocal) const
    {
        return {name, m_folder.path(inside), 1, 1, isLocal};
    }

    TemporaryFolder m_folder;
};

TEST_F(LinuxVolumeEnumeratorTest, givesTheVolumesWhenAllAreSkipped)
{
    EXPECT_EQ(names({entry("outer", "outer", true), entry("inner", "outer/inner", true)},
                    {"outer", "inner"}),
              (Names{"outer", "inner"}));
    EXPECT_EQ(names({}), Names{});
}

TEST_F(LinuxVolumeEnumeratorTest, givesWhatLiesWithinThoseThatAreNotSkipped)
{
    const Names all =
        names({entry("outer", "outer", true), entry("inner", "outer/inner", true)}, {"inner"});
    Names sorted = all;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (Names{"inner", "outer", "outer/a", "outer/a/b", "outer/a/\xff",
                             "outer/inner", "outer/link"}));
    EXPECT_EQ(all.front(), "outer");
    EXPECT_EQ(all.back(), "inner"); // contents come before the next volume
}

TEST_F(LinuxVolumeEnumeratorTest, skipsTheContentsOfAFolderWithin)
{
    Names some = names({entry("outer", "outer", true)}, {"outer/a", "outer/inner"});
    std::sort(some.begin(), some.end());
    EXPECT_EQ(some, (Names{"outer", "outer/a", "outer/inner", "outer/link"}));
}

TEST_F(LinuxVolumeEnumeratorTest, looksIntoLocalVolumesOnly)
{
    EXPECT_EQ(names({entry("outer", "outer", false)}), Names{"outer"});
    EXPECT_EQ(names({entry("gone", "missing", true)}), Names{"gone"});
}

TEST_F(LinuxVolumeEnumeratorTest, namesWhatLiesInTheRoot)
{
    LinuxVolumeEnumerator enumerator({{"/", "/", 1, 1, true}});
    EXPECT_EQ(enumerator.next(), "/");
    const auto first = enumerator.next();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->find('/'), 0U);
    EXPECT_EQ(first->rfind('/'), 0U);
}

} // namespace

} // namespace tessaly
