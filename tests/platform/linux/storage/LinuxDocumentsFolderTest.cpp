#include "platform/linux/storage/LinuxDocumentsFolder.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeDocumentsFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class LinuxDocumentsFolderTest : public testing::Test {
protected:
    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("data/tessaly");
};

TEST_F(LinuxDocumentsFolderTest, liesAmongTheUsersData)
{
    runInChild([this] {
        setenv("XDG_DATA_HOME", m_folder.path("data").c_str(), 1);
        EXPECT_EQ(LinuxDocumentsFolder().path(), m_path);
    });

    EXPECT_EQ(namesIn(m_folder.path("data")), Names{"tessaly"});
}

TEST_F(LinuxDocumentsFolderTest, isMadeForTheUserAlone)
{
    LinuxDocumentsFolder folder(m_path);
    EXPECT_EQ(namesIn(m_folder.path()), Names());
    EXPECT_EQ(folder.path(), m_path);

    EXPECT_EQ(modeOf(m_path), 0700U);
    EXPECT_EQ(modeOf(m_folder.path("data")), 0700U);
}

TEST_F(LinuxDocumentsFolderTest, isMadeAgainWhenItIsGone)
{
    LinuxDocumentsFolder folder(m_path);
    EXPECT_EQ(folder.path(), m_path);
    std::filesystem::remove_all(m_folder.path("data"));
    EXPECT_EQ(folder.path(), m_path);

    EXPECT_EQ(modeOf(m_path), 0700U);
}

TEST_F(LinuxDocumentsFolderTest, isClosedToOthersAndTheFoldersAboveStayAsTheyAre)
{
    m_folder.folder("data");
    m_folder.folder("data/tessaly");
    writeFile(m_path + "/file", "text");
    for (const mode_t mode : {0755U, 0770U, 0707U, 0701U}) {
        ASSERT_EQ(chmod(m_path.c_str(), mode), 0);
        EXPECT_EQ(LinuxDocumentsFolder(m_path).path(), m_path);
        EXPECT_EQ(modeOf(m_path), 0700U);
    }

    EXPECT_EQ(modeOf(m_folder.path("data")), 0755U);
    EXPECT_EQ(textOfFile(m_path + "/file"), "text");
}

TEST_F(LinuxDocumentsFolderTest, mayBeReachedOverALink)
{
    m_folder.folder("data");
    m_folder.folder("elsewhere");
    m_folder.link("data/tessaly", "../elsewhere");
    const LoggedWarnings log;
    EXPECT_EQ(LinuxDocumentsFolder(m_path).path(), m_path);

    EXPECT_EQ(modeOf(m_folder.path("elsewhere")), 0700U);
    EXPECT_EQ(log.lines(), Names());
}

TEST_F(LinuxDocumentsFolderTest, hasNoSlashAtTheEndOfItsPath)
{
    EXPECT_EQ(LinuxDocumentsFolder(m_path + "//").path(), m_path);
    EXPECT_EQ(modeOf(m_path), 0700U);
}

TEST_F(LinuxDocumentsFolderTest, answersThePathThoughAFileIsInItsPlace)
{
    m_folder.folder("data");
    writeFile(m_path, "text");
    const LoggedWarnings log;

    EXPECT_EQ(LinuxDocumentsFolder(m_path).path(), m_path);
    EXPECT_EQ(log.lines(),
              Names{"tessaly.documents: cannot make the folder " + m_path + ": Not a directory"});
    EXPECT_EQ(textOfFile(m_path), "text");
}

TEST_F(LinuxDocumentsFolderTest, answersThePathThoughTheFolderCannotBeMadeOrClosed)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    m_folder.folder("open");
    runUnprivileged([this] {
        const LoggedWarnings log;
        EXPECT_EQ(LinuxDocumentsFolder(m_path).path(), m_path);
        EXPECT_EQ(LinuxDocumentsFolder(m_folder.path("open")).path(), m_folder.path("open"));
        EXPECT_EQ(log.lines(), (Names{"tessaly.documents: cannot make the folder " + m_path +
                                          ": Permission denied",
                                      "tessaly.documents: others can look into " +
                                          m_folder.path("open") + ": Operation not permitted"}));
    });

    EXPECT_EQ(modeOf(m_folder.path("open")), 0755U);
}

TEST(FakeDocumentsFolder, answersThePathThatItWasGiven)
{
    FakeDocumentsFolder folder("/nowhere");
    EXPECT_EQ(folder.path(), "/nowhere");
    EXPECT_EQ(folder.path(), "/nowhere");
    EXPECT_EQ(folder.callCount(), 2);
}

} // namespace
} // namespace tessaly
