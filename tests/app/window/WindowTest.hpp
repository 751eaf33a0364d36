#pragma once

#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/ApplicationMenu.hpp"
#include "app/window/KORVENWindowController.hpp"
#include "app/window/PreferenceSheet.hpp"
#include "app/window/Sidebar.hpp"
#include "drives/KORVENDriveViewController.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "history/KORVENHistoryViewController.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "platform/FileUrl.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "screens/KORVENScanViewController.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QPointer>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// The main window with all its screens, on a desktop of fakes: the settings grant the folder
/// `m_home` as home folder. Requires: one test a process, since the history's store is one for the
/// process.
class WindowTest : public testing::Test {
protected:
    WindowTest()
    {
        m_documents.folder("documents");
        m_services.account.home = m_home.path();
        m_services.volumes.entries = {"Data", "Backup"};
        const auto grant = m_services.bookmarks.makeBookmark(fileUrl(m_home.path()).value());
        m_services.settings.setData("homeFolder", grant.value());
    }
    ~WindowTest() override { closeWindow(); }

    /// The release has to be set before.
    void makeWindow()
    {
        m_delegate = std::make_unique<KORVENAppDelegate>(m_services.all());
        m_delegate->setHiddenItemPreference(4);
        m_controller = std::make_unique<KORVENWindowController>(m_services.all(),
                                                                [this] { ++m_terminationCount; });
        m_delegate->setWindowController(m_controller.get());
        m_controller->awakeFromNib();
    }
    void showWindow()
    {
        window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    void openWindow()
    {
        makeWindow();
        showWindow();
    }
    void closeWindow()
    {
        m_controller.reset();
        m_delegate.reset();
    }

    [[nodiscard]] KORVENWindow &window() const { return m_controller->mainWindow(); }
    [[nodiscard]] ApplicationMenu &menu() const { return m_controller->applicationMenu(); }
    [[nodiscard]] QAction &action(ApplicationMenu::Item item) const { return menu().action(item); }
    [[nodiscard]] CellTableView &outlineTable() const
    {
        return m_controller->sidebar().outlineTable();
    }

    /// The table of a screen.
    template <typename Screen>
    [[nodiscard]] static CellTableView &tableOf(const Screen &screen)
    {
        auto *found = screen.view()->template findChild<CellTableView *>();
        if (found == nullptr) {
            throw std::logic_error("the screen has no table");
        }
        return *found;
    }
    [[nodiscard]] int historyRowCount() const
    {
        return tableOf(m_controller->lvc()).model()->rowCount();
    }

    /// The alert that is shown; nullptr when none is.
    [[nodiscard]] MessageAlert *alert() const
    {
        for (auto *alert : window().findChildren<MessageAlert *>()) {
            if (alert->isVisible()) {
                return alert;
            }
        }
        return nullptr;
    }

    /// A recorded scan of this tree; its key.
    static std::string recordTree(const tree::ScanTree &tree, double date = 0)
    {
        auto item = std::make_shared<KORVENHistoryItem>(std::string(tree.root().itemName()), "x");
        item->setScanDate(archive::Timestamp{date});
        EXPECT_TRUE(archive::writeScanFile(tree.root(), item->scanFilePath().value()));
        KORVENHistoryStore::sharedStore().addItem(item);
        return item->scanKey().value();
    }
    /// Starts a scan. It counts as running until events are processed, however fast it is.
    void startFolderScan()
    {
        m_controller->avc().scanButtonPressed();
        m_services.folderChooser.answer(m_home.path());
        ASSERT_TRUE(m_controller->avc().isScanRunningNow());
    }
    [[nodiscard]] std::vector<std::string> scanRows() const
    {
        std::vector<std::string> names;
        for (const KORVENFolderObject &row : m_controller->avc().scanArray()) {
            names.emplace_back(row.folderName());
        }
        return names;
    }

    TemporaryFolder m_documents;
    TemporaryFolder m_home;
    FakeServices m_services{m_documents.path("documents")};
    int m_terminationCount = 0;
    std::unique_ptr<KORVENAppDelegate> m_delegate;
    std::unique_ptr<KORVENWindowController> m_controller;
};

} // namespace tessaly
