#include "app/window/PreferenceSheet.hpp"

#include "app/window/SplitView.hpp"
#include "tests/app/window/WindowTest.hpp"

#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class PreferenceSheetTest : public WindowTest {
protected:
    void openSheet()
    {
        openWindow();
        m_controller->showPreferenceSheet();
    }
    [[nodiscard]] PreferenceSheet &sheet() const { return *m_controller->preferenceSheet(); }

    /// Presses the control; what that stores, and whose tables it fills again.
    struct Outcome {
        Names stored;
        int driveResets;
        int homeResets;
        int scanResets;
    };
    [[nodiscard]] Outcome press(QAbstractButton &control)
    {
        const auto resetsOf = [](const CellTableView &table) {
            return std::make_unique<QSignalSpy>(table.model(), &QAbstractItemModel::modelReset);
        };
        const auto drives = resetsOf(tableOf(m_controller->dvc()));
        const auto home = resetsOf(tableOf(m_controller->hvc()));
        const auto scan = resetsOf(tableOf(m_controller->avc()));
        m_services.settings.clearLog();
        control.click();
        return {m_services.settings.log(), static_cast<int>(drives->count()),
                static_cast<int>(home->count()), static_cast<int>(scan->count())};
    }
    static void expectResultsRefreshed(const Outcome &outcome)
    {
        EXPECT_GT(outcome.homeResets, 0);
        EXPECT_GT(outcome.scanResets, 0);
        EXPECT_EQ(outcome.driveResets, 0);
    }
    static void expectNothingRefreshed(const Outcome &outcome)
    {
        EXPECT_EQ(outcome.homeResets, 0);
        EXPECT_EQ(outcome.scanResets, 0);
        EXPECT_EQ(outcome.driveResets, 0);
    }
};

TEST_F(PreferenceSheetTest, isLoadedTheFirstTimeAndKept)
{
    openWindow();
    EXPECT_EQ(m_controller->preferenceSheet(), nullptr);
    m_controller->closePreferenceSheet();
    m_controller->showPreferenceSheet();
    const PreferenceSheet *first = m_controller->preferenceSheet();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->isVisible());
    m_controller->closePreferenceSheet();
    EXPECT_FALSE(first->isVisible());
    m_controller->showPreferenceSheet();
    EXPECT_EQ(m_controller->preferenceSheet(), first);
    EXPECT_TRUE(first->isVisible());
}

TEST_F(PreferenceSheetTest, showsThePreferencesAsTheyAre)
{
    openWindow();
    m_delegate->setHiddenItemPreference(2);
    m_delegate->setLargeFilePreference(3);
    m_delegate->setShowNotificationPreference(1);
    m_delegate->setNotificationSoundPreference(0);
    m_delegate->setDiskGraphColorPreference(0);
    m_delegate->setFolderGraphColorPreference(1);
    m_services.settings.clearLog();
    m_controller->showPreferenceSheet();
    EXPECT_EQ(sheet().hiddenItemMatrix().checkedId(), 2);
    EXPECT_EQ(sheet().largeFileMatrix().checkedId(), 3);
    EXPECT_TRUE(sheet().showNotificationCheck().isChecked());
    EXPECT_FALSE(sheet().notificationSoundCheck().isChecked());
    EXPECT_TRUE(sheet().notificationSoundCheck().isEnabled());
    EXPECT_FALSE(sheet().diskGraphCheck().isChecked());
    EXPECT_TRUE(sheet().folderGraphCheck().isChecked());

    m_controller->closePreferenceSheet();
    m_delegate->setHiddenItemPreference(4);
    m_delegate->setShowNotificationPreference(0);
    m_delegate->setDiskGraphColorPreference(1);
    m_controller->showPreferenceSheet();
    EXPECT_EQ(sheet().hiddenItemMatrix().checkedId(), 4);
    EXPECT_FALSE(sheet().showNotificationCheck().isChecked());
    EXPECT_FALSE(sheet().notificationSoundCheck().isEnabled());
    EXPECT_TRUE(sheet().diskGraphCheck().isChecked());
    EXPECT_EQ(m_services.settings.log(), Names{}) << "showing changes nothing";
}

TEST_F(PreferenceSheetTest, aValueWithoutARowShowsTheRowThatItActsAs)
{
    openWindow();
    m_delegate->setHiddenItemPreference(7);
    m_delegate->setLargeFilePreference(-1);
    m_controller->showPreferenceSheet();
    EXPECT_EQ(sheet().hiddenItemMatrix().checkedId(), 0);
    EXPECT_EQ(sheet().largeFileMatrix().checkedId(), 0);
    EXPECT_EQ(m_delegate->hiddenItemPreference(), 7);
}

TEST_F(PreferenceSheetTest, eachRowOfHiddenItemsIsStoredAndRefreshesTheResults)
{
    openSheet();
    for (const int row : {1, 2, 3, 4, 0}) {
        const Outcome outcome = press(*sheet().hiddenItemMatrix().button(row));
        EXPECT_EQ(m_delegate->hiddenItemPreference(), row);
        EXPECT_EQ(outcome.stored,
                  (Names{"setInteger hiddenItemPreference " + std::to_string(row), "flush"}));
        expectResultsRefreshed(outcome);
    }
}

TEST_F(PreferenceSheetTest, eachRowOfFilesIsStoredAndRefreshesTheResults)
{
    openSheet();
    for (const int row : {0, 1, 2, 3, 4}) {
        const Outcome outcome = press(*sheet().largeFileMatrix().button(row));
        EXPECT_EQ(m_delegate->largeFilePreference(), row);
        EXPECT_EQ(outcome.stored,
                  (Names{"setInteger largeFilePreference " + std::to_string(row), "flush"}));
        expectResultsRefreshed(outcome);
    }
}

TEST_F(PreferenceSheetTest, rowsAreTitledAfterTheirThresholds)
{
    openSheet();
    const auto titles = [](const QButtonGroup &matrix) {
        QStringList found;
        for (int row = 0; row < 5; ++row) {
            found << matrix.button(row)->text();
        }
        return found;
    };
    EXPECT_EQ(titles(sheet().hiddenItemMatrix()),
              (QStringList{u"Never"_s, u"Larger than 1 MB"_s, u"Larger than 500 KB"_s,
                           u"Larger than 1 KB"_s, u"All"_s}));
    EXPECT_EQ(titles(sheet().largeFileMatrix()),
              (QStringList{u"Never"_s, u"Larger than 1 GB"_s, u"Larger than 500 MB"_s,
                           u"Larger than 1 MB"_s, u"All"_s}));
}

TEST_F(PreferenceSheetTest, notificationsSwitchTheirSoundWithThem)
{
    openSheet();
    ASSERT_TRUE(sheet().notificationSoundCheck().isEnabled());
    for (const int value : {0, 1}) {
        const Outcome outcome = press(sheet().showNotificationCheck());
        EXPECT_EQ(sheet().notificationSoundCheck().isEnabled(), value == 1);
        EXPECT_EQ(m_delegate->showNotificationPreference(), value);
        EXPECT_EQ(
            outcome.stored,
            (Names{"setInteger showNotificationPreference " + std::to_string(value), "flush"}));
        expectNothingRefreshed(outcome);
    }
    EXPECT_TRUE(sheet().notificationSoundCheck().isChecked()) << "its own value stays";
}

TEST_F(PreferenceSheetTest, theSoundIsStored)
{
    openSheet();
    for (const int value : {0, 1}) {
        const Outcome outcome = press(sheet().notificationSoundCheck());
        EXPECT_EQ(m_delegate->notificationSoundPreference(), value);
        EXPECT_EQ(
            outcome.stored,
            (Names{"setInteger notificationSoundPreference " + std::to_string(value), "flush"}));
        expectNothingRefreshed(outcome);
    }
}

TEST_F(PreferenceSheetTest, theColoursOfDrivesRefreshTheDrives)
{
    openSheet();
    for (const int value : {0, 1}) {
        const Outcome outcome = press(sheet().diskGraphCheck());
        EXPECT_EQ(m_delegate->diskGraphColorPreference(), value);
        EXPECT_EQ(outcome.stored,
                  (Names{"setInteger diskGraphColorPreference " + std::to_string(value), "flush"}));
        EXPECT_GT(outcome.driveResets, 0);
        EXPECT_EQ(outcome.homeResets, 0);
        EXPECT_EQ(outcome.scanResets, 0);
    }
}

TEST_F(PreferenceSheetTest, theColoursOfFoldersRefreshTheResults)
{
    openSheet();
    for (const int value : {0, 1}) {
        const Outcome outcome = press(sheet().folderGraphCheck());
        EXPECT_EQ(m_delegate->folderGraphColorPreference(), value);
        EXPECT_EQ(
            outcome.stored,
            (Names{"setInteger folderGraphColorPreference " + std::to_string(value), "flush"}));
        expectResultsRefreshed(outcome);
    }
}

TEST_F(PreferenceSheetTest, whatAssistiveTechnologySwitchesIsAppliedAndStored)
{
    openSheet();
    const auto toggle = [this](QAbstractButton &control) {
        m_services.settings.clearLog();
        QAccessible::queryAccessibleInterface(&control)->actionInterface()->doAction(
            QAccessibleActionInterface::toggleAction());
        return m_services.settings.log();
    };
    EXPECT_EQ(toggle(sheet().showNotificationCheck()),
              (Names{"setInteger showNotificationPreference 0", "flush"}));
    EXPECT_EQ(m_delegate->showNotificationPreference(), 0);
    EXPECT_FALSE(sheet().notificationSoundCheck().isEnabled());
    EXPECT_EQ(toggle(sheet().showNotificationCheck()),
              (Names{"setInteger showNotificationPreference 1", "flush"}));
    EXPECT_EQ(toggle(sheet().notificationSoundCheck()),
              (Names{"setInteger notificationSoundPreference 0", "flush"}));
    EXPECT_EQ(toggle(sheet().diskGraphCheck()),
              (Names{"setInteger diskGraphColorPreference 0", "flush"}));
    EXPECT_EQ(toggle(sheet().folderGraphCheck()),
              (Names{"setInteger folderGraphColorPreference 0", "flush"}));
    EXPECT_EQ(toggle(*sheet().hiddenItemMatrix().button(2)),
              (Names{"setInteger hiddenItemPreference 2", "flush"}));
    EXPECT_EQ(m_delegate->hiddenItemPreference(), 2);
    EXPECT_EQ(toggle(*sheet().largeFileMatrix().button(1)),
              (Names{"setInteger largeFilePreference 1", "flush"}));
    EXPECT_EQ(m_delegate->largeFilePreference(), 1);
}

TEST_F(PreferenceSheetTest, onTheOldestReleaseThereAreNoNotifications)
{
    m_services.release.setVersion({10, 7});
    openSheet();
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(sheet().showNotificationCheck().isEnabled());
        EXPECT_FALSE(sheet().notificationSoundCheck().isEnabled());
        EXPECT_TRUE(sheet().diskGraphCheck().isEnabled());
        m_controller->closePreferenceSheet();
        m_controller->showPreferenceSheet();
    }
}

TEST_F(PreferenceSheetTest, onTheNextReleaseThereAre)
{
    m_services.release.setVersion({10, 8});
    openSheet();
    EXPECT_TRUE(sheet().showNotificationCheck().isEnabled());
    EXPECT_TRUE(sheet().notificationSoundCheck().isEnabled());
}

TEST_F(PreferenceSheetTest, closesByItsButtonAndByEscape)
{
    openSheet();
    auto *button = sheet().findChild<QAbstractButton *>(u"closeButton"_s);
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(sheet().isVisible());
    m_controller->showPreferenceSheet();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(sheet().isVisible());
}

TEST_F(PreferenceSheetTest, hasTheKeyboardWhileItIsThereAndGivesItBack)
{
    openWindow();
    ASSERT_TRUE(outlineTable().hasFocus());
    m_controller->showPreferenceSheet();
    QSet<QWidget *> visited;
    for (int i = 0; i < 20; ++i) {
        QWidget *focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        EXPECT_TRUE(sheet().isAncestorOf(focus)) << qPrintable(focus->objectName());
        visited << focus;
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    EXPECT_EQ(visited.size(), 9) << "two groups, four boxes and three buttons";
    m_controller->closePreferenceSheet();
    EXPECT_TRUE(outlineTable().hasFocus());
}

TEST_F(PreferenceSheetTest, theArrowsChooseRows)
{
    openWindow();
    m_delegate->setHiddenItemPreference(0);
    m_controller->showPreferenceSheet();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(m_delegate->hiddenItemPreference(), 1);
    EXPECT_EQ(m_services.settings.integer("hiddenItemPreference"), 1);
}

TEST_F(PreferenceSheetTest, tabEntersAGroupAtTheChosenRowAndArrowsChooseThere)
{
    openWindow();
    m_delegate->setHiddenItemPreference(3);
    m_delegate->setLargeFilePreference(2);
    m_controller->showPreferenceSheet();
    EXPECT_EQ(QApplication::focusWidget(), sheet().hiddenItemMatrix().button(3));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), sheet().largeFileMatrix().button(2));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(m_delegate->largeFilePreference(), 3);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(QApplication::focusWidget(), sheet().hiddenItemMatrix().button(3));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_EQ(m_delegate->hiddenItemPreference(), 2);

    sheet().largeFileMatrix().button(0)->setChecked(true); // as assistive technology does
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), sheet().largeFileMatrix().button(0));
}

TEST_F(PreferenceSheetTest, disablesWhatLiesBelow)
{
    openSheet();
    EXPECT_FALSE(m_controller->splitView().isEnabled());
    m_controller->closePreferenceSheet();
    EXPECT_TRUE(m_controller->splitView().isEnabled());
}

TEST_F(PreferenceSheetTest, anAlertAboveItTakesReturnAndTheKeyboard)
{
    openSheet();
    m_controller->restartAlert();
    ASSERT_NE(alert(), nullptr);
    EXPECT_FALSE(sheet().isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(m_terminationCount, 1);
    EXPECT_TRUE(sheet().isVisible());
    EXPECT_TRUE(sheet().isEnabled());
    EXPECT_TRUE(sheet().isAncestorOf(QApplication::focusWidget()));
}

TEST_F(PreferenceSheetTest, keepsClicksAndKeysFromWhatLiesBelow)
{
    openWindow();
    KORVENScanViewController &screen = m_controller->avc();
    m_delegate->loadHistoryItem(recordTree(*makeTree("/f", {folder("d", {file("x", 10)})})));
    screen.drillDownOneLevel("d");
    m_controller->showPreferenceSheet();
    QWidget *focus = QApplication::focusWidget();
    QTest::keyClick(focus, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(focus, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    for (auto *button : screen.view()->findChildren<QAbstractButton *>()) {
        EXPECT_FALSE(button->isDown()) << qPrintable(button->objectName());
    }
    QTest::keyClick(focus, Qt::Key_Backspace);
    QTest::keyClick(focus, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(screen.drillDownPath(), "/f/d");
    QTest::keyClick(focus, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(m_controller->selectedPage(), KORVENWindowController::scanPage);
    EXPECT_TRUE(m_services.folderChooser.asked().empty());

    const QPoint historyRow = outlineTable().viewport()->mapTo(
        &window(),
        outlineTable()
            .visualRect(outlineTable().model()->index(KORVENWindowController::historyPage, 0))
            .center());
    QWidget *below = window().childAt(historyRow);
    ASSERT_NE(below, nullptr);
    EXPECT_TRUE(below == &sheet() || sheet().isAncestorOf(below));
    QTest::mouseClick(below, Qt::LeftButton, {}, below->mapFrom(&window(), historyRow));
    EXPECT_EQ(m_controller->selectedPage(), KORVENWindowController::scanPage);
}

TEST_F(PreferenceSheetTest, hangsFromTheTitleBarInTheMiddle)
{
    openSheet();
    window().resize(1080, 700);
    ASSERT_TRUE(QTest::qWaitFor([this] { return sheet().width() == 1080; }));
    const QRect panel(sheet().panel().mapTo(&sheet(), QPoint(0, 0)), sheet().panel().size());
    EXPECT_EQ(panel.top(), 0);
    EXPECT_LE(std::abs(panel.center().x() - sheet().rect().center().x()), 1);
    EXPECT_EQ(sheet().mapTo(&window(), QPoint(0, 0)).y(), titleBarHeight);
    for (auto *label : sheet().findChildren<QLabel *>()) {
        EXPECT_GE(label->width(), label->sizeHint().width()) << qPrintable(label->text());
    }
    for (auto *button : sheet().findChildren<QAbstractButton *>()) {
        EXPECT_GE(button->width(), button->minimumSizeHint().width()) << qPrintable(button->text());
    }
}

TEST_F(PreferenceSheetTest, canBeUsedInTheSmallestWindow)
{
    openSheet();
    window().resize(minWindowSize);
    ASSERT_TRUE(QTest::qWaitFor([this] { return window().size() == minWindowSize; }));
    auto *close = sheet().findChild<QAbstractButton *>(u"closeButton"_s);
    const auto *area = sheet().findChild<QScrollArea *>();
    ASSERT_NE(area, nullptr);
    ASSERT_TRUE(area->verticalScrollBar()->maximum() > 0) << "else there is nothing to see here";
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(QApplication::focusWidget(), close);
    EXPECT_EQ(close->visibleRegion().boundingRect(), close->rect());
}

} // namespace
} // namespace tessaly
