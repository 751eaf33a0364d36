#pragma once

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/MainWindow.hpp"
#include "history/KORVENHistoryCellView.hpp"
#include "history/KORVENHistoryViewController.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

namespace tessaly {

/// Passes messages about the history on to the screen, as the window does, and records all.
class HistoryMainWindow final : public MainWindow {
public:
    KORVENHistoryViewController *screen = nullptr;
    std::vector<std::string> log;
    std::function<void()> onDelete = [] {};

    void windowLoaded() override {}
    void historyStoreUpdated() override
    {
        if (screen != nullptr) {
            screen->reloadHistory();
        }
    }
    void reloadHistoryDelete(const std::optional<std::string> &scanKey) override
    {
        log.push_back("reloadHistoryDelete " + scanKey.value_or("(none)"));
        onDelete();
        if (screen != nullptr) {
            screen->reloadHistoryDelete(scanKey);
        }
    }
    void loadHistoryItem(const std::string &scanKey) override
    {
        log.push_back("loadHistoryItem " + scanKey);
    }
    void scanClicked() override { log.emplace_back("scanClicked"); }
};

/// A style whose animations take as long as a test wants.
class TimedStyle final : public QProxyStyle {
public:
    explicit TimedStyle(int durationMs) : QProxyStyle(QStringLiteral("fusion")), m_ms(durationMs) {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? m_ms
                   : QProxyStyle::styleHint(hint, option, widget, returned);
    }

private:
    int m_ms;
};

/// The history screen in a window, on a desktop of fakes and with a documents folder of its own.
/// Nothing moves. Requires: one test a process, since the history's store is one for the process.
class HistoryScreenTest : public testing::Test {
protected:
    using Paths = std::vector<std::string>;
    using Log = std::vector<std::string>;

    HistoryScreenTest()
    {
        m_delegate.setWindowController(&m_mainWindow);
        m_documents.folder("documents");
        animate(0);
    }
    ~HistoryScreenTest() override
    {
        m_mainWindow.screen = nullptr;
        m_screen.reset();
    }

    void animate(int durationMs) { QApplication::setStyle(new TimedStyle(durationMs)); }

    /// Makes the screen and shows it in a window.
    void openScreen()
    {
        m_screen =
            std::make_unique<KORVENHistoryViewController>(m_services.dates, m_services.documents);
        m_screen->findChild<PressGuard *>()->setClock([this] { return m_now; });
        m_mainWindow.screen = m_screen.get();
        m_screen->awakeFromNib();
        m_window.resize(840, 666);
        m_layout.setContentsMargins(0, 0, 0, 0);
        m_layout.addWidget(m_screen->view());
        m_window.show();
        m_window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    static KORVENHistoryStore &store() { return KORVENHistoryStore::sharedStore(); }

    /// Records a scan whose key is `key` and whose file is there.
    static void record(const std::string &key, const std::string &path, double date,
                       const std::string &total = "1.00 KB")
    {
        const auto item = std::make_shared<KORVENHistoryItem>(path, total);
        item->setScanKey(key);
        item->setScanDate(archive::Timestamp{date});
        std::ofstream(item->scanFilePath().value()) << "a scan";
        store().addItem(item);
    }
    /// More scans than the window shows; the newest is "/scan 0".
    void openMany(int count)
    {
        for (int i = 0; i < count; ++i) {
            record("K" + std::to_string(i), "/scan " + std::to_string(i), -i);
        }
        openScreen();
    }
    [[nodiscard]] bool hasFile(const std::string &name) const
    {
        return access(m_documents.path("documents/" + name).c_str(), F_OK) == 0;
    }
    void showRows(int count)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return table().model()->rowCount() == count; }));
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
    [[nodiscard]] KORVENButton &button(const char *name) const
    {
        auto *found = named<QWidget>("footer").findChild<KORVENButton *>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no button ") + name);
        }
        return *found;
    }
    void press(const char *name) const { QTest::mouseClick(&button(name), Qt::LeftButton); }
    [[nodiscard]] QString label(const char *name) const { return named<QLabel>(name).text(); }
    [[nodiscard]] CellTableView &table() const { return named<CellTableView>("tableView"); }
    [[nodiscard]] KORVENHistoryCellView &cell(int row) const
    {
        auto *found = qobject_cast<KORVENHistoryCellView *>(table().cellForRow(row));
        if (found == nullptr) {
            throw std::logic_error("no cell in row " + std::to_string(row));
        }
        return *found;
    }
    /// A click that is not the second one of a double click.
    void clickDelete(int row)
    {
        m_now += std::chrono::seconds(1);
        QTest::mouseClick(cell(row).deleteButton(), Qt::LeftButton);
    }
    /// The paths that the table shows, which are those of the screen's rows.
    [[nodiscard]] Paths shownPaths() const
    {
        Paths paths;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            paths.push_back(cell(row).scanPath()->text().toStdString());
        }
        return paths;
    }
    [[nodiscard]] Paths arrayPaths() const
    {
        Paths paths;
        for (const auto &item : m_screen->historyArray()) {
            paths.push_back(item->scanPath().value_or("(none)"));
        }
        return paths;
    }

    PressGuard::Time m_now{};
    TemporaryFolder m_documents;
    FakeServices m_services{m_documents.path("documents")};
    HistoryMainWindow m_mainWindow;
    KORVENAppDelegate m_delegate{m_services.all()};
    QWidget m_window;
    QVBoxLayout m_layout{&m_window};
    std::unique_ptr<KORVENHistoryViewController> m_screen;
};

} // namespace tessaly
