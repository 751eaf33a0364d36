#include "screens/results/ScanResult.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/tree/LUMFileContainer.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class ScanResultTest : public testing::Test {
protected:
    ScanResultTest() { m_delegate.setLargeFilePreference(4); }

    static Names namesOf(const ScanResult &result)
    {
        Names names;
        for (const KORVENFolderObject &row : result.rows.rows) {
            names.emplace_back(row.folderName());
        }
        return names;
    }
    static void expectNothingButRows(const ScanResult &result)
    {
        EXPECT_EQ(result.emptyTitle, QString());
        EXPECT_EQ(result.emptyText, QString());
        EXPECT_EQ(result.dateText, QString());
        EXPECT_EQ(result.notice, QString());
        EXPECT_EQ(result.scanKey, std::nullopt);
        EXPECT_FALSE(result.keepsScanningLook);
    }

    const TemporaryFolder m_disk;
    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
};

TEST_F(ScanResultTest, ofATreeHasTheRowsOfItsTopByThePreferencesOfNow)
{
    const auto tree = makeTree("/f", {file("small", 10), file("large", 2'000'000)});
    const ScanResult result = ScanResult::ofTree(tree);
    EXPECT_EQ(result.tree, tree);
    EXPECT_EQ(namesOf(result), (Names{"large", "small"}));
    EXPECT_EQ(result.rows.total, 2'000'010);
    expectNothingButRows(result);
    m_delegate.setLargeFilePreference(3);
    EXPECT_EQ(namesOf(ScanResult::ofTree(tree)), Names{"large"});
}

TEST_F(ScanResultTest, ofAScanIsThatOfItsTree)
{
    const auto tree = makeTree("/f", {file("a", 10)});
    const ScanResult result = ScanResult::ofScan({tree, std::nullopt});
    EXPECT_EQ(result.tree, tree);
    EXPECT_EQ(namesOf(result), Names{"a"});
    expectNothingButRows(result);
}

TEST_F(ScanResultTest, ofAScanWhoseFolderCouldNotBeOpenedSaysWhy)
{
    const auto tree = makeTree("/f");
    const ScanResult result = ScanResult::ofScan({tree, "Permission denied"});
    EXPECT_EQ(result.tree, tree);
    EXPECT_EQ(result.emptyTitle, u"This folder cannot be read"_s);
    EXPECT_EQ(result.emptyText, u"Permission denied"_s);
}

TEST_F(ScanResultTest, ofAFileIsThatOfTheTreeInIt)
{
    const std::string path = m_disk.path("scan.archive");
    ASSERT_TRUE(archive::writeScanFile(makeTree("/f", {file("a", 10)})->root(), path));
    const LoggedWarnings log;
    const ScanResult result = ScanResult::ofFile(path);
    ASSERT_NE(result.tree, nullptr);
    EXPECT_EQ(result.tree->root().itemName(), "/f");
    EXPECT_EQ(namesOf(result), Names{"a"});
    expectNothingButRows(result);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ScanResultTest, ofAFileThatIsNotThereNamesItOnce)
{
    const std::string path = m_disk.path("missing.archive");
    const LoggedWarnings log;
    const ScanResult result = ScanResult::ofFile(path);
    EXPECT_EQ(result.tree, nullptr);
    EXPECT_EQ(result.emptyTitle, u"This scan cannot be opened"_s);
    EXPECT_EQ(result.emptyText.count(QString::fromStdString(path)), 1);
    EXPECT_TRUE(result.emptyText.contains(u"No such file or directory"_s));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].starts_with("tessaly.screens.result: " + path + ": "));
}

TEST_F(ScanResultTest, ofADamagedFileNamesItAndSaysWhatIsWrong)
{
    const std::string path = m_disk.path("damaged\n.archive");
    std::ofstream(path) << "bplist00 damaged";
    const LoggedWarnings log;
    const ScanResult result = ScanResult::ofFile(path);
    EXPECT_EQ(result.tree, nullptr);
    EXPECT_EQ(result.emptyTitle, u"This scan cannot be opened"_s);
    const QString shownPath = QString::fromStdString(m_disk.path("damaged?.archive"));
    EXPECT_TRUE(result.emptyText.startsWith(shownPath + u'\n')) << "a name is one line";
    EXPECT_GT(result.emptyText.size(), shownPath.size() + 1);
    ASSERT_EQ(log.lines().size(), 1U);
}

TEST_F(ScanResultTest, ofAProblemHasNoTree)
{
    const ScanResult result = ScanResult::ofProblem(u"title"_s, u"text"_s);
    EXPECT_EQ(result.tree, nullptr);
    EXPECT_TRUE(result.rows.rows.empty());
    EXPECT_EQ(result.emptyTitle, u"title"_s);
    EXPECT_EQ(result.emptyText, u"text"_s);
}

TEST_F(ScanResultTest, noticesAreReadableWhateverTheReason)
{
    EXPECT_EQ(ScanResult::noticeOfLostScan("/a\n/b: Disk full"),
              u"This scan could not be kept: /a?/b: Disk full"_s);
}

} // namespace
} // namespace tessaly
