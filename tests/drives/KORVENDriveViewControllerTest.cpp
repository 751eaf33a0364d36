#include "drives/KORVENDriveViewController.hpp"

#include "tests/drives/DriveScreenTest.hpp"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

QColor green()
{
    KORVENProgressBar bar;
    bar.setColorsGreen();
    return bar.fColor();
}
QColor yellow()
{
    KORVENProgressBar bar;
    bar.setColorsYellow();
    return bar.fColor();
}
QColor red()
{
    KORVENProgressBar bar;
    bar.setColorsRed();
    return bar.fColor();
}

class KORVENDriveViewControllerTest : public DriveScreenTest {
protected:
    [[nodiscard]] FakeVolumeService &volumes() { return m_services.volumes; }
    [[nodiscard]] QColor colorOf(int row) const { return cell(row).driveGraph()->fColor(); }
    void refresh()
    {
        m_screen->refreshClicked();
        answer();
    }
};

TEST_F(KORVENDriveViewControllerTest, asksWhenItStartsAndSaysSo)
{
    addVolume("Data", 10, 5);
    const KORVENDriveViewController unawoken(m_services.volumes, m_services.applications,
                                             m_services.fileManager);
    EXPECT_TRUE(unawoken.firstRunFlag());
    EXPECT_TRUE(volumes().questions.empty());

    openScreenUnanswered();
    EXPECT_FALSE(m_screen->firstRunFlag());
    EXPECT_TRUE(m_screen->sortBySizeFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    ASSERT_EQ(volumes().questions.size(), 1U);
    EXPECT_EQ(volumes().questions[0].first, Names{"/Volumes/Data"});
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"Looking for volumes…"_s);
    EXPECT_EQ(label("countLabel"), QString());
    answer();
    EXPECT_TRUE(table().isVisible());
    EXPECT_EQ(label("countLabel"), u"1 volume"_s);
}

TEST_F(KORVENDriveViewControllerTest, itsRowsAreAModelThatChangesByTheRules)
{
    addVolume("a", 10, 5);
    openScreenUnanswered();
    const QAbstractItemModelTester tester(table().model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    answer();
    addVolume("b", 10, 1);
    refresh();
    m_screen->sortClicked();
    removeVolume("a");
    EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(KORVENDriveViewControllerTest, isSetUpOnce)
{
    addVolume("a", 10, 5);
    openScreen();
    m_screen->sortClicked();
    m_screen->awakeFromNib();
    EXPECT_TRUE(volumes().questions.empty());
    EXPECT_FALSE(m_screen->sortBySizeFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by size"_s);
}

TEST_F(KORVENDriveViewControllerTest, showsWhatIsKnownOfAVolume)
{
    addVolume("Data", 2'000'000'000'000, 379'210'000'000, fixed, "hfs");
    openScreen();
    KORVENDriveCellView &shown = cell(0);
    EXPECT_EQ(shown.driveName()->text(), u"Data"_s);
    EXPECT_EQ(shown.driveTotal()->text(), u"2.00 TB"_s);
    EXPECT_EQ(shown.driveFree()->text(), u"379.21 GB"_s);
    EXPECT_EQ(shown.driveUsed()->text(), u"1.62 TB"_s);
    EXPECT_FLOAT_EQ(shown.driveGraph()->barPercent(), 0.810395F);
    EXPECT_EQ(shown.driveGraph()->toolTip(), u"81%"_s);
    EXPECT_EQ(shown.driveImage()->imageName(), u"drive.png"_s);
    EXPECT_EQ(shown.driveImage()->toolTip(), u"hfs"_s);
    EXPECT_EQ(shown.diskType(), 0);
}

TEST_F(KORVENDriveViewControllerTest, theBarsTooltipIsTwoCharactersAndAPercentSign)
{
    addVolume("full", 100, 0);
    addVolume("seven", 100, 93);
    addVolume("empty", 100, 100);
    openScreen();
    EXPECT_EQ(cell(0).driveGraph()->toolTip(), u"100%"_s);
    EXPECT_EQ(cell(1).driveGraph()->toolTip(), u" 7%"_s);
    EXPECT_EQ(cell(2).driveGraph()->toolTip(), u" 0%"_s);
}

TEST_F(KORVENDriveViewControllerTest, theIconTellsRemovableVolumesAndItsTooltipTheKind)
{
    addVolume("a", 10, 0, removable, "afpfs");
    addVolume("b", 10, 1, both, "msdos");
    addVolume("c", 10, 2, unmountable, "ntfs");
    openScreen();
    const QStringList images{u"drive_usb.png"_s, u"drive_usb.png"_s, u"drive.png"_s};
    const QStringList kinds{u"afpfs"_s, u"msdos"_s, u"other"_s};
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(cell(row).driveImage()->imageName(), images[row]);
        EXPECT_EQ(cell(row).driveImage()->toolTip(), kinds[row]);
        EXPECT_FALSE(cell(row).driveImage()->image().isNull());
    }
    EXPECT_TRUE(cell(1).isRemoveable());
    EXPECT_TRUE(cell(1).isUnmountable());
    EXPECT_FALSE(cell(2).isRemoveable());
    EXPECT_EQ(cell(2).diskType(), 3);
}

TEST_F(KORVENDriveViewControllerTest, volumesThatCannotGoHaveNoEjectControl)
{
    addVolume("a", 10, 0, fixed);
    addVolume("b", 10, 1, removable);
    addVolume("c", 10, 2, unmountable);
    addVolume("d", 10, 3, both);
    addUnreadableVolume("e");
    openScreen();
    for (int row = 0; row < 5; ++row) {
        const bool canGo = row >= 1 && row <= 3;
        EXPECT_EQ(cell(row).ejectButton()->isVisible(), canGo) << row;
        EXPECT_EQ(cell(row).ejectLabel()->isVisible(), canGo) << row;
        EXPECT_TRUE(cell(row).ejectButton()->isEnabled()) << row;
    }
    // All bars are of the same length.
    EXPECT_EQ(cell(0).driveGraph()->width(), cell(1).driveGraph()->width());
}

TEST_F(KORVENDriveViewControllerTest, nearlyFullVolumesAreColouredIfThePreferenceIsOn)
{
    addVolume("95", 1'000, 50);
    addVolume("beyond 90", 100'000'000, 9'999'990);
    addVolume("90", 1'000, 100); // a little less in single precision
    addVolume("89.9", 1'000, 101);
    addVolume("80", 1'000, 200);
    addVolume("79.9", 1'000, 201);
    addUnreadableVolume("unreadable");
    m_delegate.setDiskGraphColorPreference(1);
    openScreen();
    ASSERT_EQ(rowNames(), (Names{"95", "beyond 90", "90", "89.9", "80", "79.9", "unreadable"}));
    const std::vector<QColor> colors{red(), red(), yellow(), yellow(), yellow(), green(), green()};
    for (int row = 0; row < 7; ++row) {
        EXPECT_EQ(colorOf(row), colors[static_cast<std::size_t>(row)]) << row;
    }

    m_delegate.setDiskGraphColorPreference(0);
    EXPECT_EQ(colorOf(0), red()) << "not before the table is told";
    m_screen->refreshTable();
    for (int row = 0; row < 7; ++row) {
        EXPECT_EQ(colorOf(row), green()) << row;
    }
    EXPECT_TRUE(volumes().questions.empty()) << "nothing was asked again";

    m_delegate.setDiskGraphColorPreference(-1); // any but 0 is on
    m_screen->refreshTable();
    EXPECT_EQ(colorOf(0), red());
    EXPECT_EQ(colorOf(4), yellow());
}

TEST_F(KORVENDriveViewControllerTest, aVolumeThatCannotBeReadIsListed)
{
    addUnreadableVolume("dead");
    openScreen();
    EXPECT_EQ(cell(0).driveTotal()->text(), u"0.00 KB"_s);
    EXPECT_EQ(cell(0).driveFree()->text(), u"0.00 KB"_s);
    EXPECT_EQ(cell(0).driveUsed()->text(), u"0.00 KB"_s);
    EXPECT_TRUE(std::isnan(cell(0).driveGraph()->barPercent()));
    EXPECT_EQ(cell(0).driveGraph()->toolTip(), u"nan%"_s);
    EXPECT_EQ(cell(0).driveImage()->toolTip(), u"other"_s);
}

TEST_F(KORVENDriveViewControllerTest, listsByTheRulesOfTheFolderOfVolumes)
{
    for (const char *name : {".ds_STORE", "Mobilebackups", "Mobilebackups/Volume",
                             "Mobilebackups/Volume/deeper", "Data", "Data/folder"}) {
        addVolume(name, 10, 5);
    }
    openScreenUnanswered();
    EXPECT_EQ(volumes().questions[0].first,
              (Names{"/Volumes/Mobilebackups/Volume", "/Volumes/Data"}));
    answer();
    EXPECT_EQ(shownNames(), (Names{"Mobilebackups/Volume", "Data"}));
    EXPECT_EQ(m_screen->disksArray()[0].diskFullPath(), "/Volumes/Mobilebackups/Volume");
    EXPECT_EQ(label("countLabel"), u"2 volumes"_s);
}

TEST_F(KORVENDriveViewControllerTest, noVolumesLeaveAnEmptyPage)
{
    openScreen();
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"No volumes found"_s);
    EXPECT_TRUE(named<QLabel>("emptyText").isVisible());
    addVolume("a", 10, 5);
    refresh();
    EXPECT_TRUE(table().isVisible());
    removeVolume("a");
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("countLabel"), QString());
}

TEST_F(KORVENDriveViewControllerTest, theButtonNamesTheOrderThatItSwitchesTo)
{
    addVolume("B large half", 1'000'000, 500'000);
    addVolume("a small full", 100, 1);
    addUnreadableVolume("Z unreadable");
    addUnreadableVolume("A unreadable");
    openScreen();
    const Names bySize{"a small full", "B large half", "Z unreadable", "A unreadable"};
    EXPECT_EQ(shownNames(), bySize);

    QTest::mouseClick(&button("sortButton"), Qt::LeftButton);
    EXPECT_FALSE(m_screen->sortBySizeFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by size"_s);
    EXPECT_EQ(shownNames(),
              (Names{"A unreadable", "B large half", "Z unreadable", "a small full"}));

    QTest::mouseClick(&button("sortButton"), Qt::LeftButton);
    EXPECT_TRUE(m_screen->sortBySizeFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_EQ(rowNames()[0], "a small full");
}

TEST_F(KORVENDriveViewControllerTest, mountsAndUnmountsRebuildTheListInTheOrderThatTheUserChose)
{
    addVolume("c", 10, 0);
    addVolume("a", 10, 5);
    openScreen();
    addVolume("b", 10, 1);
    volumes().listener();
    answer();
    EXPECT_EQ(shownNames(), (Names{"c", "b", "a"}));

    m_screen->sortClicked();
    addVolume("B", 10, 2);
    volumes().listener();
    answer();
    EXPECT_EQ(shownNames(), (Names{"B", "a", "b", "c"}));
    EXPECT_EQ(button("sortButton").text(), u"Sort by size"_s);
    removeVolume("a");
    EXPECT_EQ(shownNames(), (Names{"B", "b", "c"}));
    QTest::mouseClick(&button("refreshButton"), Qt::LeftButton);
    answer();
    EXPECT_EQ(shownNames(), (Names{"B", "b", "c"}));
}

TEST_F(KORVENDriveViewControllerTest, theOldRowsStayUntilTheAnswerIsThere)
{
    addVolume("a", 10, 5);
    openScreen();
    addVolume("b", 10, 0);
    m_screen->refreshClicked();
    EXPECT_EQ(shownNames(), Names{"a"});
    EXPECT_TRUE(table().isVisible());
    answer();
    EXPECT_EQ(shownNames(), (Names{"b", "a"}));
}

TEST_F(KORVENDriveViewControllerTest, anAnswerThatIsOutOfDateIsIgnored)
{
    addVolume("a", 10, 5);
    openScreenUnanswered();
    addVolume("b", 10, 5);
    m_screen->refreshClicked();
    ASSERT_EQ(volumes().questions.size(), 2U);
    volumes().answer(); // of the first question
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(label("emptyTitle"), u"Looking for volumes…"_s);
    answer();
    EXPECT_EQ(rowNames(), (Names{"a", "b"}));

    m_screen->refreshClicked();
    std::swap(volumes().entries[0], volumes().entries[1]);
    m_screen->refreshClicked();
    std::swap(volumes().questions[0], volumes().questions[1]);
    volumes().answer(); // the last one's comes first
    EXPECT_EQ(rowNames(), (Names{"b", "a"}));
    volumes().answer();
    EXPECT_EQ(rowNames(), (Names{"b", "a"}));
}

TEST_F(KORVENDriveViewControllerTest, mayGoBeforeTheAnswerComes)
{
    addVolume("a", 10, 5);
    openScreenUnanswered();
    m_screen.reset();
    answer();
    volumes().listener(); // nobody asks any more
    EXPECT_TRUE(volumes().questions.empty());
}

TEST_F(KORVENDriveViewControllerTest, itsViewMayGoBeforeTheAnswerComes)
{
    addVolume("a", 10, 5);
    openScreenUnanswered();
    delete m_screen->view();
    answer();
    EXPECT_EQ(m_screen->view(), nullptr);
}

TEST_F(KORVENDriveViewControllerTest, thereIsNoCellBeyondTheLastRow)
{
    addVolume("a", 10, 5);
    openScreen();
    EXPECT_EQ(m_screen->viewForTableColumn(1), nullptr);
    EXPECT_EQ(m_screen->viewForTableColumn(1000), nullptr);
    EXPECT_EQ(m_screen->viewForTableColumn(-1), nullptr);
    EXPECT_NE(m_screen->viewForTableColumn(0), nullptr);
}

TEST_F(KORVENDriveViewControllerTest, startsTheDiskUtility)
{
    openScreenUnanswered();
    ASSERT_TRUE(QTest::qWaitFor([this] { return button("launchButton").isVisible(); }));
    QTest::mouseClick(&button("launchButton"), Qt::LeftButton);
    EXPECT_EQ(m_services.applications.launched, Names{"Disk Utility.app"});
}

TEST_F(KORVENDriveViewControllerTest, offersTheDiskUtilityOnlyWhereThereIsOne)
{
    m_services.applications.isInstalled = false;
    openScreen();
    EXPECT_FALSE(button("launchButton").isVisible());
    QCoreApplication::processEvents(); // the answer
    EXPECT_FALSE(button("launchButton").isVisible());

    m_services.applications.isInstalled = true;
    refresh();
    ASSERT_TRUE(QTest::qWaitFor([this] { return button("launchButton").isVisible(); }));
    m_services.applications.isInstalled = false;
    refresh();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !button("launchButton").isVisible(); }));
}

TEST_F(KORVENDriveViewControllerTest, oldFiguresAreShownAsSuchUntilTheVolumeAnswers)
{
    addVolume("slow", 1'000'000'000, 600'000'000, removable, "afpfs");
    addVolume("other", 10, 5);
    volumes().information.at("/Volumes/slow").areFiguresOld = true;
    openScreen();
    ASSERT_EQ(shownNames(), (Names{"other", "slow"}));
    const auto labels = [this](int row) {
        KORVENDriveCellView &shown = cell(row);
        return std::vector{shown.driveTotal(), shown.driveUsed(), shown.driveFree()};
    };
    for (const QLabel *label : labels(1)) {
        EXPECT_FALSE(label->isEnabled());
        EXPECT_EQ(label->toolTip(), u"As of the last time the volume answered"_s);
    }
    for (const QLabel *label : labels(0)) {
        EXPECT_TRUE(label->isEnabled());
        EXPECT_EQ(label->toolTip(), QString());
    }
    EXPECT_EQ(cell(1).driveTotal()->text(), u"1.00 GB"_s);
    const QAbstractItemModel &model = *table().model();
    EXPECT_EQ(model.data(model.index(1, 0), Qt::AccessibleTextRole).toString(),
              u"slow, 400.00 MB used, 40%, out of date"_s);

    table().selectRow(1);
    volumes().lateFigures.at(0)(0, VolumeFigures{1'000'000'000, 200'000'000});
    ASSERT_EQ(shownNames(), (Names{"slow", "other"})) << "it is the fullest now";
    EXPECT_EQ(cell(0).driveUsed()->text(), u"800.00 MB"_s);
    EXPECT_TRUE(cell(0).driveUsed()->isEnabled());
    EXPECT_EQ(cell(0).driveUsed()->toolTip(), QString());
    EXPECT_TRUE(cell(0).isRemoveable());
    EXPECT_EQ(cell(0).diskType(), 1);
    EXPECT_EQ(table().selectedRow(), 0);
    EXPECT_EQ(model.data(model.index(0, 0), Qt::AccessibleTextRole).toString(),
              u"slow, 800.00 MB used, 80%"_s);
}

TEST_F(KORVENDriveViewControllerTest, aLateAnswerThatIsOutOfDateIsIgnored)
{
    addVolume("slow", 10, 5);
    openScreen();
    refresh();
    volumes().lateFigures.at(0)(0, VolumeFigures{10, 1});
    EXPECT_EQ(m_screen->disksArray()[0].diskFree(), 5U);
    m_screen->refreshClicked(); // of the question before the one that is open
    volumes().lateFigures.at(1)(0, VolumeFigures{10, 1});
    EXPECT_EQ(m_screen->disksArray()[0].diskFree(), 5U);
    answer();
    volumes().lateFigures.at(2)(0, std::nullopt);
    EXPECT_EQ(m_screen->disksArray()[0].diskTotal(), 0U);
    const auto late = volumes().lateFigures.at(2);
    m_screen.reset();
    late(0, VolumeFigures{10, 1});
}

TEST_F(KORVENDriveViewControllerTest, sortingShowsTheFirstRowsAndKeepsTheSelection)
{
    for (int i = 0; i < 30; ++i) {
        addVolume("v" + std::to_string(10 + i), 100, static_cast<std::uint64_t>(i));
    }
    openScreen();
    ASSERT_EQ(rowNames().front(), "v10");
    table().selectRow(20);
    ASSERT_GT(table().verticalScrollBar()->value(), 0);
    const int place = table().verticalScrollBar()->value();

    m_screen->refreshTable();
    EXPECT_EQ(table().verticalScrollBar()->value(), place);
    EXPECT_EQ(table().selectedRow(), 20);

    m_screen->sortClicked();
    EXPECT_EQ(table().verticalScrollBar()->value(), 0);
    EXPECT_EQ(table().selectedRow(), 20);
    removeVolume("v11");
    EXPECT_EQ(table().verticalScrollBar()->value(), 0);
    EXPECT_EQ(table().selectedRow(), 19) << "the same volume";
    removeVolume("v30");
    EXPECT_EQ(table().selectedRow(), -1);
    EXPECT_LT(table().cellCount(), 20);
}

TEST_F(KORVENDriveViewControllerTest, returnShowsTheVolumeAndTheMenuKeyItsMenu)
{
    addVolume("a", 10, 0);
    addVolume("b", 10, 5);
    openScreen();
    table().selectRow(1);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(m_services.fileManager.revealed(), Names{"/Volumes/b"});

    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(table().viewport(), &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    entry(*menu, u"Show Info"_s).trigger();
    EXPECT_EQ(m_services.fileManager.informed(), Names{"/Volumes/b"});
    menu->close();
}

TEST_F(KORVENDriveViewControllerTest, typingSelectsAVolume)
{
    addVolume("apple", 10, 0);
    addVolume("banana", 10, 5);
    openScreen();
    QTest::keyClick(&table(), Qt::Key_B);
    EXPECT_EQ(table().selectedRow(), 1);
}

TEST_F(KORVENDriveViewControllerTest, assistiveTechnologyReadsNameUsedAndPercentage)
{
    addVolume("Data", 2'000'000'000'000, 379'210'000'000);
    addVolume("new\nline", 100, 93);
    addUnreadableVolume("dead");
    openScreen();
    const auto textOf = [this](int row) {
        const QAbstractItemModel &model = *table().model();
        return model.data(model.index(row, 0), Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(textOf(0), u"Data, 1.62 TB used, 81%"_s);
    EXPECT_EQ(textOf(1), u"new?line, 0.01 KB used, 7%"_s);
    EXPECT_EQ(textOf(2), u"dead, size unknown"_s);
}

TEST_F(KORVENDriveViewControllerTest, everyButtonHasATooltipAndAName)
{
    addVolume("stick", 10, 0, removable);
    addVolume("disk", 10, 5, unmountable);
    openScreen();
    for (const QAbstractButton *each : m_screen->view()->findChildren<QAbstractButton *>()) {
        EXPECT_FALSE(each->toolTip().isEmpty()) << qPrintable(each->objectName());
        const QAccessibleInterface *accessible =
            QAccessible::queryAccessibleInterface(const_cast<QAbstractButton *>(each));
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << qPrintable(each->objectName());
    }
    EXPECT_EQ(cell(0).ejectButton()->accessibleName(), u"Eject stick"_s);
    EXPECT_EQ(cell(0).ejectButton()->toolTip(), u"Eject the volume"_s);
    EXPECT_EQ(cell(1).ejectButton()->toolTip(), u"Unmount the volume"_s);
}

TEST_F(KORVENDriveViewControllerTest, onTheOldestReleaseCellsAndButtonsAreThoseOfOld)
{
    m_services.release.setVersion({10, 7});
    const KORVENAppDelegate delegate(m_services.all());
    addVolume("a", 10, 5, removable);
    openScreen();
    for (const char *name : {"refreshButton", "sortButton", "launchButton"}) {
        EXPECT_TRUE(button(name).run10p7Mode()) << name;
    }
    EXPECT_EQ(cell(0).driveName()->text(), u"a"_s);
    refresh();
    EXPECT_LE(table().cellCount(), 2) << "cells are used again";
}

TEST_F(KORVENDriveViewControllerTest, onOtherReleasesButtonsHaveTheirOwnLook)
{
    openScreen();
    EXPECT_FALSE(button("refreshButton").run10p7Mode());
}

} // namespace
} // namespace tessaly
