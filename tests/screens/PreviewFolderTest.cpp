#include "screens/PreviewFolder.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace tessaly {
namespace {

std::map<std::string, bool> entriesOf(const std::string &path)
{
    std::map<std::string, bool> entries;
    for (const PreviewFolderEntry &entry : previewFolderEntries(path)) {
        entries.emplace(entry.name, entry.isFolder);
    }
    return entries;
}

TEST(PreviewFolder, tellsFoldersFromAllElse)
{
    const TemporaryFolder folder;
    folder.file("a");
    folder.folder("d");
    folder.link("toFile", "a");
    folder.link("toFolder", "d");
    folder.link("toNothing", "gone");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);

    const std::map<std::string, bool> wanted{{"a", false},         {"d", true},
                                             {"toFile", false},    {"toFolder", true},
                                             {"toNothing", false}, {"pipe", false}};
    EXPECT_EQ(entriesOf(folder.path()), wanted);
}

TEST(PreviewFolder, leavesHiddenEntriesOut)
{
    const TemporaryFolder folder;
    folder.file(".hidden");
    folder.folder(".folder");
    folder.file(".folder/seen");
    folder.file("a");
    EXPECT_EQ(entriesOf(folder.path()), (std::map<std::string, bool>{{"a", false}}));
}

TEST(PreviewFolder, keepsTheFileSystemsOrderAndAnyBytes)
{
    const TemporaryFolder folder;
    for (const char *name : {"z", "a", "\xFF\xFE", "new\nline", "m"}) {
        folder.file(name);
    }
    std::vector<std::string> wanted;
    scan::DirectoryListing listing;
    listing.open(folder.descriptor());
    while (const scan::DirectoryEntry *entry = listing.next()) {
        wanted.emplace_back(entry->name);
    }
    std::vector<std::string> names;
    for (const PreviewFolderEntry &entry : previewFolderEntries(folder.path())) {
        names.push_back(entry.name);
    }
    EXPECT_EQ(names, wanted);
    EXPECT_EQ(names.size(), 5U);
}

TEST(PreviewFolder, isEmptyWhereNoFolderIs)
{
    const TemporaryFolder folder;
    folder.file("a");
    EXPECT_TRUE(previewFolderEntries(folder.path("gone")).empty());
    EXPECT_TRUE(previewFolderEntries(folder.path("a")).empty());
}

} // namespace
} // namespace tessaly
