#include "app/window/KORVENWindowController.hpp"

#include "app/controls/accessibility/SpokenNotice.hpp"
#include "app/controls/frame/WindowPlacement.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/window/DeferredPrompt.hpp"
#include "app/window/ProgramVersion.hpp"
#include "app/window/SplitView.hpp"
#include "app/window/VendorUrls.hpp"
#include "tests/app/window/WindowTest.hpp"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QSignalSpy>
#include <QTimer>

#include <span>
#include <string_view>
#include <thread>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;
using Controller = KORVENWindowController;

class KORVENWindowControllerTest : public WindowTest {
protected:
    /// The next start asks to be rated.
    void makeRatingDue()
    {
        m_services.settings.setText("KORVENRate_version_num", std::string(programVersion()));
        m_services.settings.setInteger("KORVENRate_run_count", 2);
    }
    void expectPage(int page) const
    {
        EXPECT_EQ(m_controller->selectedPage(), page);
        EXPECT_EQ(outlineTable().selectedRow(), page);
        EXPECT_EQ(m_controller->sidebar().selectedRow(), page);
    }
    void expectScanRunningAlert() const
    {
        MessageAlert *shown = alert();
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->text(), u"Tessaly Message"_s);
        EXPECT_EQ(
            shown->informativeText(),
            u"There is a scan currently running.\nPlease try again after the scan completes."_s);
        EXPECT_FALSE(m_controller->splitView().isEnabled());
        ASSERT_EQ(shown->buttons().size(), 1);
        EXPECT_EQ(shown->buttons()[0]->text(), u"ok"_s);
    }
    /// Presses the left button on the divider and moves the pointer.
    void dragDivider(int distance) const
    {
        QWidget *divider = m_controller->splitView().handle(1);
        const QPoint middle = divider->rect().center();
        QTest::mousePress(divider, Qt::LeftButton, {}, middle);
        QTest::mouseMove(divider, middle + QPoint(distance, 0));
        QTest::mouseRelease(divider, Qt::LeftButton, {}, middle + QPoint(distance, 0));
    }
};

TEST_F(KORVENWindowControllerTest, startsWithTheDrives)
{
    openWindow();
    expectPage(0);
    const QStackedWidget &tabView = m_controller->tabView();
    ASSERT_EQ(tabView.count(), 4);
    EXPECT_EQ(tabView.widget(0), m_controller->dvc().view());
    EXPECT_EQ(tabView.widget(1), m_controller->hvc().view());
    EXPECT_EQ(tabView.widget(2), m_controller->avc().view());
    EXPECT_EQ(tabView.widget(3), m_controller->lvc().view());
    EXPECT_TRUE(m_controller->dvc().view()->isVisible());
    EXPECT_TRUE(outlineTable().hasFocus());
    EXPECT_EQ(window().windowTitle(), u"Tessaly"_s);
}

TEST_F(KORVENWindowControllerTest, rowsAndPagesAlwaysAgree)
{
    openWindow();
    for (const int page : {3, 1, 2, 0}) {
        const QRect row = outlineTable().visualRect(outlineTable().model()->index(page, 0));
        QTest::mouseClick(outlineTable().viewport(), Qt::LeftButton, {}, row.center());
        expectPage(page);
    }
    QTest::keyClick(&outlineTable(), Qt::Key_Down);
    expectPage(1);
    QTest::keyClick(&outlineTable(), Qt::Key_End);
    expectPage(3);
    QTest::keyClicks(&outlineTable(), u"f"_s);
    expectPage(2);
    m_controller->selectPage(1);
    expectPage(1);
    EXPECT_TRUE(m_controller->hvc().view()->isVisible());
}

TEST_F(KORVENWindowControllerTest, historyShowsTheHistoryScreen)
{
    openWindow();
    m_controller->selectPage(Controller::historyPage);
    EXPECT_TRUE(m_controller->lvc().view()->isVisible());
    EXPECT_FALSE(m_controller->dvc().view()->isVisible());
}

TEST_F(KORVENWindowControllerTest, awakesOnce)
{
    openWindow();
    const QWidget *drives = m_controller->tabView().widget(0);
    m_controller->awakeFromNib();
    EXPECT_EQ(m_controller->tabView().count(), 4);
    EXPECT_EQ(m_controller->tabView().widget(0), drives);
}

TEST_F(KORVENWindowControllerTest, reopeningDuringAScanIsRefused)
{
    openWindow();
    const std::string key = recordTree(*makeTree("/f", {file("a", 10)}));
    m_controller->selectPage(Controller::historyPage);
    startFolderScan();

    m_delegate->loadHistoryItem(key);

    expectScanRunningAlert();
    expectPage(Controller::historyPage);
    EXPECT_EQ(scanRows(), Names{});
    QPointer<MessageAlert> shown = alert();
    QTest::keyClick(shown->buttons()[0], Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.isNull(); }));
    EXPECT_EQ(m_terminationCount, 0);
}

TEST_F(KORVENWindowControllerTest, aNewScanDuringAScanIsRefused)
{
    openWindow();
    startFolderScan();
    m_delegate->scanClicked();
    expectScanRunningAlert();
    expectPage(Controller::drivesPage);
    EXPECT_EQ(m_services.folderChooser.asked().size(), 1U) << "the first scan's";
}

TEST_F(KORVENWindowControllerTest, reopeningShowsTheFolderScan)
{
    openWindow();
    const std::string key = recordTree(*makeTree("/f", {file("a", 10)}));
    m_controller->selectPage(Controller::historyPage);
    m_delegate->loadHistoryItem(key);
    expectPage(Controller::scanPage);
    EXPECT_EQ(scanRows(), Names{"a"});
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(KORVENWindowControllerTest, aHomeScanAloneRefusesNothing)
{
    m_home.file("a", 1'000);
    openWindow();
    const std::string key = recordTree(*makeTree("/f", {file("b", 10)}));
    m_controller->hvc().scanButtonPressed();
    ASSERT_TRUE(m_controller->hvc().isScanRunningNow());

    m_delegate->loadHistoryItem(key);
    expectPage(Controller::scanPage);
    EXPECT_EQ(scanRows(), Names{"b"});

    m_controller->selectPage(Controller::homePage);
    m_delegate->scanClicked();
    expectPage(Controller::scanPage);
    EXPECT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_TRUE(m_controller->hvc().isScanRunningNow());
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(KORVENWindowControllerTest, aNewScanAsksOnTheFolderScan)
{
    openWindow();
    m_delegate->scanClicked();
    expectPage(Controller::scanPage);
    ASSERT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_services.folderChooser.asked()[0].window, &window());
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.confirmTitle, "Scan");
}

TEST_F(KORVENWindowControllerTest, spaceInTheSidebarShowsAndClosesThePreviewPanel)
{
    openWindow();
    QTest::keyClick(&outlineTable(), Qt::Key_Space);
    ASSERT_TRUE(m_services.previewPanels.sharedPreviewPanelExists());
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    QTest::keyClick(&outlineTable(), Qt::Key_Space);
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    expectPage(0);

    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_H, Qt::NoModifier, u"h"_s);
    EXPECT_TRUE(m_controller->shouldTypeSelectForEvent(space, u" "_s));
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    EXPECT_TRUE(m_controller->shouldTypeSelectForEvent(letter, u"h"_s));
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
}

TEST_F(KORVENWindowControllerTest, returnClosesThePreferenceSheetAndElseDoesNothing)
{
    openWindow();
    QTest::keyClick(&window(), Qt::Key_Return);
    QTest::keyClick(&outlineTable(), Qt::Key_Return);
    EXPECT_EQ(m_controller->preferenceSheet(), nullptr);
    expectPage(0);

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        m_controller->showPreferenceSheet();
        ASSERT_TRUE(m_controller->preferenceSheet()->isVisible());
        const auto modifiers = key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier;
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        EXPECT_FALSE(m_controller->preferenceSheet()->isVisible()) << key;
    }
    m_controller->showPreferenceSheet();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Delete, Qt::Key_F7}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_TRUE(m_controller->preferenceSheet()->isVisible()) << key;
    }
    QKeyEvent other(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    EXPECT_FALSE(m_controller->keyDown(other));
    EXPECT_TRUE(m_controller->preferenceSheet()->isVisible());
}

TEST_F(KORVENWindowControllerTest, theDividerCannotBeDragged)
{
    openWindow();
    ASSERT_EQ(m_controller->sidebar().width(), 240);
    for (const int distance : {120, -120}) {
        dragDivider(distance);
        EXPECT_EQ(m_controller->sidebar().width(), 240);
    }
    EXPECT_EQ(m_controller->splitView().handle(1)->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(KORVENWindowControllerTest, theSidebarKeepsItsWidth)
{
    openWindow();
    for (const QSize size : {QSize(1400, 900), QSize(760, 480), QSize(1080, 700)}) {
        window().resize(size);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window().size() == size; }));
        EXPECT_EQ(m_controller->sidebar().width(), 240);
        EXPECT_EQ(m_controller->tabView().width(), size.width() - 240 - 1);
    }
    const SplitView &splitView = m_controller->splitView();
    EXPECT_FALSE(splitView.shouldAdjustSizeOfSubview(m_controller->sidebar()));
    EXPECT_TRUE(splitView.shouldAdjustSizeOfSubview(m_controller->tabView()));
}

TEST_F(KORVENWindowControllerTest, onOldReleasesTheDividerIsPutBack)
{
    for (const SystemRelease::Version release :
         {SystemRelease::Version{10, 7}, SystemRelease::Version{10, 8}}) {
        m_services.release.setVersion(release);
        openWindow();
        m_controller->splitView().setPosition(300);
        ASSERT_EQ(m_controller->sidebar().width(), 300);
        m_delegate->applicationDidFinishLaunching();
        EXPECT_EQ(m_controller->sidebar().width(), 240);

        m_controller->splitView().setPosition(300);
        window().resize(window().width() + 20, window().height());
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_controller->sidebar().width() == 240; }));
        closeWindow();
    }
}

TEST_F(KORVENWindowControllerTest, onOtherReleasesTheDividerStaysWhereItIs)
{
    m_services.release.setVersion({10, 9});
    openWindow();
    m_controller->splitView().setPosition(300);
    m_controller->windowLoaded();
    EXPECT_EQ(m_controller->sidebar().width(), 300);
}

TEST_F(KORVENWindowControllerTest, historyIsReloadedFromAnyThreadWithoutTouchingAView)
{
    openWindow();
    ASSERT_EQ(historyRowCount(), 0);
    const QSignalSpy resets(tableOf(m_controller->lvc()).model(), &QAbstractItemModel::modelReset);
    // The main thread takes no part in it until the worker has ended.
    std::thread worker([] { recordTree(*makeTree("/f", {file("a", 10)})); });
    worker.join();
    EXPECT_EQ(resets.count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return historyRowCount() == 1; }));
}

TEST_F(KORVENWindowControllerTest, aRemovedRecordDisappearsFromTheHistory)
{
    openWindow();
    recordTree(*makeTree("/f", {file("a", 10)}));
    const std::string key = recordTree(*makeTree("/g", {file("b", 10)}));
    ASSERT_TRUE(QTest::qWaitFor([this] { return historyRowCount() == 2; }));
    m_delegate->reloadHistoryDelete(std::nullopt);
    m_delegate->reloadHistoryDelete("no such key");
    QCoreApplication::processEvents();
    EXPECT_EQ(historyRowCount(), 2);
    KORVENHistoryStore::sharedStore().removeItemWithKey(key);
    EXPECT_TRUE(QTest::qWaitFor([this] { return historyRowCount() == 1; }));
}

TEST_F(KORVENWindowControllerTest, refreshesTheTablesOfTheHomeScreenThenOfTheFolderScan)
{
    openWindow();
    Names order;
    const QObject untilTheEnd;
    const auto note = [&](const CellTableView &table, const char *name) {
        QObject::connect(table.model(), &QAbstractItemModel::modelReset, &untilTheEnd,
                         [&order, name] {
                             if (order.empty() || order.back() != name) {
                                 order.emplace_back(name);
                             }
                         });
    };
    note(tableOf(m_controller->dvc()), "drives");
    note(tableOf(m_controller->hvc()), "home");
    note(tableOf(m_controller->avc()), "scan");
    m_controller->refreshTables();
    EXPECT_EQ(order, (Names{"home", "scan"}));
    order.clear();
    m_controller->refreshTable();
    EXPECT_EQ(order, Names{"drives"});
}

TEST_F(KORVENWindowControllerTest, theRestartAlertEndsTheProgram)
{
    openWindow();
    for (int i = 1; i <= 2; ++i) {
        m_controller->restartAlert();
        MessageAlert *shown = alert();
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->text(), u"Tessaly Message"_s);
        EXPECT_EQ(shown->informativeText(),
                  u"Saving changes and exiting.\nPlease restart the app."_s);
        EXPECT_FALSE(m_controller->splitView().isEnabled());
        ASSERT_EQ(shown->buttons().size(), 1);
        EXPECT_EQ(shown->buttons()[0]->text(), u"ok"_s);
        EXPECT_EQ(m_terminationCount, i - 1);
        if (i == 1) {
            QTest::mouseClick(shown->buttons()[0], Qt::LeftButton);
        } else {
            QTest::keyClick(shown, Qt::Key_Escape); // there is no other way out
        }
        EXPECT_EQ(m_terminationCount, i);
        EXPECT_EQ(alert(), nullptr);
    }
}

TEST_F(KORVENWindowControllerTest, theFullScreenItemLeadsThereAndSaysTheWayBack)
{
    openWindow();
    QAction &item = m_controller->fullscreenMenuItem();
    EXPECT_EQ(item.text(), u"Enter Full Screen"_s);
    item.trigger();
    EXPECT_EQ(item.text(), u"Exit Full Screen"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return window().isFullScreen(); }));
    item.trigger();
    EXPECT_EQ(item.text(), u"Enter Full Screen"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window().isFullScreen(); }));
}

TEST_F(KORVENWindowControllerTest, comesBackWhereItWasBeforeFullScreen)
{
    const QRect before(13, 27, 771, 503);
    const auto store = [this](std::string_view key, const QRect &frame) {
        const QByteArray bytes = WindowPlacement{frame, false}.bytes();
        m_services.settings.setData(
            key,
            std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    };
    store("windowPlacement", {5, 5, 780, 490});
    store("frameForNonFullScreenMode", before); // of a program that was killed in full screen
    openWindow();
    EXPECT_EQ(window().geometry(), before);
    EXPECT_FALSE(m_services.settings.hasKey("frameForNonFullScreenMode"));
}

TEST_F(KORVENWindowControllerTest, eachRowOfTheSidebarHasItsOwnCell)
{
    openWindow();
    QStringList titles;
    for (int row = 0; row < outlineTable().model()->rowCount(); ++row) {
        const QWidget *cell = outlineTable().cellForRow(row);
        ASSERT_NE(cell, nullptr);
        titles << cell->findChild<NameLabel *>()->text();
    }
    EXPECT_EQ(titles, (QStringList{u"Drives"_s, u"Home Folder"_s, u"Folder Scan"_s, u"History"_s}));
}

TEST_F(KORVENWindowControllerTest, theSidebarIsAModelByTheRules)
{
    openWindow();
    const QAbstractItemModelTester tester(outlineTable().model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(outlineTable().model()->rowCount(), 4);
}

TEST_F(KORVENWindowControllerTest, aPageIsSpokenWhenItOpensOrItsRowsCome)
{
    openWindow();
    const auto spoken = [this] {
        const auto *notice = window().findChild<SpokenNotice *>();
        return notice != nullptr ? notice->accessibleName() : QString();
    };
    m_delegate->loadHistoryItem(recordTree(*makeTree("/f", {folder("d", {file("x", 10)})})));
    EXPECT_TRUE(QTest::qWaitFor([&] { return spoken() == u"1 item: d, folder, 0.01 KB, 100%"_s; }));
    m_controller->avc().drillDownOneLevel("d");
    EXPECT_EQ(spoken(), u"1 item: x, file, 0.01 KB, 100%"_s);
    m_controller->selectPage(Controller::historyPage);
    EXPECT_TRUE(QTest::qWaitFor([&] { return spoken().startsWith(u"1 item: /f"_s); }));
}

TEST_F(KORVENWindowControllerTest, opensOtherProgramsAndPages)
{
    openWindow();
    m_controller->openDiskUtility();
    m_controller->openFinder();
    m_controller->openSystemPreferences();
    EXPECT_EQ(m_services.applications.launched,
              (Names{"Disk Utility.app", "Finder.app", "System Preferences.app"}));

    m_controller->openInAppStore();
    m_controller->openWebHelp();
    m_controller->openUrlWebsite();
    m_controller->openUrlFacebook();
    m_controller->openUrlTwitter();
    m_controller->supportClicked();
    m_controller->googleClicked();
    EXPECT_EQ(m_services.urls.opened,
              (Names{storePage(storeIdentifier()), vendorHelpPage(), vendorWebsite(),
                     vendorFacebookPage(), vendorTwitterPage(), vendorSupportPage(),
                     vendorGooglePage()}));
}

TEST_F(KORVENWindowControllerTest, saysWhatItIs)
{
    openWindow();
    m_controller->showAbout();
    MessageAlert *shown = alert();
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(shown->text().startsWith(u"Tessaly"_s));
    QTest::mouseClick(shown->buttons()[0], Qt::LeftButton);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(m_terminationCount, 0);
}

/// Does something before a widget is painted for the first time.
class FirstPaint final : public QObject {
public:
    FirstPaint(QWidget &widget, std::function<void()> run) : m_run(std::move(run))
    {
        widget.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_run) {
            std::exchange(m_run, nullptr)();
        }
        return false;
    }

private:
    std::function<void()> m_run;
};

TEST_F(KORVENWindowControllerTest, theWindowIsPaintedBeforeAScanIsRead)
{
    makeWindow();
    recordTree(*makeTree("/f", {file("a", 10)}));
    const std::string path =
        KORVENHistoryStore::sharedStore().allItems()[0]->scanFilePath().value();
    ASSERT_EQ(std::rename(path.c_str(), (path + ".away").c_str()), 0);
    // Looking for the scan too early does not find it.
    const FirstPaint paint(window(), [&] {
        EXPECT_EQ(std::rename((path + ".away").c_str(), path.c_str()), 0);
        EXPECT_EQ(scanRows(), Names{});
    });
    showWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return scanRows() == Names{"a"}; }));
}

TEST_F(KORVENWindowControllerTest, closingDuringScansEndsThem)
{
    for (int i = 0; i < 100; ++i) {
        m_home.nestedFolders("d" + std::to_string(i), 20, 1);
    }
    openWindow();
    startFolderScan();
    m_controller->hvc().scanButtonPressed();
    window().close();
    m_controller.reset();
    for (const Notification &notification : m_services.notifier.notifications()) {
        EXPECT_EQ(notification.text.find("cancel"), std::string::npos) << "it was not the user";
    }
}

TEST_F(KORVENWindowControllerTest, aClickWithControlLeavesTheSidebarsRowSelected)
{
    openWindow();
    m_controller->selectPage(KORVENWindowController::scanPage);
    const QModelIndex row = outlineTable().model()->index(KORVENWindowController::scanPage, 0);
    QTest::mouseClick(outlineTable().viewport(), Qt::LeftButton, Qt::ControlModifier,
                      outlineTable().visualRect(row).center());
    EXPECT_EQ(outlineTable().selectedRow(), KORVENWindowController::scanPage);
    EXPECT_EQ(m_controller->selectedPage(), KORVENWindowController::scanPage);
}

TEST_F(KORVENWindowControllerTest, selectsTheScreenBeforeItScans)
{
    openWindow();
    int changeCount = 0;
    const QObject untilTheEnd;
    QObject::connect(&m_controller->tabView(), &QStackedWidget::currentChanged, &untilTheEnd, [&] {
        ++changeCount;
        EXPECT_FALSE(m_services.folderChooser.isOpen());
        EXPECT_FALSE(m_controller->hvc().isScanRunningNow());
    });
    m_controller->scanClicked();
    EXPECT_TRUE(m_services.folderChooser.isOpen());
    m_services.folderChooser.answer(std::nullopt);
    m_controller->scanHomeClicked();
    EXPECT_TRUE(m_controller->hvc().isScanRunningNow());
    EXPECT_EQ(changeCount, 2);
}

TEST_F(KORVENWindowControllerTest, canBeToldOfTheHistoryWhileItsScreensAreSetUp)
{
    // As a worker of the history's screen does that has found a scan without a record.
    int toldCount = 0;
    m_services.bookmarks.whenResolved = [&] {
        m_controller->historyStoreUpdated();
        ++toldCount;
    };
    makeWindow();
    EXPECT_GT(toldCount, 0);
    m_services.bookmarks.whenResolved = [] {};
}

TEST_F(KORVENWindowControllerTest, destroysTheHistoryScreenLast)
{
    openWindow();
    QStringList destroyed;
    const auto watch = [&destroyed](QObject &screen, const QString &name) {
        QObject::connect(&screen, &QObject::destroyed, [&destroyed, name] { destroyed << name; });
    };
    watch(m_controller->lvc(), u"history"_s);
    watch(m_controller->avc(), u"scan"_s);
    watch(m_controller->hvc(), u"home"_s);
    watch(m_controller->dvc(), u"drives"_s);
    closeWindow();
    EXPECT_EQ(destroyed, (QStringList{u"drives"_s, u"home"_s, u"scan"_s, u"history"_s}));
}

TEST_F(KORVENWindowControllerTest, asksToBeRatedOnceTheWindowIsThere)
{
    makeRatingDue();
    QString asked;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
        if (auto *prompt = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            EXPECT_TRUE(window().isVisible());
            asked = prompt->windowTitle();
            prompt->findChild<KORVENButton *>()->click(); // the first one
            answer.stop();
        }
    });
    answer.start();
    makeWindow();
    EXPECT_EQ(m_services.urls.asked, Names{storePage(storeIdentifier())});
    m_services.urls.answer(true);
    window().show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !asked.isEmpty(); }));
    EXPECT_EQ(asked, "Tessaly - Rate and Review");
    EXPECT_EQ(m_services.settings.integer("KORVENRate_run_count"), 9);
    EXPECT_EQ(m_services.urls.opened, Names{storePage(storeIdentifier())});
}

TEST_F(KORVENWindowControllerTest, doesNotAskToBeRatedWhereNothingOpensTheStore)
{
    makeRatingDue();
    openWindow();
    m_services.urls.answer(false);
    bool isMoment = false;
    const DeferredPrompt moment(window(), [&] { isMoment = true; });
    QTimer closing; // a box would keep the moment from coming
    QObject::connect(&closing, &QTimer::timeout, &closing, [] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            ADD_FAILURE() << "it asks";
            box->close();
        }
    });
    closing.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isMoment; }));
    EXPECT_EQ(m_services.settings.integer("KORVENRate_run_count"), 3) << "the start counts";
}

TEST_F(KORVENWindowControllerTest, doesNotLookForAStoreBeforeItIsTimeToAsk)
{
    openWindow();
    EXPECT_EQ(m_services.urls.asked, Names{});
}

TEST_F(KORVENWindowControllerTest, whatTheStartHasCountedIsStoredBeforeTheEnd)
{
    openWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !m_services.settings.hasPendingChanges(); }));
    EXPECT_EQ(m_services.settings.text("KORVENRate_version_num"), std::string(programVersion()));
}

TEST_F(KORVENWindowControllerTest, theWindowComesBackWhereItWas)
{
    openWindow();
    window().setGeometry(20, 30, 770, 490);
    ASSERT_TRUE(QTest::qWaitFor([this] { return window().size() == QSize(770, 490); }));
    window().close();
    EXPECT_FALSE(m_services.settings.hasPendingChanges());
    closeWindow();
    openWindow();
    EXPECT_EQ(window().geometry(), QRect(20, 30, 770, 490));
}

} // namespace
} // namespace tessaly
