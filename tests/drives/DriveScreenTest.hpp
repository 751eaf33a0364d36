#pragma once

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "drives/KORVENDriveCellView.hpp"
#include "drives/KORVENDriveViewController.hpp"
#include "drives/UnmountThreads.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessaly {

/// The drives screen in a window, on a desktop of fakes.
class DriveScreenTest : public testing::Test {
protected:
    enum Kind { fixed, removable, unmountable, both };

    ~DriveScreenTest() override
    {
        EXPECT_TRUE(waitForUnmounts(std::chrono::minutes(1)));
        m_screen.reset();
    }

    /// Another volume, of which the system knows everything.
    void addVolume(const std::string &name, std::uint64_t total, std::uint64_t free,
                   Kind kind = fixed, const std::string &typeName = "ext4")
    {
        m_services.volumes.entries.push_back(name);
        m_services.volumes.information[m_services.volumes.pathOf(name)] = {
            VolumeFigures{total, free}, kind == removable || kind == both,
            kind == unmountable || kind == both, typeName};
    }
    /// Another volume, whose attributes cannot be read.
    void addUnreadableVolume(const std::string &name)
    {
        m_services.volumes.entries.push_back(name);
    }
    void removeVolume(const std::string &name)
    {
        std::erase(m_services.volumes.entries, name);
        m_services.volumes.listener();
        answer();
    }

    /// Makes the screen and shows it in a window; it has asked, and has no answer yet.
    void openScreenUnanswered()
    {
        m_screen = std::make_unique<KORVENDriveViewController>(
            m_services.volumes, m_services.applications, m_services.fileManager);
        m_screen->findChild<PressGuard *>()->setClock([this] { return m_now; });
        m_screen->awakeFromNib();
        m_window.resize(840, 666);
        m_layout.setContentsMargins(0, 0, 0, 0);
        m_layout.addWidget(m_screen->view());
        m_window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    void openScreen()
    {
        openScreenUnanswered();
        answer();
    }
    /// Answers the one question that is open.
    void answer()
    {
        ASSERT_EQ(m_services.volumes.questions.size(), 1U);
        m_services.volumes.answer();
    }

    template <typename Widget>
    [[nodiscard]] Widget &named(const char *name) const
    {
        auto *found = m_screen->view()->findChild<Widget *>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no ") + name);
        }
        return *found;
    }
    [[nodiscard]] KORVENButton &button(const char *name) const { return named<KORVENButton>(name); }
    [[nodiscard]] QString label(const char *name) const { return named<QLabel>(name).text(); }
    [[nodiscard]] CellTableView &table() const { return named<CellTableView>("tableView"); }
    [[nodiscard]] KORVENDriveCellView &cell(int row) const
    {
        auto *found = qobject_cast<KORVENDriveCellView *>(table().cellForRow(row));
        if (found == nullptr) {
            throw std::logic_error("no cell in row " + std::to_string(row));
        }
        return *found;
    }
    /// The names as the rows have them, and as the cells show them.
    [[nodiscard]] std::vector<std::string> rowNames() const
    {
        std::vector<std::string> names;
        for (const KORVENDriveObject &row : m_screen->disksArray()) {
            names.push_back(row.diskName());
        }
        return names;
    }
    [[nodiscard]] std::vector<std::string> shownNames() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < m_screen->numberOfRowsInTableView(); ++row) {
            names.push_back(cell(row).driveName()->text().toStdString());
        }
        return names;
    }

    static QStringList titles(const QMenu &menu)
    {
        QStringList all;
        for (const QAction *action : menu.actions()) {
            if (!action->isSeparator()) {
                all.append(action->text());
            }
        }
        return all;
    }
    static QAction &entry(const QMenu &menu, const QString &title)
    {
        for (QAction *action : menu.actions()) {
            if (action->text() == title) {
                return *action;
            }
        }
        throw std::logic_error("no such entry");
    }

    PressGuard::Time m_now{};
    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    QWidget m_window;
    QVBoxLayout m_layout{&m_window};
    std::unique_ptr<KORVENDriveViewController> m_screen;
};

} // namespace tessaly
