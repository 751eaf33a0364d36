#pragma once

#include "engine/archive/FileCreationDate.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "platform/FileUrl.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/screens/ResultScreenTest.hpp"

#include <QProgressBar>
#include <QStackedWidget>

#include <filesystem>
#include <latch>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// The home folder's screen, of a user "Ada" whose home folder by the login name lies in m_disk and
/// whose process has another one.
class HomeScreenTest : public ResultScreenTest<KORVENHomeViewController> {
protected:
    HomeScreenTest()
    {
        m_disk.folder("Ada");
        m_services.account.login = "Ada";
        m_services.account.users = m_disk.path();
        m_services.account.home = "/container/Data";
    }

    [[nodiscard]] std::string homePath() const { return m_disk.path("Ada"); }
    [[nodiscard]] std::string homeUrl() const { return fileUrl(homePath()).value(); }
    [[nodiscard]] std::string archivePath() const
    {
        return m_documents.path("documents/scanhome.archive");
    }
    [[nodiscard]] int page() const { return m_screen->tabView().currentIndex(); }

    /// The user has chosen the home folder in an earlier run.
    void grantHome()
    {
        m_services.settings.setData("homeFolder", *m_services.bookmarks.makeBookmark(homeUrl()));
        m_services.settings.flush();
        m_services.settings.clearLog();
    }
    void keepScan(const tree::ScanTree &tree)
    {
        EXPECT_TRUE(archive::writeScanFile(tree.root(), archivePath()));
    }
    void loadLast()
    {
        m_screen->startLoading();
        ASSERT_TRUE(QTest::qWaitFor([this] { return m_screen->drillResults() != nullptr; }));
    }
    /// Opens the screen with this tree as the last scan.
    void openWith(const tree::ScanTree &tree)
    {
        grantHome();
        keepScan(tree);
        openScreen();
        loadLast();
    }
    /// A new start of the program.
    void reopen()
    {
        m_screen.reset();
        openScreen();
    }

    /// Presses Continue and chooses.
    void choose(const std::optional<std::string> &folder)
    {
        QTest::mouseClick(&button("continueButton"), Qt::LeftButton);
        m_services.folderChooser.answer(folder);
    }
    void scan()
    {
        press("scanButton");
        waitForScan();
    }

    /// Starts a scan and presses Cancel when it has access to the folder, but got nowhere yet.
    void scanAndCancel()
    {
        std::latch hasStarted(1);
        std::latch isCancelled(1);
        m_services.bookmarks.whenStarted = [&] {
            hasStarted.count_down();
            isCancelled.wait();
        };
        press("scanButton");
        hasStarted.wait();
        press("cancelButton");
        isCancelled.count_down();
        waitForScan();
        m_services.bookmarks.whenStarted = [] {};
    }
    /// Folders with 20 in one another each, so that a scan takes a while.
    void fillWithFolders(const std::string &inside, int count) const
    {
        for (int i = 0; i < count; ++i) {
            std::string path = m_disk.path(inside) + "/d" + std::to_string(i);
            for (int level = 0; level < 20; ++level) {
                path += "/d";
            }
            std::filesystem::create_directories(path);
        }
    }
    [[nodiscard]] std::vector<std::string> notifiedTexts() const
    {
        std::vector<std::string> texts;
        for (const Notification &notification : m_services.notifier.notifications()) {
            texts.push_back(notification.text);
        }
        return texts;
    }
    /// The moment that was made a text last.
    [[nodiscard]] DateTexts::Time lastDate() const { return m_services.dates.calls().back().time; }
    [[nodiscard]] static DateTexts::Time creationOf(const std::string &path)
    {
        return archive::fileCreationDate(path).value().systemTime();
    }
    void expectScanningLook() const
    {
        EXPECT_TRUE(named<QProgressBar>("scanProgress").isVisible());
        EXPECT_TRUE(button("cancelButton").isVisible());
        EXPECT_TRUE(button("cancelButton").isEnabled());
        EXPECT_FALSE(button("scanButton").isVisible());
        EXPECT_FALSE(button("sortButton").isVisible());
    }
};

} // namespace tessaly
