// What the folder scan screen has previewed.

#include "platform/FileUrl.hpp"
#include "screens/KORVENQuicklookController.hpp"
#include "tests/screens/ScanScreenTest.hpp"

#include <cstdio>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class ScanPreviewTest : public ScanScreenTest {
protected:
    void scanDisk()
    {
        openScreen();
        chooseAndScan(m_disk.path());
        waitForScan();
    }
    void clickRow(const std::string &name)
    {
        const Names names = rowNames();
        const auto row = std::find(names.begin(), names.end(), name);
        ASSERT_NE(row, names.end()) << name;
        cell(static_cast<int>(row - names.begin())).clickedName();
    }

    [[nodiscard]] FakePreviewPanel &panel()
    {
        return m_services.previewPanels.sharedPreviewPanel();
    }
    [[nodiscard]] std::string url(const std::string &name) const
    {
        return fileUrl(m_disk.path(name)).value();
    }
    /// What the panel pages through, as names on the disk.
    [[nodiscard]] Names pages()
    {
        Names names;
        for (const std::string &item : panel().items()) {
            names.push_back(pathOfFileUrl(item).value().substr(m_disk.path().size() + 1));
        }
        return names;
    }
};

TEST_F(ScanPreviewTest, isOfTheFileOfTheRowWithAccessByTheScansKey)
{
    m_disk.folder("sub");
    m_disk.file("sub/file", 10);
    m_disk.file("file", 5);
    scanDisk();
    clickRow("sub");
    clickRow("file");
    EXPECT_EQ(pages(), Names{"sub/file"});
    EXPECT_EQ(panel().unlistedItem(), "");

    const std::string disk = fileUrl(m_disk.path()).value();
    EXPECT_EQ(KORVENQuicklookController::sharedStore().scanURL(), disk);
    EXPECT_EQ(m_services.bookmarks.accessCount(disk), 1);
}

TEST_F(ScanPreviewTest, pagesInTheOrderOfTheRowsAndThenThroughTheOtherFiles)
{
    m_disk.file("b", 400);
    m_disk.file("d", 300);
    m_disk.file("a", 200);
    m_disk.file("c", 100);
    m_disk.file("too small for a row", 0);
    m_disk.folder("z");
    m_disk.file("z/inside", 350);
    scanDisk();
    ASSERT_EQ(rowNames(), (Names{"b", "z", "d", "a", "c"}));
    clickRow("d");
    EXPECT_EQ(pages(), (Names{"d", "a", "c", "too small for a row", "b"}));

    m_screen->sortClicked();
    clickRow("b");
    EXPECT_EQ(pages(), (Names{"b", "c", "d", "too small for a row", "a"}));
}

TEST_F(ScanPreviewTest, ofAFileThatIsGoneSaysSoInPlaceOfAnotherFile)
{
    m_disk.file("a", 30);
    m_disk.file("b", 20);
    m_disk.file("gone", 10);
    scanDisk();
    clickRow("b");
    panel().setCurrentPreviewItemIndex(1);
    ASSERT_EQ(std::remove(m_disk.path("gone").c_str()), 0);

    clickRow("gone");
    EXPECT_EQ(panel().unlistedItem(), url("gone"));
    EXPECT_EQ(pages(), (Names{"a", "b"}));
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0U);

    clickRow("b");
    EXPECT_EQ(panel().unlistedItem(), "");
    EXPECT_EQ(pages(), (Names{"b", "a"}));
}

TEST_F(ScanPreviewTest, ofTheLastFileOfAFolderSaysThatItIsGoneToo)
{
    m_disk.file("gone", 10);
    scanDisk();
    ASSERT_EQ(std::remove(m_disk.path("gone").c_str()), 0);
    clickRow("gone");
    EXPECT_EQ(pages(), Names());
    EXPECT_EQ(panel().unlistedItem(), url("gone"));
}

TEST_F(ScanPreviewTest, ofAHiddenFileThatIsThereIsTheFoldersFirstFile)
{
    m_disk.file(".hidden", 20);
    m_disk.file("a", 10);
    scanDisk();
    clickRow(".hidden");
    EXPECT_EQ(pages(), Names{"a"});
    EXPECT_EQ(panel().unlistedItem(), "");
}

} // namespace
} // namespace tessaly
