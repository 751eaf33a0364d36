#include "bench/WindowLevel.hpp"

#include "app/controls/tables/CellTableView.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"

#include <QApplication>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <chrono>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

namespace tessaly {

namespace {

/// A wheel step, in eighths of a degree.
constexpr int wheelStep = 120;

PlannedNode folderOf(const std::string &name, std::size_t fileCount)
{
    std::mt19937_64 random(1); // the same files in every run
    std::vector<PlannedNode> files;
    files.reserve(fileCount);
    for (std::size_t index = 0; index < fileCount; ++index) {
        files.push_back(file("file " + std::to_string(index) + ".dat", random() % 100'000'000));
    }
    return folder(name, std::move(files));
}

} // namespace

WindowLevel::WindowLevel(const std::string &documents) : m_services(documents)
{
    std::filesystem::create_directories(documents);
    m_delegate.setHiddenItemPreference(4);
    m_delegate.setLargeFilePreference(4);

    const auto item = std::make_shared<KORVENHistoryItem>("/bench", "");
    const auto tree =
        makeTree("/bench", {folderOf("large", largeCount), folderOf("usual", usualCount)});
    if (!archive::writeScanFile(tree->root(), item->scanFilePath().value())) {
        throw std::runtime_error("the scan file cannot be written");
    }
    KORVENHistoryStore::sharedStore().addItem(item);

    auto *layout = new QVBoxLayout(&m_window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_screen.view());
    m_screen.awakeFromNib();
    m_window.resize(840, 666);
    m_window.show();
    m_screen.loadHistoryItem(item->scanKey().value());
    paint();
}

CellTableView &WindowLevel::table() const
{
    return *m_screen.view()->findChild<CellTableView *>();
}

void WindowLevel::paint()
{
    // Layouts and cells come into being with the first rounds of events.
    for (int round = 0; round < 3; ++round) {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
    table().viewport()->repaint();
}

void WindowLevel::open(const std::string &folder)
{
    m_screen.drillDownOneLevel(folder);
    paint();
}

void WindowLevel::close()
{
    m_screen.drillUpOneLevel();
    paint();
}

void WindowLevel::populate()
{
    m_screen.refreshTable();
    paint();
}

void WindowLevel::scrollTo(double share)
{
    QScrollBar &bar = *table().verticalScrollBar();
    bar.setValue(static_cast<int>(share * bar.maximum()));
    paint();
}

std::vector<double> WindowLevel::wheelSteps(int stepCount)
{
    std::vector<double> times;
    QWidget &viewport = *table().viewport();
    const QPointF place = viewport.rect().center();
    for (int step = 0; step < stepCount; ++step) {
        const auto begin = std::chrono::steady_clock::now();
        QWheelEvent event(place, viewport.mapToGlobal(place), {}, {0, -wheelStep}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&viewport, &event);
        paint();
        const std::chrono::duration<double, std::milli> taken =
            std::chrono::steady_clock::now() - begin;
        times.push_back(taken.count());
    }
    return times;
}

std::size_t WindowLevel::cellCount() const
{
    return static_cast<std::size_t>(table().findChildren<KORVENFolderCellView *>().size());
}

} // namespace tessaly
