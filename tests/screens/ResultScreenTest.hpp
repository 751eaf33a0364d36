#pragma once

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeMainWindow.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// A scan screen in a window, on a desktop of fakes and with a documents folder of its own.
/// Requires: one test a process, since the history's store is one for the process.
template <typename Screen>
class ResultScreenTest : public testing::Test {
protected:
    ResultScreenTest()
    {
        m_delegate.setWindowController(&m_mainWindow);
        m_documents.folder("documents");
        m_delegate.setHiddenItemPreference(4);
        m_delegate.setLargeFilePreference(4);
    }
    ~ResultScreenTest() override { m_screen.reset(); }

    /// Makes the screen and shows it in a window.
    void openScreen()
    {
        m_screen = std::make_unique<Screen>(m_services.all());
        m_screen->template findChild<PressGuard *>()->setClock([this] { return m_now; });
        m_screen->awakeFromNib();
        m_window.resize(840, 666);
        m_layout.setContentsMargins(0, 0, 0, 0);
        m_layout.addWidget(m_screen->view());
        m_window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }

    void waitForScan()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !m_screen->isScanRunningNow(); }, 60'000));
    }

    template <typename Widget>
    [[nodiscard]] Widget &named(const char *name) const
    {
        auto *found = m_screen->view()->template findChild<Widget *>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no ") + name);
        }
        return *found;
    }
    [[nodiscard]] KORVENButton &button(const char *name) const { return named<KORVENButton>(name); }
    /// A click that is not the second one of a double click.
    void press(const char *name)
    {
        m_now += std::chrono::seconds(1);
        QTest::mouseClick(&button(name), Qt::LeftButton);
    }
    [[nodiscard]] QString label(const char *name) const { return named<QLabel>(name).text(); }
    [[nodiscard]] CellTableView &table() const { return named<CellTableView>("tableView"); }
    [[nodiscard]] KORVENFolderCellView &cell(int row) const
    {
        auto *found = qobject_cast<KORVENFolderCellView *>(table().cellForRow(row));
        if (found == nullptr) {
            throw std::logic_error("no cell in row " + std::to_string(row));
        }
        return *found;
    }
    [[nodiscard]] std::string shownPath() const
    {
        return m_screen->folderNameField()->text().toStdString();
    }
    [[nodiscard]] std::vector<std::string> rowNames() const
    {
        std::vector<std::string> names;
        for (const KORVENFolderObject &row : m_screen->scanArray()) {
            names.emplace_back(row.folderName());
        }
        return names;
    }

    PressGuard::Time m_now{};
    TemporaryFolder m_documents;
    TemporaryFolder m_disk;
    FakeServices m_services{m_documents.path("documents")};
    FakeMainWindow m_mainWindow;
    KORVENAppDelegate m_delegate{m_services.all()};
    QWidget m_window;
    QVBoxLayout m_layout{&m_window};
    std::unique_ptr<Screen> m_screen;
};

} // namespace tessaly
