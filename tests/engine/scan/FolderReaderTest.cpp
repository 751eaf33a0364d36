#include "engine/scan/FolderReader.hpp"

#include "engine/scan/MountTable.hpp"
#include "engine/tree/ScanTree.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include <dirent.h>
#include <fcntl.h>

namespace tessaly::scan {

class FolderReaderTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    tree::LUMFileContainer *record(const char *name, unsigned char type)
    {
        return m_reader.record(m_folder.descriptor(), {name, type}, m_tree.root());
    }

    const TemporaryFolder m_folder;
    tree::ScanTree m_tree;
    const tree::ScanTree::ArenaLease m_arena = m_tree.leaseArena();
    const MountPointTree m_mounts = MountPointTree::fromTable({}, "/");
    DescriptorBudget m_budget;
    DescriptorShare m_share{m_budget};
    FolderReader m_reader{m_mounts, *m_arena, m_share};
};

TEST_F(FolderReaderTest, findsOutTheTypesThatTheFileSystemDoesNotTell)
{
    m_folder.file("file", 10);
    m_folder.folder("folder");
    m_folder.link("toFolder", "folder");
    m_folder.link("toFile", "file");

    EXPECT_EQ(record("file", DT_UNKNOWN), nullptr);
    const tree::LUMFileContainer *toWalk = record("folder", DT_UNKNOWN);
    EXPECT_EQ(toWalk, childNamed(m_tree.root(), "folder"));
    EXPECT_EQ(record("toFolder", DT_UNKNOWN), nullptr);
    EXPECT_EQ(record("toFile", DT_UNKNOWN), nullptr);
    EXPECT_EQ(record("vanished", DT_UNKNOWN), nullptr);

    EXPECT_EQ(treeLines(m_tree.root()), (Lines{"file 10", "folder/", "toFolder/", "vanished 0"}));
}

TEST_F(FolderReaderTest, recordsAFileThatVanishedAsOneOfSizeZero)
{
    EXPECT_EQ(record("file", DT_REG), nullptr);
    EXPECT_EQ(record("pipe", DT_FIFO), nullptr);
    EXPECT_EQ(record("link", DT_LNK), nullptr);

    EXPECT_EQ(treeLines(m_tree.root()), (Lines{"file 0", "pipe 0"}));
}

TEST_F(FolderReaderTest, asksBeforeEveryEntryWhetherToStop)
{
    for (int i = 0; i < 3000; ++i) { // within one piece of the listing and across pieces
        m_folder.file(std::to_string(i) + std::string(100, 'x'));
    }
    for (const int entriesUntilStop : {0, 1, 17, 2999, 3000}) {
        tree::ScanTree tree;
        const FileDescriptor folder(openat(m_folder.descriptor(), ".", O_RDONLY | O_DIRECTORY));
        int asked = 0;
        m_reader.read(
            folder.number(), FileSystemKind::storage, {&tree.root(), nullptr},
            [&] { return asked++ == entriesUntilStop; }, [](const Subfolder &) { FAIL(); });

        EXPECT_EQ(tree.root().subitems().size(), static_cast<std::size_t>(entriesUntilStop));
    }
}

TEST_F(FolderReaderTest, tellsOfEverySubfolderButNotOfLinks)
{
    m_folder.folder("a");
    m_folder.folder("b");
    m_folder.file("file");
    m_folder.link("link", "a");
    Lines found;

    m_reader.read(
        m_folder.descriptor(), FileSystemKind::storage, {&m_tree.root(), nullptr},
        [] { return false; },
        [&](const Subfolder &subfolder) {
            found.emplace_back(subfolder.container->itemName());
            EXPECT_EQ(subfolder.container->parentContainer(), &m_tree.root());
            EXPECT_EQ(subfolder.place, nullptr);
        });

    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (Lines{"a", "b"}));
}

} // namespace tessaly::scan
