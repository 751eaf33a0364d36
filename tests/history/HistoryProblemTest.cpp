// A history that cannot be read, on the screen.

#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/HistoryFileWatch.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/history/HistoryScreenTest.hpp"

#include <fstream>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class HistoryProblemTest : public HistoryScreenTest {
protected:
    [[nodiscard]] HistoryFileWatch &watch() const
    {
        return *m_screen->findChild<HistoryFileWatch *>();
    }
    /// What the system says when it is asked to read a folder.
    [[nodiscard]] static QString problemOfFolder(const std::string &path)
    {
        return u"cannot read %1: not a regular file"_s.arg(QString::fromStdString(path));
    }

    const std::string m_file = m_documents.path("documents/scanHistory.archive");
};

TEST_F(HistoryProblemTest, aHistoryThatCannotBeReadSaysSoWhereTheRowsWouldBe)
{
    std::ofstream(m_file) << "bplist00 and then nonsense";
    openScreen();

    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"The history cannot be read"_s);
    EXPECT_TRUE(label("emptyText").contains(QString::fromStdString(m_file)));
    EXPECT_EQ(label("countLabel"), QString());
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);

    m_screen->deleteAllClicked();
    m_screen->sortClicked();
    m_screen->reloadHistoryDelete("A");
    press("refreshButton");
    EXPECT_EQ(label("emptyTitle"), u"The history cannot be read"_s);
    EXPECT_EQ(m_mainWindow.log, Log{"scanClicked"});
    EXPECT_EQ(access(m_file.c_str(), F_OK), 0) << "it is left as it is";

    ASSERT_EQ(unlink(m_file.c_str()), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return label("emptyTitle") == u"No scans kept yet"_s; }));
}

TEST_F(HistoryProblemTest, aFolderInTheHistorysPlaceIsNoEmptyHistory)
{
    m_documents.folder("documents/scanHistory.archive");
    openScreen();

    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"The history cannot be read"_s);
    EXPECT_EQ(label("emptyText"),
              u"Scans are not recorded until it can be: "_s + problemOfFolder(m_file));
    EXPECT_EQ(label("countLabel"), QString());
    EXPECT_FALSE(named<QLabel>("problemLabel").isVisible()) << "the page says it";
}

TEST_F(HistoryProblemTest, scansThatAreMadeMeanwhileAreListedBelowTheReason)
{
    m_documents.folder("documents/scanHistory.archive");
    openScreen();
    record("new", "/new", 400);
    showRows(1);

    EXPECT_EQ(shownPaths(), Paths{"/new"});
    EXPECT_TRUE(named<QLabel>("problemLabel").isVisible());
    EXPECT_EQ(label("problemLabel"), u"The history cannot be read\n"
                                     u"Scans are not recorded until it can be: "_s +
                                         problemOfFolder(m_file));
    EXPECT_EQ(label("countLabel"), QString()) << "they are not kept";
}

TEST_F(HistoryProblemTest, theOldScansAreThereAsSoonAsTheHistoryCanBeRead)
{
    const auto old = std::make_shared<KORVENHistoryItem>("/old", "1.00 KB");
    old->setScanDate(archive::Timestamp{100});
    const std::string aside = m_documents.path("aside");
    ASSERT_TRUE(writeHistoryFile({old}, aside));
    m_documents.folder("documents/scanHistory.archive");
    openScreen();
    record("new", "/new", 400);
    showRows(1);

    ASSERT_EQ(rmdir(m_file.c_str()), 0);
    ASSERT_EQ(rename(aside.c_str(), m_file.c_str()), 0);
    showRows(2);

    EXPECT_EQ(shownPaths(), (Paths{"/new", "/old"}));
    EXPECT_FALSE(named<QLabel>("problemLabel").isVisible());
    EXPECT_EQ(label("countLabel"), u"2 scans kept"_s);
    EXPECT_EQ(readHistoryFile(m_file).value().size(), 2U) << "the new one is saved";
}

TEST_F(HistoryProblemTest, aHistoryThatIsGoneIsEmpty)
{
    m_documents.folder("documents/scanHistory.archive");
    openScreen();
    ASSERT_EQ(rmdir(m_file.c_str()), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return label("emptyTitle") == u"No scans kept yet"_s; }));
}

TEST_F(HistoryProblemTest, theOrderOfTheRowsIsKeptWhileNothingChanges)
{
    m_documents.folder("documents/scanHistory.archive");
    openScreen();
    record("B", "/b", 1);
    record("A", "/a", 2);
    showRows(2);
    press("sortButton");
    press("sortButton");
    press("sortButton");
    m_documents.folder("documents/changes");
    m_documents.file("documents/changes too");
    Q_EMIT watch().mayHaveChanged();
    QCoreApplication::processEvents();
    EXPECT_FALSE(m_screen->sortByDateFlag());
}

TEST_F(HistoryProblemTest, scansThatLostTheirRecordsComeOnceTheHistoryCanBeRead)
{
    const std::string key = "6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB";
    const auto tree = makeTree("/lost", {file("a", 10)});
    ASSERT_TRUE(
        archive::writeScanFile(tree->root(), m_documents.path("documents/" + key + ".archive")));
    m_documents.folder("documents/scanHistory.archive");
    openScreen();
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    ASSERT_EQ(rmdir(m_file.c_str()), 0);
    showRows(1);
    EXPECT_EQ(shownPaths(), Paths{"/lost"});
}

TEST_F(HistoryProblemTest, scansThatLostTheirRecordsComeBackAtTheStart)
{
    const std::string key = "6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB";
    const auto tree = makeTree("/lost", {file("a", 10)});
    ASSERT_TRUE(
        archive::writeScanFile(tree->root(), m_documents.path("documents/" + key + ".archive")));
    openScreen();
    showRows(1);
    EXPECT_EQ(shownPaths(), Paths{"/lost"});
    EXPECT_EQ(cell(0).scanTotal()->text(), u"0.01 KB"_s);
    cell(0).imageClicked();
    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem " + key});
}

} // namespace
} // namespace tessaly
