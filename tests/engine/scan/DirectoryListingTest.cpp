#include "engine/scan/DirectoryListing.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>

namespace tessaly::scan {

namespace {

std::vector<std::string> namesIn(DirectoryListing &listing, const std::string &path)
{
    const FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY));
    listing.open(folder.number());
    std::vector<std::string> names;
    while (const DirectoryEntry *entry = listing.next()) {
        EXPECT_EQ(std::strlen(entry->name.data()), entry->name.size());
        names.emplace_back(entry->name);
    }
    return names;
}

} // namespace

TEST(DirectoryListing, givesEveryNameButTheDotsInTheSystemsOrder)
{
    const TemporaryFolder folder;
    for (int i = 0; i < 5000; ++i) { // more than one buffer full
        folder.file(std::string(i % 3 == 0 ? 200 : 3, 'n') + std::to_string(i));
    }
    DirectoryListing listing;

    const std::vector<std::string> names = namesIn(listing, folder.path());

    EXPECT_EQ(names, listedNames(folder.path()));
    EXPECT_EQ(names.size(), 5000U);
    EXPECT_EQ(listing.error(), 0);
}

TEST(DirectoryListing, tellsTheTypesOfEntries)
{
    const TemporaryFolder folder;
    folder.folder("folder");
    DirectoryListing listing;
    listing.open(folder.descriptor());

    const DirectoryEntry *entry = listing.next();

    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->name, "folder");
    EXPECT_TRUE(entry->type == DT_DIR || entry->type == DT_UNKNOWN);
    EXPECT_EQ(listing.next(), nullptr);
}

TEST(DirectoryListing, readsOneFolderAfterTheOther)
{
    const TemporaryFolder folder;
    folder.folder("empty");
    folder.folder("full");
    folder.file("full/a");
    DirectoryListing listing;

    EXPECT_EQ(namesIn(listing, folder.path("full")), std::vector<std::string>{"a"});
    EXPECT_EQ(namesIn(listing, folder.path("empty")), std::vector<std::string>{});
    EXPECT_EQ(namesIn(listing, folder.path("full")), std::vector<std::string>{"a"});
}

TEST(DirectoryListing, endsAtOnceWhereNothingCanBeRead)
{
    const TemporaryFolder folder;
    folder.file("file");
    const FileDescriptor file(openat(folder.descriptor(), "file", O_RDONLY));
    DirectoryListing listing;

    listing.open(file.number());
    EXPECT_EQ(listing.next(), nullptr);
    EXPECT_EQ(listing.error(), ENOTDIR);

    listing.open(-1);
    EXPECT_EQ(listing.next(), nullptr);
    EXPECT_EQ(listing.error(), EBADF);
}

TEST(DirectoryListing, isEmptyForAFolderThatWasRemoved)
{
    const TemporaryFolder folder;
    folder.folder("gone");
    const FileDescriptor gone(openat(folder.descriptor(), "gone", O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(unlinkat(folder.descriptor(), "gone", AT_REMOVEDIR), 0);
    DirectoryListing listing;

    listing.open(gone.number());

    EXPECT_EQ(listing.next(), nullptr);
}

} // namespace tessaly::scan
